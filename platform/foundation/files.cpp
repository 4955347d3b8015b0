#include "platform/foundation/files.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "platform/foundation/raii.hpp"

namespace platform {

namespace fs = std::filesystem;

namespace {

std::string systemMessage(int code) { return std::generic_category().message(code); }

FileError notWritable(const fs::path& file) {
  return {FileError::Case::notWritable,
          "cannot write " + file.string() + ": " + systemMessage(errno)};
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
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
  auto beside = (file.parent_path() / ".velmora-XXXXXX").string();
  const Descriptor descriptor(::mkostemp(beside.data(), O_CLOEXEC));
  if (!descriptor) throw notWritable(file);
  const bool whole = writeAll(descriptor.get(), bytes) && ::fsync(descriptor.get()) == 0 &&
                     ::rename(beside.c_str(), file.c_str()) == 0;
  if (whole) return;
  const auto error = notWritable(file);
  ::unlink(beside.c_str());
  throw error;
}

bool makePrivateFolders(const fs::path& folder) {
  std::error_code ignored;
  if (fs::is_directory(folder, ignored)) return true;
  const auto parent = folder.parent_path();
  if (parent == folder || !makePrivateFolders(parent)) return false;
  // The umask may take more than others' rights.
  if (::mkdir(folder.c_str(), S_IRWXU) == 0) return ::chmod(folder.c_str(), S_IRWXU) == 0;
  return fs::is_directory(folder, ignored);
}

}  // namespace platform
