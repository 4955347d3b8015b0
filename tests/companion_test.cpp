#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

#include "VelmoraWidget/SnapshotCache.hpp"
#include "companion/authorization.hpp"
#include "companion/client_file.hpp"
#include "companion/sign_in_error.hpp"
#include "platform/foundation/bundle.hpp"
#include "platform/foundation/digest.hpp"
#include "tests/support/environment.hpp"
#include "tests/support/program.hpp"

using namespace companion;
using platform::Json;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

namespace {

Json clientOf(const std::string& id) {
  return {{"client_id", id},
          {"client_secret", "hidden secret"},
          {"auth_uri", "https://provider.example/auth"},
          {"token_uri", "https://provider.example/token"},
          {"redirect_uris", {"http://localhost"}}};
}

const std::string program = VELMORA;

class Companion : public tests::Environment {
 public:
  Companion() { setenv("XDG_DATA_HOME", (folder_ / "data").c_str(), 1); }

  fs::path file(const std::string& content, const std::string& name = "picked.json") {
    tests::writeFile(folder_ / name, content);
    return folder_ / name;
  }

  static std::string refusal(const fs::path& picked) {
    try {
      takeOverClientFile(picked);
    } catch (const ClientFileError& error) {
      return error.what();
    }
    return "taken";
  }
};

}  // namespace

TEST(Authorization, addressAndRedirect) {
  // RFC 7636, appendix B.
  EXPECT_EQ(platform::sha256Base64Url("dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk"),
            "E9Melhoa2OwvFrEMTJguCHaoeK1t8URWbuGJSstw-cM");
  auto request = makeAuthorizationRequest("http://127.0.0.1:5");
  EXPECT_EQ(request.state.size(), 43U);
  EXPECT_EQ(request.verifier.size(), 43U);
  EXPECT_NE(request.state, request.verifier);
  EXPECT_NE(request.state, makeAuthorizationRequest("").state);
  request.state = "s";
  const velmora::OAuthConfig config{"id &", "secret", "https://p.example/auth?tenant=a#f", ""};
  const auto address = authorizationAddress(config, request);
  EXPECT_THAT(address, StartsWith("https://p.example/auth?tenant=a&client_id=id%20%26&"
                                  "redirect_uri=http%3A%2F%2F127.0.0.1%3A5&response_type=code&"
                                  "scope=https%3A%2F%2Fwww.googleapis.com%2Fauth%2Fadsense."
                                  "readonly&state=s&code_challenge="));
  EXPECT_THAT(address, testing::EndsWith("&access_type=offline&prompt=consent"));
  for (const auto& hidden : {request.verifier, config.clientSecret})
    EXPECT_EQ(address.find(hidden), std::string::npos);

  const auto code = readRedirect("code=4%2F0A%2Bb&scope=x&state=s&iss=y", request);
  EXPECT_EQ(std::get<AuthorizationCode>(*code).code, "4/0A+b");
  const auto failure = readRedirect("state=s&error=access_denied&code=x", request);
  EXPECT_EQ(std::get<AuthorizationFailure>(*failure).error, "access_denied");
  for (const char* stranger : {"", "code=x", "code=x&state=S", "code=x&state=s&state=s",
                               "code=x&code=y&state=s", "state=s", "code=x&state=s%00"})
    EXPECT_FALSE(readRedirect(stranger, request)) << stranger;
  EXPECT_STREQ(SignInError(SignInError::Case::refused, "a\n\x1b[31mb").what(),
               "Google refused (a  [31mb). Sign in again.");
}

TEST_F(Companion, aClientFileIsTakenOverWholeOrNotAtAll) {
  writeClientFile(Json{{"installed", clientOf("installation")}}.dump());
  EXPECT_EQ(clientInForce()->client.config.clientID, "installation");
  velmora::saveCachedSnapshot(velmora::VelmoraSnapshot::sample());
  const auto own = Json{{"installed", clientOf("own")}}.dump();
  const auto mask = ::umask(0);
  const auto taken = takeOverClientFile(file(own)).client;
  ::umask(mask);
  EXPECT_EQ(taken.file, folder_ / "data" / "velmora-widget" / "client_secret.json");
  EXPECT_EQ(fs::status(taken.file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(platform::readResource("client_secret.json"), own);
  EXPECT_FALSE(velmora::loadCachedSnapshot()) << "they were another client's";
  velmora::saveCachedSnapshot(velmora::VelmoraSnapshot::sample());
  takeOverClientFile(file(own));
  EXPECT_TRUE(velmora::loadCachedSnapshot());

  auto web = clientOf("web");
  const auto elsewhere = Json{{"web", web}};
  auto unprotected = clientOf("u");
  unprotected["token_uri"] = "http://provider.example/token";
  ::mkfifo((folder_ / "pipe").c_str(), 0600);
  const std::pair<fs::path, const char*> refused[] = {
      {folder_, "is a folder"},
      {folder_ / "pipe", "is a folder or a device"},
      {"/dev/zero", "is a folder or a device"},
      {folder_ / "away", "There is no file"},
      {file(std::string(100'000'000, ' '), "large"), "larger than"},
      {file(own.substr(0, 50), "cut"), "no complete client file"},
      {file(R"({"type":"service_account","private_key":"x"})", "service"), "service account"},
      {file("{}", "none"), "no OAuth client"},
      {file(R"({"installed":{"client_id":""}})", "empty"), "client_id"},
      {file(Json{{"installed", unprotected}}.dump(), "plain"), "token_uri"},
      {file(Json{{"web", {{"client_id", "x"}}}}.dump(), "partial"), "client_secret"}};
  for (const auto& [picked, reason] : refused) {
    EXPECT_THAT(refusal(picked), HasSubstr(reason)) << picked;
    EXPECT_EQ(tests::readFile(taken.file), own);
  }
  EXPECT_EQ(refusal(file(elsewhere.dump())), "taken") << "localhost is this machine";
  web["redirect_uris"] = {"https://site.example"};
  EXPECT_THAT(refusal(file(Json{{"web", web}}.dump())), HasSubstr("redirect address"));
}

TEST_F(Companion, commandsSayOneThing) {
  const auto call = [](const std::string& words) {
    return tests::run({"/bin/sh", "-c", program + " " + words});
  };
  EXPECT_EQ(call("goals").output, "{\"daily\":10,\"monthly\":300}\n");
  EXPECT_EQ(call("goals --daily 12.5").output, "{\"daily\":12.5,\"monthly\":300}\n");
  for (const char* wrong :
       {"goals --monthly 1 --daily 0", "goals --monthly nan", "goals --monthly 1e999",
        "goals --monthly 0x10", "goals --monthly ''", "goals status", "rubbish", "client a b",
        "sign-in --timeout 0", "status --chek"}) {
    const auto result = call(wrong);
    EXPECT_EQ(result.status, 2) << wrong;
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
  }
  EXPECT_EQ(call("goals").output, "{\"daily\":12.5,\"monthly\":300}\n");
  EXPECT_EQ(call("status").output,
            "{\"isSignedIn\":false,\"client\":null,\"goals\":{\"daily\":12.5,\"monthly\":300},"
            "\"account\":null,\"snapshot\":null}\n");
  EXPECT_THAT(call("status --check").output,
              HasSubstr(R"("check":{"ok":false,"error":"OAuth configuration not found)"));
  EXPECT_EQ(call("sign-out").status, 0);
  for (const char* failing : {"client", "sign-in", "client /tmp", "sign-in --print-address >&-"}) {
    const auto result = call(failing);
    EXPECT_EQ(result.status, 1) << failing;
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
  }
  fs::create_directories(folder_ / "data/velmora-widget");
  tests::writeFile(folder_ / "data/velmora-widget/client_secret.json", "{damaged");
  for (const char* told : {"client", "sign-in"})
    EXPECT_THAT(call(told).errors, HasSubstr("client_secret.json: This is no complete")) << told;
  const auto picked = file(Json{{"installed", clientOf("mine")}}.dump()).string();
  const auto taken = call("client " + picked);
  EXPECT_THAT(taken.output, StartsWith(R"({"clientID":"mine","file":")"));
  EXPECT_EQ(taken.output.find("hidden"), std::string::npos);
  EXPECT_EQ(call("status >&-").status, 1);
  setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", 1);
  unsetenv("SECRET_BACKEND");
  const auto noKeyring = call("sign-in");
  setenv("SECRET_BACKEND", "file", 1);
  EXPECT_EQ(noKeyring.status, 1);
  EXPECT_THAT(noKeyring.errors, HasSubstr("No keyring can be reached"));
}
