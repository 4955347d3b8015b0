#pragma once

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace platform {

/// A file cannot be read or written; `what()` is in English, for a line on standard error.
class FileError : public std::runtime_error {
 public:
  enum class Case { missing, notRegular, tooLarge, notReadable, notWritable };

  FileError(Case errorCase, const std::string& message);

  Case kind;
};

/// The bytes of a regular file. Never waits: a folder, a pipe or a device is not read at all, and
/// neither is a file of more than `largest` bytes. Throws FileError.
std::string readRegularFile(const std::filesystem::path& file, std::size_t largest);

/// Puts a file of these bytes in place, whole or not at all: it is written beside its place and
/// moved there, 0600 from the start. Missing folders are made, leftovers beside it removed. Throws
/// FileError.
void writePrivateFile(const std::filesystem::path& file, std::string_view bytes);

/// Writes the file that a user named: it holds all of the bytes, or is as it was before, and keeps
/// its permissions. A link is followed. A device or a pipe is written as it is, and one that takes
/// nothing for some seconds is given up. Throws FileError.
void writeOutputFile(const std::filesystem::path& file, std::string_view bytes);

/// Makes a folder and those above it that are missing, each for the user alone (0700), as the XDG
/// base directories want it. Folders that are there stay as they are. Returns whether it is there;
/// if not, errno says why.
bool makePrivateFolders(const std::filesystem::path& folder);

/// Removes what programs of ours that were killed while writing left in a folder: files under the
/// names that the functions above write under, some minutes old. Says nothing when it cannot.
void removeLeftovers(const std::filesystem::path& folder);

}  // namespace platform
