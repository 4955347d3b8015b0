#include "platform/foundation/files.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <system_error>

#include "platform/foundation/raii.hpp"

namespace platform {

namespace fs = std::filesystem;

namespace {

constexpr int mostMilliseconds = 10'000;

// What is written has such a name until it is whole.
constexpr std::string_view unfinished = ".velmora-XXXXXX";
constexpr std::size_t randomLetters = 6;

std::string systemMessage(int code) { return std::generic_category().message(code); }

FileError notWritable(const fs::path& file, int code = errno) {
  return {FileError::Case::notWritable,
          "cannot write " + file.string() + ": " + systemMessage(code)};
}

/// Waits until a pipe takes more.
bool becomesWritable(int descriptor) {
  pollfd waiting{descriptor, POLLOUT, 0};
  if (::poll(&waiting, 1, mostMilliseconds) > 0) return true;
  errno = ETIMEDOUT;
  return false;
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::write(descriptor, bytes.data(), bytes.size());
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR && (errno != EAGAIN || !becomesWritable(descriptor))) {
      return false;
    }
  }
  return true;
}

/// Writes beside the file, under a name that is never too long, and moves it into its place.
void replaceFile(const fs::path& file, std::string_view bytes, mode_t permissions, bool durable) {
  auto beside = (file.parent_path() / unfinished).string();
  const Descriptor descriptor(::mkostemp(beside.data(), O_CLOEXEC));
  if (!descriptor) throw notWritable(file);
  const bool whole =
      ::fchmod(descriptor.get(), permissions) == 0 && writeAll(descriptor.get(), bytes) &&
      (!durable || ::fsync(descriptor.get()) == 0) && ::rename(beside.c_str(), file.c_str()) == 0;
  if (whole) return;
  const auto error = notWritable(file);
  ::unlink(beside.c_str());
  throw error;
}

bool isLeftover(const fs::path& file) {
  constexpr std::chrono::minutes longEnough{10};
  constexpr auto constantPart = unfinished.substr(0, unfinished.size() - randomLetters);
  const auto name = file.filename().string();
  struct stat status{};
  return name.size() == unfinished.size() && name.starts_with(constantPart) &&
         ::lstat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         status.st_uid == ::geteuid() &&
         std::chrono::seconds(::time(nullptr) - status.st_mtime) > longEnough;
}

/// Those of the file that is replaced, else what the umask leaves.
mode_t permissionsOf(const fs::path& file) {
  struct stat existing{};
  if (::stat(file.c_str(), &existing) == 0) return existing.st_mode & 0777U;
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666U & ~mask;
}

/// Reads to the end, but not much beyond `largest`: a file may grow meanwhile.
bool readAll(int descriptor, std::size_t largest, std::string& bytes) {
  std::array<char, 1U << 16U> block{};
  while (bytes.size() <= largest) {
    const auto count = ::read(descriptor, block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return count == 0;
    bytes.append(block.data(), static_cast<std::size_t>(count));
  }
  return true;
}

}  // namespace

FileError::FileError(Case errorCase, const std::string& message)
    : std::runtime_error(message), kind(errorCase) {}

std::string readRegularFile(const fs::path& file, std::size_t largest) {
  const auto name = file.string();
  // A pipe would block here until somebody writes.
  const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  if (!descriptor) {
    const auto kind = errno == ENOENT || errno == ENOTDIR ? FileError::Case::missing
                                                          : FileError::Case::notReadable;
    throw FileError(kind, "cannot read " + name + ": " + systemMessage(errno));
  }
  struct stat status{};
  if (::fstat(descriptor.get(), &status) != 0 || !S_ISREG(status.st_mode))
    throw FileError(FileError::Case::notRegular, name + " is no regular file");
  const auto tooLarge = [&] {
    return FileError(FileError::Case::tooLarge,
                     name + " is larger than " + std::to_string(largest) + " bytes");
  };
  if (static_cast<std::size_t>(status.st_size) > largest) throw tooLarge();
  std::string bytes;
  if (!readAll(descriptor.get(), largest, bytes))
    throw FileError(FileError::Case::notReadable,
                    "cannot read " + name + ": " + systemMessage(errno));
  if (bytes.size() > largest) throw tooLarge();
  return bytes;
}

void writePrivateFile(const fs::path& file, std::string_view bytes) {
  if (!makePrivateFolders(file.parent_path())) throw notWritable(file);
  removeLeftovers(file.parent_path());
  replaceFile(file, bytes, S_IRUSR | S_IWUSR, true);
}

void writeOutputFile(const fs::path& file, std::string_view bytes) {
  std::error_code failure;
  const bool isLink = fs::is_symlink(fs::symlink_status(file, failure));
  const auto target = isLink ? fs::weakly_canonical(file, failure) : fs::absolute(file, failure);
  if (target.empty()) throw notWritable(file, failure.value());
  if (!fs::exists(target, failure) || fs::is_regular_file(target, failure)) {
    replaceFile(target, bytes, permissionsOf(target), false);
    return;
  }
  const Descriptor descriptor(::open(target.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  if (!descriptor || !writeAll(descriptor.get(), bytes)) throw notWritable(file);
}

bool makePrivateFolders(const fs::path& folder) {
  std::error_code ignored;
  if (fs::is_directory(folder, ignored)) return true;
  const auto parent = folder.parent_path();
  if (parent == folder || !makePrivateFolders(parent)) return false;
  // The umask may take more than others' rights.
  if (::mkdir(folder.c_str(), S_IRWXU) == 0) return ::chmod(folder.c_str(), S_IRWXU) == 0;
  const int code = errno;
  const bool isThere = fs::is_directory(folder, ignored);  // made by somebody else just now
  errno = code;
  return isThere;
}

void removeLeftovers(const fs::path& folder) {
  std::error_code ended;
  for (fs::directory_iterator file(folder, ended); !ended && file != fs::end(file);
       file.increment(ended)) {
    if (isLeftover(file->path())) ::unlink(file->path().c_str());
  }
}

}  // namespace platform
