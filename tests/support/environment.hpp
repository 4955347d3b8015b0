#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace tests {

/// A user's surroundings of their own for each test: an empty home and state folder, an empty
/// keyring in a file, no client file, American English.
class Environment : public testing::Test {
 public:
  Environment();
  ~Environment() override;

  /// Stores an item as the companion application does.
  static void storeKeychainItem(
      const std::string& account, const std::string& secret,
      const std::string& service = "com.brenvik.velmora",
      const std::string& accessGroup = "Q7M2K9D4XW.com.brenvik.velmora.shared");
  static void clearKeychain();
  /// The preferred languages, as LANGUAGE lists them.
  static void setLanguages(const std::string& languages);
  /// The client file among the test program's resources.
  static void writeClientFile(const std::string& content);
  static void removeClientFile();
  /// The file behind the standard user defaults.
  [[nodiscard]] std::filesystem::path defaultsFile() const;

 protected:
  std::filesystem::path folder_;
};

std::string readFile(const std::filesystem::path& file);
void writeFile(const std::filesystem::path& file, const std::string& content);

}  // namespace tests
