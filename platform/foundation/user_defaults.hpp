#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

struct sqlite3;

namespace platform {

/// A small persistent store of values by key, kept in one SQLite file. The file is opened anew
/// for each call. Safe across threads, across processes, and across the death of a process at any
/// moment: a key holds its old value or its new one.
///
/// But for the two that say what came of them, no call fails: a file that is no database is set
/// aside under another name and begun anew, a store that cannot be read holds nothing, and one that
/// cannot be written drops the write.
class UserDefaults {
 public:
  /// Changes that are made as one.
  class Changes {
   public:
    void setData(const std::string& key, const std::string& bytes);
    void setString(const std::string& key, const std::string& text);
    void remove(const std::string& key);
    /// Moves a value to another key, unless that one has a value.
    void move(const std::string& key, const std::string& newKey);

   private:
    friend class UserDefaults;
    explicit Changes(sqlite3* database) : database_(database) {}
    void add(int code);

    sqlite3* database_;
    int failure_ = 0;
  };

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

  /// Makes several changes, all or none of them; nobody else can write from before `make` is called
  /// until they are stored. Returns whether they are. What `make` throws is passed on, and nothing
  /// is stored.
  [[nodiscard]] bool change(const std::function<void(Changes&)>& make) const;
  /// Removes keys by any means, on a full disk and in a folder that cannot be written too: at the
  /// worst all others go along. Returns whether they are gone.
  [[nodiscard]] bool forget(const std::vector<std::string>& keys) const;

 private:
  [[nodiscard]] bool change(const char* setting, const std::function<void(Changes&)>& make) const;

  std::filesystem::path file_;
};

}  // namespace platform
