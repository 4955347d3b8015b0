#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace platform {

/// A small persistent store of values by key, kept in one SQLite file. The file is opened anew
/// for each call. Safe across threads, across processes, and across the death of a process at any
/// moment: a key holds its old value or its new one.
///
/// No call fails: a file that is no database is set aside under another name and begun anew, a
/// store that cannot be read holds nothing, and one that cannot be written drops the write.
class UserDefaults {
 public:
  /// The program's own store, `defaults.sqlite3` in its state folder.
  static UserDefaults standard();

  /// A store in that file, made on the first write; the folder is made with mode 0700, the file
  /// with 0600.
  explicit UserDefaults(std::filesystem::path file);

  /// The bytes stored under a key; absent when there are none or the value is a string.
  [[nodiscard]] std::optional<std::string> data(const std::string& key) const;
  /// The string stored under a key; absent when there is none or the value is data.
  [[nodiscard]] std::optional<std::string> string(const std::string& key) const;
  void setData(const std::string& key, const std::string& bytes) const;
  void setString(const std::string& key, const std::string& text) const;
  void remove(const std::string& key) const;

 private:
  std::filesystem::path file_;
};

}  // namespace platform
