#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace fuzz {

/// A folder of this process's own, in memory where there is such a place; it goes with the process.
class StateFolder {
 public:
  StateFolder() {
    std::string name = std::filesystem::exists("/dev/shm") ? "/dev/shm" : "/tmp";
    name += "/velmora-fuzz-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) __builtin_trap();
    path_ = name;
  }
  ~StateFolder() { std::filesystem::remove_all(path_); }
  StateFolder(const StateFolder&) = delete;
  StateFolder& operator=(const StateFolder&) = delete;

  /// Empties the folder but for one file with these bytes.
  [[nodiscard]] std::filesystem::path with(const std::string& name, std::string_view bytes) const {
    for (const auto& entry : std::filesystem::directory_iterator(path_))
      std::filesystem::remove_all(entry);
    const auto file = path_ / name;
    std::ofstream(file, std::ios::binary).write(bytes.data(), std::ssize(bytes));
    return file;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace fuzz
