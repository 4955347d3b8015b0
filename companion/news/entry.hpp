#pragma once

#include <string>

namespace companion::news {

/// How much an entry presses, as the Desktop Notifications standard has it.
enum class Urgency { low, normal, critical };

/// One thing that has happened, in the user's language.
struct Entry {
  std::string id;  ///< the same as long as it is the same thing
  std::string title;
  std::string body;  ///< plain text
  Urgency urgency = Urgency::normal;
};

}  // namespace companion::news
