#pragma once

#include <filesystem>

#include "companion/news/memory.hpp"

namespace companion::news {

/// The memory as it is kept for this user.
class MemoryFile {
 public:
  /// `news.json` in the state folder. Throws SignInError (stateNotWritable) when there is no home.
  MemoryFile();

  /// For those who keep something; makes the folder.
  [[nodiscard]] std::filesystem::path lockFile() const;
  /// What was kept; an empty memory when nothing was, or nothing that can be read.
  [[nodiscard]] Memory load(platform::Instant now);
  /// Keeps it, whole or not at all, unless it is what is kept already. Throws SignInError
  /// (stateNotWritable).
  void save(const Memory& memory);

 private:
  std::filesystem::path file_;
  std::string kept_;
};

/// Forgets what was told and asked. Throws SignInError (stateNotWritable).
void forgetNews();

}  // namespace companion::news
