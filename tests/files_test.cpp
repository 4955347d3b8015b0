#include "platform/foundation/files.hpp"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <set>

#include "tests/support/environment.hpp"

using namespace platform;
namespace fs = std::filesystem;

namespace {

class Files : public tests::Environment {
 protected:
  FileError::Case errorOfReading(const fs::path& file) {
    try {
      readRegularFile(file, 10);
    } catch (const FileError& error) {
      return error.kind;
    }
    return FileError::Case::notWritable;
  }

  [[nodiscard]] static unsigned mode(const fs::path& file) {
    struct stat status{};
    ::stat(file.c_str(), &status);
    return status.st_mode & 0777U;
  }
};

}  // namespace

TEST_F(Files, onlySmallRegularFilesAreRead) {
  tests::writeFile(folder_ / "ten", "0123456789");
  EXPECT_EQ(readRegularFile(folder_ / "ten", 10), "0123456789");
  tests::writeFile(folder_ / "eleven", "01234567890");
  EXPECT_EQ(errorOfReading(folder_ / "eleven"), FileError::Case::tooLarge);
  ::mkfifo((folder_ / "pipe").c_str(), 0600);
  for (const auto& file : {folder_ / "pipe", folder_, fs::path("/dev/zero")})
    EXPECT_EQ(errorOfReading(file), FileError::Case::notRegular) << file;
  EXPECT_EQ(errorOfReading("/proc/cpuinfo"), FileError::Case::tooLarge);  // claims no size
  EXPECT_EQ(errorOfReading(folder_ / "ten" / "x"), FileError::Case::missing);
}

TEST_F(Files, privateFilesAreWholeAndForTheUserAlone) {
  const auto file = folder_ / "a" / "b" / "secret.json";
  const auto mask = ::umask(0);
  writePrivateFile(file, "one");
  ::umask(mask);
  EXPECT_EQ(mode(file), 0600U);
  EXPECT_EQ(mode(folder_ / "a"), 0700U);
  EXPECT_EQ(mode(folder_ / "a" / "b"), 0700U);
  fs::create_directory(folder_ / "a" / "b" / "folder");
  EXPECT_THROW(writePrivateFile(folder_ / "a" / "b" / "folder", "two"), FileError);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_ / "a" / "b"), {}), 2);
}

TEST_F(Files, outputsKeepTheirPermissionsAndNeverHang) {
  const auto file = folder_ / std::string(255, 'x');
  const auto mask = ::umask(027);
  writeOutputFile(file, "one");
  ::umask(mask);
  EXPECT_EQ(mode(file), 0640U);
  ::chmod(file.c_str(), 0604);
  fs::create_symlink(file, folder_ / "link");
  writeOutputFile(folder_ / "link", "two");
  EXPECT_EQ(tests::readFile(file), "two");
  EXPECT_EQ(mode(file), 0604U);
  EXPECT_TRUE(fs::is_symlink(folder_ / "link"));
  fs::create_symlink("loop", folder_ / "loop");
  ::mkfifo((folder_ / "pipe").c_str(), 0600);
  for (const char* name : {"loop", "pipe"}) {
    try {
      writeOutputFile(folder_ / name, "x");
      ADD_FAILURE() << name;
    } catch (const FileError& error) {
      EXPECT_THAT(error.what(), testing::HasSubstr(name));
    }
  }
}

TEST_F(Files, whatAKilledProgramLeftIsRemovedLater) {
  const auto own = folder_ / "own";
  fs::create_directory(own);
  const auto put = [&](const std::string& name, std::chrono::minutes age) {
    tests::writeFile(own / name, "x");
    fs::last_write_time(own / name, fs::file_time_type::clock::now() - age);
  };
  put(".velmora-abc123", std::chrono::minutes(60));
  const std::set<std::string> kept{".velmora-abc124", ".velmora-longer1", "velmora-abc123"};
  for (const auto& name : kept) put(name, std::chrono::minutes(name == ".velmora-abc124" ? 1 : 60));
  fs::create_symlink("nowhere", own / ".velmora-linked");
  writePrivateFile(own / "secret.json", "one");
  std::set<std::string> there;
  for (const auto& entry : fs::directory_iterator(own)) there.insert(entry.path().filename());
  auto expected = kept;
  expected.merge(std::set<std::string>{".velmora-linked", "secret.json"});
  EXPECT_EQ(there, expected);
  removeLeftovers(own / "nowhere");
}

TEST_F(Files, aForbiddenFolderIsCalledThat) {
  fs::permissions(folder_, static_cast<fs::perms>(0555));
  const bool isRoot = ::geteuid() == 0;
  ASSERT_EQ(::seteuid(isRoot ? 64999 : ::geteuid()), 0);  // nothing is forbidden to root
  std::string message;
  try {
    writePrivateFile(folder_ / "a" / "b" / "secret.json", "one");
  } catch (const FileError& error) {
    message = error.what();
  }
  ASSERT_EQ(::seteuid(::getuid()), 0);
  EXPECT_THAT(message, testing::HasSubstr("Permission denied"));
}
