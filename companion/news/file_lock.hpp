#pragma once

#include <filesystem>

#include "platform/foundation/raii.hpp"

namespace companion::news {

/// Keeps other programs of Velmora that ask for the same lock waiting as long as it lives. The file
/// may be a folder; one that is missing is made, empty. Waits for at most a few seconds, and then
/// goes on without: whoever holds it for longer hangs.
class FileLock {
 public:
  explicit FileLock(const std::filesystem::path& file);

 private:
  platform::Descriptor file_;
};

}  // namespace companion::news
