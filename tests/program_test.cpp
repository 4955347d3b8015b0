#include "tests/support/program.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include <filesystem>

#include "VelmoraWidget/SharedKeychain.hpp"
#include "platform/foundation/bundle.hpp"
#include "platform/foundation/json.hpp"
#include "sandbox/server.hpp"
#include "tests/support/environment.hpp"
#include "tests/support/replaced_constants.hpp"

using platform::Json;
namespace fs = std::filesystem;

namespace {

const std::string installedWidget = std::string(BUILD_BIN) + "/velmora-widget";

std::string widgetUnderTest() {
  return (platform::resourceFolder().parent_path().parent_path() / "bin/velmora-widget").string();
}

/// The programs as they are installed, run by a signed-in user beside the sandbox.
class Programs : public tests::Environment {
 public:
  Programs() {
    tests::setAdSenseBaseURL(server_.baseURL());
    writeClientFile(server_.clientFile().dump());
    storeKeychainItem(velmora::refreshTokenAccount, server_.address()["refreshToken"]);
    storeKeychainItem(velmora::objectivesAccount, R"({"daily":25,"monthly":750})");
  }

 protected:
  sandbox::Server server_{{}};
};

}  // namespace

TEST_F(Programs, describePrintsTheDeclaration) {
  const auto result = tests::run({installedWidget, "describe"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output,
            R"({"widgets":[{"kind":"VelmoraEarnings","displayName":"AdSense earnings",)"
            R"("description":"Your estimated AdSense earnings, updated automatically.",)"
            R"("families":["systemSmall","systemMedium","systemLarge"]}]})"
            "\n");
}

TEST_F(Programs, timelinePrintsFreshFiguresAndNoSecret) {
  const auto result = tests::run({widgetUnderTest(), "timeline", "--family", "large"});
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(result.errors, "");
  const auto answer = Json::parse(result.output);
  const auto& content = answer["entries"][0]["content"];
  EXPECT_EQ(content["isConnected"], true);
  EXPECT_EQ(content["objectives"], (Json{{"daily", 25}, {"monthly", 750}}));
  EXPECT_GT(content["snapshot"]["updatedAt"], 0);
  EXPECT_EQ(answer["policy"]["after"].get<std::string>().size(), 24U);
  for (const std::string secret : {"ya29", "1//0", "client-secret"})
    EXPECT_EQ(result.output.find(secret), std::string::npos);
  const auto later = Json::parse(tests::run({widgetUnderTest(), "snapshot"}).output);
  EXPECT_EQ(later["entries"][0]["content"]["snapshot"], content["snapshot"]);
  EXPECT_FALSE(later.contains("policy"));
}

TEST_F(Programs, answerWhateverHappens) {
  server_.setFaults({{sandbox::Step::report, {sandbox::Fault::Kind::drop}}});
  fs::create_directories(defaultsFile().parent_path());
  tests::writeFile(defaultsFile(), "rubbish that is no database, longer than a header");
  const auto result = tests::run({widgetUnderTest(), "timeline"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(Json::parse(result.output)["entries"][0]["content"]["snapshot"]["today"], 9.21);
  setenv("XDG_STATE_HOME", "/proc/nowhere", 1);
  EXPECT_EQ(tests::run({widgetUnderTest(), "timeline"}).status, 0);
}

TEST_F(Programs, wrongCallsAreOneLine) {
  const std::vector<std::vector<std::string>> calls{{},
                                                    {"unknown"},
                                                    {"snapshot", "extra"},
                                                    {"snapshot", "--family", "systemExtraLarge"},
                                                    {"snapshot", "--family", "a\nb"},
                                                    {"snapshot", "--scale", "0"},
                                                    {"snapshot", "--scale", "8.1"},
                                                    {"snapshot", "--scale", "nan"},
                                                    {"snapshot", "--scale"},
                                                    {"describe", "--family", "small"}};
  for (auto call : calls) {
    call.insert(call.begin(), installedWidget);
    const auto result = tests::run(call);
    EXPECT_EQ(result.status, 2) << call.back();
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
  }
  for (const char* family : {"systemMedium", "medium"})
    EXPECT_EQ(tests::run({installedWidget, "placeholder", "--family", family}).status, 0);
  const auto full = tests::run({"/bin/sh", "-c", installedWidget + " placeholder >/dev/full"});
  EXPECT_EQ(full.status, 1);
  EXPECT_EQ(full.errors, "velmora-widget: cannot write to standard output\n");
}

TEST_F(Programs, picturesAreWrittenWholeOrNotAtAll) {
  const auto output = [&](const std::string& file, const char* scale = "2") {
    return tests::run({installedWidget, "placeholder", "--scale", scale, "--output", file});
  };
  const std::pair<const char*, const char*> formats[] = {
      {"a.png", "\x89PNG"}, {"a.svg", "<?xml"}, {"a.pdf", "%PDF-1"}, {"a.json", "{\"family\":"}};
  for (const auto& [name, start] : formats) {
    const auto file = folder_ / name;
    for (const char* scale : {"8", "0.001", "2"}) EXPECT_EQ(output(file, scale).status, 0) << name;
    EXPECT_TRUE(tests::readFile(file).starts_with(start)) << name;
  }
  const auto list = Json::parse(tests::readFile(folder_ / "a.json"));
  EXPECT_EQ(list["size"], (Json{170, 170}));
  EXPECT_EQ(list["content"], (Json{16, 16, 138, 138}));
  EXPECT_EQ(list["items"][0]["kind"], "gradient");

  const auto before = tests::readFile(folder_ / "a.png");
  for (const char* file : {"/nowhere/a.png", "/proc/a.png"}) {
    const auto result = output(file);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
  }
  fs::create_symlink("/dev/full", folder_ / "full.png");
  EXPECT_EQ(output(folder_ / "full.png").status, 1);
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
  const auto limited = tests::run({"/usr/bin/prlimit", "--fsize=1000", installedWidget,
                                   "placeholder", "--output", folder_ / "a.png"});
  EXPECT_EQ(limited.status, 1);
  EXPECT_THAT(limited.errors, testing::EndsWith("a.png: File too large\n"));
  EXPECT_EQ(output(folder_ / "a.bmp").status, 2);
  EXPECT_EQ(tests::readFile(folder_ / "a.png"), before);
  for (const auto& entry : fs::directory_iterator(folder_))
    EXPECT_FALSE(entry.path().filename().string().starts_with(".velmora")) << entry.path();
}

TEST_F(Programs, closedStreamsAreNobodyElses) {
  const auto call = std::string(installedWidget) + " snapshot";
  for (const char* closed : {" >&-", " >&- 2>&-"})
    EXPECT_EQ(tests::run({"/bin/sh", "-c", call + closed}).status, 1) << closed;
  EXPECT_EQ(tests::run({"/bin/sh", "-c", call + " <&- 2>&-"}).status, 0);
}

// Root is not bound by the limit, so the program runs as another user.
TEST_F(Programs, aLackOfThreadsIsOneLineAtWorst) {
  if (::getuid() != 0) GTEST_SKIP() << "needs root, to become a user without other processes";
  constexpr int enough = 16;
  fs::permissions(folder_, fs::perms::all);
  const auto program = folder_ / "velmora-widget";  // the build tree may be closed to that user
  fs::copy_file(installedWidget, program);
  for (int limit = 1; limit <= enough; ++limit) {
    const auto result =
        tests::run({"/usr/bin/setpriv", "--reuid", "64999", "--regid", "64999", "--clear-groups",
                    "/usr/bin/prlimit", "--nproc=" + std::to_string(limit), "/usr/bin/env",
                    "ASAN_OPTIONS=detect_leaks=0", program, "timeline"});
    EXPECT_THAT(result.status, testing::AnyOf(limit < enough, 0)) << limit << result.errors;
    EXPECT_EQ(result.output.empty(), result.status != 0) << limit;
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), result.status) << limit;
  }
}

TEST_F(Programs, stringTablesWorkWithoutSystemLocales) {
  setenv("LC_ALL", "fr_FR.UTF-8", 1);
  unsetenv("LANGUAGE");
  EXPECT_THAT(tests::run({installedWidget, "describe"}).output,
              testing::HasSubstr("Revenus AdSense"));
  setenv("LANGUAGE", "en_GB:fr", 1);
  EXPECT_THAT(tests::run({installedWidget, "describe"}).output,
              testing::HasSubstr("AdSense earnings"));
}

TEST_F(Programs, sandboxRefusesWrongCalls) {
  for (const char* bad : {"--port=70000", "--fault=token", "--fault=report=999",
                          "--today=2026-02-30", "--currency=euro"})
    EXPECT_EQ(tests::run({std::string(BUILD_BIN) + "/velmora-sandbox", bad}).status, 2) << bad;
}

TEST_F(Programs, aMissingKeyringCountsAsSignedOut) {
  unsetenv("SECRET_BACKEND");
  setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
  const auto result = tests::run({widgetUnderTest(), "snapshot"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.output, testing::HasSubstr(R"("isConnected":false)"));
}
