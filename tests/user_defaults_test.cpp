#include "platform/foundation/user_defaults.hpp"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "platform/foundation/bundle.hpp"
#include "platform/foundation/raii.hpp"
#include "tests/support/environment.hpp"

using platform::UserDefaults;
namespace fs = std::filesystem;

using UserDefaultsTest = tests::Environment;

TEST_F(UserDefaultsTest, keepsDataAndStringsApart) {
  const auto defaults = UserDefaults::standard();
  EXPECT_EQ(defaults.data("a"), std::nullopt);
  defaults.remove("a");
  EXPECT_FALSE(fs::exists(defaultsFile())) << "reading must not make a store";
  const std::string bytes("\0\xff{}", 4);
  defaults.setData("a", bytes);
  defaults.setString("b", "");
  EXPECT_EQ(UserDefaults::standard().data("a"), bytes);
  EXPECT_EQ(defaults.string("b"), "");
  EXPECT_EQ(defaults.string("a"), std::nullopt);
  EXPECT_EQ(defaults.data("b"), std::nullopt);
  defaults.remove("a");
  EXPECT_EQ(defaults.data("a"), std::nullopt);
  EXPECT_EQ(defaults.string("b"), "");
}

TEST_F(UserDefaultsTest, isPrivateWhateverTheUmask) {
  const auto before = umask(0);
  UserDefaults::standard().setString("a", "b");
  umask(before);
  struct stat file{};
  ASSERT_EQ(stat(defaultsFile().c_str(), &file), 0);
  EXPECT_EQ(file.st_mode & 0777U, 0600U);
  ASSERT_EQ(stat(defaultsFile().parent_path().c_str(), &file), 0);
  EXPECT_EQ(file.st_mode & 0777U, 0700U);
}

TEST_F(UserDefaultsTest, setsDamagedFilesAsideAndLosesNothingOfThem) {
  const auto defaults = UserDefaults::standard();
  defaults.setString("a", "b");
  const std::string rubbish(5000, 'x');
  tests::writeFile(defaultsFile(), rubbish);
  EXPECT_EQ(defaults.string("a"), std::nullopt);
  defaults.setString("a", "new");
  EXPECT_EQ(defaults.string("a"), "new");
  bool kept = false;
  for (const auto& entry : fs::directory_iterator(defaultsFile().parent_path()))
    kept = kept || tests::readFile(entry.path()) == rubbish;
  EXPECT_TRUE(kept);
  auto torn = tests::readFile(defaultsFile());
  torn.replace(4096, torn.size() - 4096, torn.size() - 4096, 'x');  // all but the first page
  tests::writeFile(defaultsFile(), torn);
  EXPECT_EQ(defaults.string("a"), std::nullopt);
  defaults.setString("a", "newer");
  EXPECT_EQ(defaults.string("a"), "newer");
  fs::remove(defaultsFile());
  fs::create_directory(defaultsFile());
  defaults.setString("a", "in the place of a folder");
  EXPECT_EQ(defaults.string("a"), "in the place of a folder");
  fs::remove(defaultsFile());
  fs::create_symlink(folder_ / "away", defaultsFile());
  defaults.setString("a", "in the place of a link");
  EXPECT_EQ(defaults.string("a"), "in the place of a link");
  EXPECT_FALSE(fs::exists(folder_ / "away"));
}

TEST_F(UserDefaultsTest, standInTheHomeUnlessToldAnAbsoluteFolder) {
  for (const char* ignored : {"state", ""}) {
    setenv("XDG_STATE_HOME", ignored, 1);
    EXPECT_EQ(platform::stateFolder(), folder_ / ".local/state/velmora-widget");
  }
}

TEST_F(UserDefaultsTest, dropsWritesThatCannotBeMade) {
  tests::writeFile(folder_ / "state", "a file where the folder should be");
  UserDefaults::standard().setString("a", "b");
  EXPECT_EQ(UserDefaults::standard().string("a"), std::nullopt);
  UserDefaults(fs::path()).setString("a", "b");
  UserDefaults("/proc/nowhere/defaults.sqlite3").setString("a", "b");
}

TEST_F(UserDefaultsTest, waitsForNobodyForEver) {
  const auto defaults = UserDefaults::standard();
  defaults.setString("a", "b");
  tests::writeFile(defaultsFile(), std::string(5000, 'x'));
  const platform::Descriptor folder(::open(defaultsFile().parent_path().c_str(), O_RDONLY));
  flock(folder.get(), LOCK_EX);  // as another process that hangs
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(defaults.string("a"), std::nullopt);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(9));
  flock(folder.get(), LOCK_UN);
  defaults.setString("a", "new");
  EXPECT_EQ(defaults.string("a"), "new");
}

TEST_F(UserDefaultsTest, holdsTheOldOrTheNewValueWhenProcessesAreKilled) {
  const std::string first(20'000, '1');
  const std::string second(30'000, '2');
  UserDefaults::standard().setData("a", first);
  for (int round = 0; round < 12; ++round) {
    pid_t writers[2];
    for (auto& writer : writers) {
      writer = fork();
      if (writer != 0) continue;
      for (;;) {
        UserDefaults::standard().setData("a", second);
        UserDefaults::standard().setData("a", first);
      }
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5 + 3 * round));
    for (const pid_t writer : writers) kill(writer, SIGKILL);
    for (const pid_t writer : writers) waitpid(writer, nullptr, 0);
    const auto value = UserDefaults::standard().data("a");
    ASSERT_TRUE(value == first || value == second) << round;
  }
}

TEST_F(UserDefaultsTest, servesManyThreads) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([i] {
      for (int n = 0; n < 10; ++n)
        UserDefaults::standard().setString("key" + std::to_string(i), std::to_string(n));
    });
  }
  for (auto& thread : threads) thread.join();
  for (int i = 0; i < 4; ++i)
    EXPECT_EQ(UserDefaults::standard().string("key" + std::to_string(i)), "9");
}
