#include "platform/foundation/user_defaults.hpp"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <functional>
#include <thread>
#include <tuple>

#include "platform/foundation/bundle.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/raii.hpp"

namespace platform {

namespace fs = std::filesystem;

namespace {

using Database = Owned<sqlite3, sqlite3_close_v2>;
using Statement = Owned<sqlite3_stmt, sqlite3_finalize>;

// How long to wait for another process that is writing.
constexpr int busyMilliseconds = 5000;

// No statement of this unit takes a thousandth of these steps. In a file of another maker's,
// "defaults" may be a view without an end.
constexpr int mostSteps = 1'000'000;

Database open(const fs::path& file) {
  sqlite3* handle = nullptr;
  const int code = sqlite3_open_v2(file.c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr);
  Database database(handle);
  if (code != SQLITE_OK) return nullptr;
  sqlite3_busy_timeout(database.get(), busyMilliseconds);
  const auto giveUp = [](void*) { return 1; };
  sqlite3_progress_handler(database.get(), mostSteps, giveUp, nullptr);
  return database;
}

/// Runs one statement with its text parameters bound in order. `row` sees each row. Returns
/// SQLite's code, SQLITE_DONE in the good case.
int run(sqlite3* database, const char* sql, const std::function<int(sqlite3_stmt*)>& bind,
        const std::function<void(sqlite3_stmt*)>& row = {}) {
  sqlite3_stmt* handle = nullptr;
  int code = sqlite3_prepare_v2(database, sql, -1, &handle, nullptr);
  const Statement statement(handle);
  if (code == SQLITE_OK && bind) code = bind(handle);
  if (code != SQLITE_OK) return code;
  while ((code = sqlite3_step(handle)) == SQLITE_ROW) {
    if (row) row(handle);
  }
  return code;
}

int bindText(sqlite3_stmt* statement, int index, const std::string& text) {
  return sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()),
                           SQLITE_TRANSIENT);
}

bool isDamaged(int code) { return code == SQLITE_NOTADB || code == SQLITE_CORRUPT; }

/// Whether there is something under that name, be it a link that leads nowhere.
bool isThere(const fs::path& file) {
  std::error_code ignored;
  return fs::exists(fs::symlink_status(file, ignored));
}

/// Whether the file can serve as a store: a plain file that SQLite reads as a database.
bool isUsable(const fs::path& file) {
  std::error_code ignored;
  if (!fs::is_regular_file(file, ignored)) return false;
  const auto database = open(file);
  if (!database) return true;  // not damaged, as far as can be told
  std::string verdict;
  const int code = run(database.get(), "PRAGMA quick_check(1)", {}, [&verdict](sqlite3_stmt* row) {
    verdict = reinterpret_cast<const char*>(sqlite3_column_text(row, 0));
  });
  return !isDamaged(code) && (code != SQLITE_DONE || verdict == "ok");
}

/// Takes the lock unless another process has it for longer than a store may be busy.
bool locks(int descriptor) {
  constexpr int step = 10;
  for (int waited = 0; flock(descriptor, LOCK_EX | LOCK_NB) != 0; waited += step) {
    if (errno != EWOULDBLOCK || waited >= busyMilliseconds) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(step));
  }
  return true;
}

/// Moves a file that is no database out of the way, with what SQLite keeps beside it. The folder
/// is locked meanwhile, so that two processes do not set each other's fresh store aside. Returns
/// whether it could be.
bool setAside(const fs::path& file) {
  const Descriptor folder(::open(file.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder || !locks(folder.get())) return false;
  std::error_code ignored;
  if (isThere(file) && !isUsable(file)) {
    const auto name = file.string() + ".damaged-" + std::to_string(::time(nullptr));
    int count = 1;
    while (isThere(name + "-" + std::to_string(count))) ++count;
    for (const char* companion : {"", "-journal", "-wal", "-shm"}) {
      fs::rename(file.string() + companion, name + "-" + std::to_string(count) + companion,
                 ignored);
    }
  }
  return true;
}

/// Makes the folder and the empty file, private to the user whatever the umask says.
void createFile(const fs::path& file) {
  makePrivateFolders(file.parent_path());
  const Descriptor descriptor(
      ::open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (descriptor) ::fchmod(descriptor.get(), S_IRUSR | S_IWUSR);
}

/// Opens the store and runs `use`, which returns SQLite's code. A damaged file is set aside and
/// `use` is run once more, on a fresh store.
void withStore(const fs::path& file, bool writing, const std::function<int(sqlite3*)>& use) {
  if (file.empty()) return;
  for (int attempt = 0; attempt < 2; ++attempt) {
    std::error_code ignored;
    if (isThere(file) && !fs::is_regular_file(file, ignored) && !setAside(file)) return;
    if (writing) createFile(file);
    if (!fs::exists(file, ignored)) return;
    int code = SQLITE_CANTOPEN;
    if (const auto database = open(file)) code = use(database.get());
    if (!isDamaged(code) || !setAside(file)) return;
  }
}

std::optional<std::string> read(const fs::path& file, const std::string& key, int type) {
  std::optional<std::string> value;
  const auto takeValue = [&](sqlite3_stmt* row) {
    if (sqlite3_column_type(row, 0) != type) return;
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(row, 0));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(row, 0));
    value = bytes == nullptr ? std::string() : std::string(bytes, size);
  };
  withStore(file, false, [&](sqlite3* database) {
    return run(
        database, "SELECT value FROM defaults WHERE key = ?",
        [&](sqlite3_stmt* statement) { return bindText(statement, 1, key); }, takeValue);
  });
  return value;
}

constexpr const char* makeTable =
    "CREATE TABLE IF NOT EXISTS defaults(key TEXT PRIMARY KEY, value)";
constexpr const char* storeValue = "INSERT OR REPLACE INTO defaults(key, value) VALUES(?, ?)";
constexpr const char* removeValue = "DELETE FROM defaults WHERE key = ?";
constexpr const char* moveValue = "UPDATE OR IGNORE defaults SET key = ? WHERE key = ?";

// SQLite keeps what a change replaces in a file beside the store until the change is complete.
// Without that file, a power cut amid a change may damage the store.
constexpr const char* withoutJournalFile = "PRAGMA journal_mode = MEMORY";

}  // namespace

UserDefaults UserDefaults::standard() {
  const auto folder = stateFolder();
  return UserDefaults(folder ? *folder / "defaults.sqlite3" : fs::path());
}

UserDefaults::UserDefaults(fs::path file) : file_(std::move(file)) {}

std::optional<std::string> UserDefaults::data(const std::string& key) const {
  return read(file_, key, SQLITE_BLOB);
}

std::optional<std::string> UserDefaults::string(const std::string& key) const {
  return read(file_, key, SQLITE_TEXT);
}

// Without room for a change, there is nobody to tell.
void UserDefaults::setData(const std::string& key, const std::string& bytes) const {
  std::ignore = change([&](Changes& changes) { changes.setData(key, bytes); });
}

void UserDefaults::setString(const std::string& key, const std::string& text) const {
  std::ignore = change([&](Changes& changes) { changes.setString(key, text); });
}

void UserDefaults::remove(const std::string& key) const {
  std::error_code ignored;
  if (!fs::exists(file_, ignored)) return;
  std::ignore = change([&](Changes& changes) { changes.remove(key); });
}

void UserDefaults::Changes::add(int code) {
  if (failure_ == SQLITE_OK && code != SQLITE_DONE) failure_ = code;
}

void UserDefaults::Changes::setData(const std::string& key, const std::string& bytes) {
  add(run(database_, storeValue, [&](sqlite3_stmt* statement) {
    const int code = bindText(statement, 1, key);
    if (code != SQLITE_OK) return code;
    return sqlite3_bind_blob64(statement, 2, bytes.data(), bytes.size(), SQLITE_TRANSIENT);
  }));
}

void UserDefaults::Changes::setString(const std::string& key, const std::string& text) {
  add(run(database_, storeValue, [&](sqlite3_stmt* statement) {
    const int code = bindText(statement, 1, key);
    return code == SQLITE_OK ? bindText(statement, 2, text) : code;
  }));
}

void UserDefaults::Changes::remove(const std::string& key) {
  add(run(database_, removeValue,
          [&](sqlite3_stmt* statement) { return bindText(statement, 1, key); }));
}

void UserDefaults::Changes::move(const std::string& key, const std::string& newKey) {
  add(run(database_, moveValue, [&](sqlite3_stmt* statement) {
    const int code = bindText(statement, 1, newKey);
    return code == SQLITE_OK ? bindText(statement, 2, key) : code;
  }));
}

bool UserDefaults::change(const char* setting, const std::function<void(Changes&)>& make) const {
  bool isStored = false;
  withStore(file_, true, [&](sqlite3* database) {
    if (setting != nullptr) run(database, setting, {});
    for (const char* begin : {"BEGIN IMMEDIATE", makeTable}) {
      if (const int code = run(database, begin, {}); code != SQLITE_DONE) return code;
    }
    Changes changes(database);
    make(changes);
    if (changes.failure_ != SQLITE_OK) return changes.failure_;
    const int code = run(database, "COMMIT", {});
    isStored = code == SQLITE_DONE;
    return code;
  });
  return isStored;
}

bool UserDefaults::change(const std::function<void(Changes&)>& make) const {
  return change(nullptr, make);
}

bool UserDefaults::forget(const std::vector<std::string>& keys) const {
  std::error_code failure;
  if (file_.empty() || fs::symlink_status(file_, failure).type() == fs::file_type::not_found)
    return true;
  const auto removeAll = [&keys](Changes& changes) {
    for (const auto& key : keys) changes.remove(key);
  };
  if (change(removeAll) || change(withoutJournalFile, removeAll)) return true;
  fs::remove(file_.string() + "-journal", failure);
  return fs::remove(file_, failure);
}

}  // namespace platform
