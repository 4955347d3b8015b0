#include "companion/news/memory_file.hpp"

#include "companion/sign_in_error.hpp"
#include "platform/foundation/bundle.hpp"
#include "platform/foundation/files.hpp"

namespace companion::news {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestFile = 8U << 20U;

[[noreturn]] void fail(const std::string& folder) {
  throw SignInError(SignInError::Case::stateNotWritable, folder);
}

}  // namespace

MemoryFile::MemoryFile() {
  const auto folder = platform::stateFolder();
  if (!folder) fail("~");
  file_ = *folder / "news.json";
}

fs::path MemoryFile::lockFile() const {
  platform::makePrivateFolders(file_.parent_path());
  return file_.parent_path() / "news.lock";
}

Memory MemoryFile::load(platform::Instant now) {
  try {
    kept_ = platform::readRegularFile(file_, largestFile);
    return decodeMemory(kept_, now);
  } catch (const platform::FileError&) {
    kept_.clear();
    return {};
  }
}

void MemoryFile::save(const Memory& memory) {
  auto text = encodeMemory(memory);
  if (text == kept_) return;
  try {
    platform::writePrivateFile(file_, text);
  } catch (const platform::FileError&) {
    fail(file_.parent_path().string());
  }
  kept_ = std::move(text);
}

void forgetNews() {
  const auto folder = platform::stateFolder();
  if (!folder) return;
  const auto file = *folder / "news.json";
  std::error_code ignored;
  fs::remove_all(file, ignored);
  if (fs::exists(fs::symlink_status(file, ignored))) fail(folder->string());
}

}  // namespace companion::news
