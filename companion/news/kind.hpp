#pragma once

#include <string>
#include <vector>

#include "companion/news/entry.hpp"
#include "companion/news/facts.hpp"

namespace companion::news {

/// An entry that was told, or counts as told.
struct Told {
  std::string id;
  std::string kind;
  platform::Instant at;
  bool isQuiet = false;  ///< it only counts as told; the user never saw it

  bool operator==(const Told&) const = default;
};

/// What has become of an entry that was told.
enum class Standing {
  holds,
  over,      ///< the user is to hear of it
  forgotten  ///< nobody has to remember it any more
};

/// One kind of news. Both functions are pure: they see the facts and nothing else.
struct Kind {
  std::string id;
  std::string title;        ///< of its switch
  std::string explanation;  ///< one line, when it is told
  /// What is the case now, told or not.
  std::vector<Entry> (*find)(const Facts&);
  Standing (*standing)(const Told&, const Facts&);
  bool startsQuietly = false;    ///< what is at hand at the very first run counts as told
  bool followsLanguage = false;  ///< its ids are words of a language
};

/// Every kind, in the order of their switches. Another one is a file in `kinds` and a line here.
std::vector<Kind> kinds();

}  // namespace companion::news
