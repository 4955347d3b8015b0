#include "companion/news/file_lock.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <thread>

namespace companion::news {

namespace {

constexpr std::chrono::seconds longestWait{3};
constexpr std::chrono::milliseconds step{10};

platform::Descriptor open(const std::filesystem::path& file) {
  platform::Descriptor found(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  if (found || errno != ENOENT) return found;
  return platform::Descriptor(
      ::open(file.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
}

}  // namespace

FileLock::FileLock(const std::filesystem::path& file) : file_(open(file)) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + longestWait;
  while (file_ && ::flock(file_.get(), LOCK_EX | LOCK_NB) != 0 && Clock::now() < deadline)
    std::this_thread::sleep_for(step);
}

}  // namespace companion::news
