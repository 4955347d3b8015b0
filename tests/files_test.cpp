#include "platform/foundation/files.hpp"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <thread>

#include "platform/keychain/deadline.hpp"
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

TEST(KeychainDeadline, isKeptWhateverTheLibraryDoes) {
  const auto begin = std::chrono::steady_clock::now();
  const auto hanging = [](GCancellable*) {
    std::this_thread::sleep_for(std::chrono::seconds(3));
    return KeychainLookup{};
  };
  EXPECT_EQ(withinDeadline(hanging, std::chrono::milliseconds(50)).status,
            keychain_status::timedOut);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
  const auto quick = [](GCancellable*) { return KeychainLookup{0, "secret"}; };
  EXPECT_EQ(withinDeadline(quick, std::chrono::seconds(5)).data, "secret");
}
