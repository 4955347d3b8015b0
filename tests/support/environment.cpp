#include "tests/support/environment.hpp"

#include <libsecret/secret.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "platform/foundation/bundle.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace tests {

namespace fs = std::filesystem;

namespace {

const SecretSchema* companionSchema() {
  static const SecretSchema* const schema =
      secret_schema_new("com.brenvik.velmora.companion", SECRET_SCHEMA_NONE, "service",
                        SECRET_SCHEMA_ATTRIBUTE_STRING, "account", SECRET_SCHEMA_ATTRIBUTE_STRING,
                        "access-group", SECRET_SCHEMA_ATTRIBUTE_STRING, nullptr);
  return schema;
}

/// libsecret opens its file store once in a process, so all tests of a program share one.
struct KeyringFile {
  fs::path path = fs::temp_directory_path() / ("velmora-keyring-" + std::to_string(getpid()));
  ~KeyringFile() {
    for (const char* backup : {"", "~"}) fs::remove(path.string() + backup);
  }
};

const fs::path& keyringFile() {
  static const KeyringFile file;
  return file.path;
}

}  // namespace

Environment::Environment() {
  std::string pattern = (fs::temp_directory_path() / "velmora-test-XXXXXX").string();
  folder_ = mkdtemp(pattern.data());
  setenv("HOME", folder_.c_str(), 1);
  setenv("XDG_STATE_HOME", (folder_ / "state").c_str(), 1);
  setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + (folder_ / "no-bus").string()).c_str(), 1);
  setenv("SECRET_BACKEND", "file", 1);
  setenv("SECRET_FILE_TEST_PATH", keyringFile().c_str(), 1);
  setenv("SECRET_FILE_TEST_PASSWORD", "keyring password", 1);
  for (const char* variable : {"LC_ALL", "LC_MESSAGES"}) unsetenv(variable);
  setenv("LANG", "en_US.UTF-8", 1);
  setLanguages("en_US");
  clearKeychain();
  removeClientFile();
}

Environment::~Environment() {
  fs::permissions(folder_, fs::perms::owner_all);
  fs::remove_all(folder_);
}

void Environment::storeKeychainItem(const std::string& account, const std::string& secret,
                                    const std::string& service, const std::string& accessGroup) {
  SecretValue* value =
      secret_value_new(secret.data(), static_cast<gssize>(secret.size()), "text/plain");
  GError* error = nullptr;
  secret_password_store_binary_sync(companionSchema(), nullptr, "Velmora", value, nullptr, &error,
                                    "service", service.c_str(), "account", account.c_str(),
                                    "access-group", accessGroup.c_str(), nullptr);
  secret_value_unref(value);
  ASSERT_EQ(error, nullptr) << error->message;
}

void Environment::clearKeychain() {
  for (const char* account : {"google.refresh_token", "objectives"})
    secret_password_clear_sync(companionSchema(), nullptr, nullptr, "account", account, nullptr);
}

void Environment::setLanguages(const std::string& languages) {
  setenv("LANGUAGE", languages.c_str(), 1);
  platform::loadStringTables();
}

void Environment::writeClientFile(const std::string& content) {
  fs::create_directories(platform::resourceFolder());
  writeFile(platform::resourceFolder() / "client_secret.json", content);
}

void Environment::removeClientFile() {
  fs::remove_all(platform::resourceFolder() / "client_secret.json");
}

fs::path Environment::defaultsFile() const {
  return folder_ / "state" / "velmora-widget" / "defaults.sqlite3";
}

std::string readFile(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void writeFile(const fs::path& file, const std::string& content) {
  std::ofstream(file, std::ios::binary) << content;
}

}  // namespace tests
