#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "VelmoraWidget/AccessToken.hpp"
#include "VelmoraWidget/OAuthConfig.hpp"
#include "VelmoraWidget/Objectives.hpp"
#include "VelmoraWidget/SharedKeychain.hpp"
#include "platform/foundation/http.hpp"
#include "platform/foundation/json.hpp"
#include "platform/keychain/keychain.hpp"
#include "sandbox/server.hpp"
#include "tests/support/environment.hpp"

using namespace velmora;

namespace {

class Credentials : public tests::Environment {};

template <class Action>
std::string errorOf(const Action& action) {
  try {
    action();
  } catch (const std::exception& error) {
    return error.what();
  }
  return "no error";
}

std::string tokenError(const std::string& body) {
  return errorOf([&] { accessTokenFrom(body); });
}

std::string refreshError() {
  return errorOf([] { refreshAccessToken(); });
}

}  // namespace

TEST_F(Credentials, keychainItemsAreFoundByAllThreeAttributes) {
  EXPECT_EQ(refreshTokenItem().readString(), std::nullopt);
  storeKeychainItem(refreshTokenAccount, "other", "com.example.other");
  storeKeychainItem(refreshTokenAccount, "other", keychainService, "another.group");
  EXPECT_EQ(refreshTokenItem().readString(), std::nullopt);
  storeKeychainItem(refreshTokenAccount, "  to\xffken\n");
  EXPECT_EQ(refreshTokenItem().readString(), "  to\xef\xbf\xbdken\n");
  storeKeychainItem(refreshTokenAccount, "");
  EXPECT_EQ(refreshTokenItem().readString(), "");
  EXPECT_EQ(readKeychainData("acc\xffount", keychainService, keychainAccessGroup), std::nullopt);
}

TEST_F(Credentials, keychainErrorsCarryTheirStatus) {
  EXPECT_STREQ(KeychainError(0).what(), "Erreur Keychain (0)");
  EXPECT_STREQ(KeychainError(-25308).what(), "Erreur Keychain (-25308)");
}

TEST_F(Credentials, objectivesFallBackAsAPair) {
  EXPECT_EQ(loadObjectives(), defaultObjectives);
  const std::pair<const char*, Objectives> documents[] = {
      {R"({"daily":25,"monthly":750.5,"x":[]})", {25, 750.5}},
      {R"({"daily":0,"monthly":-5})", {0, -5}},
      {R"({"daily":25})", defaultObjectives},
      {R"({"daily":"25","monthly":750})", defaultObjectives},
      {R"({"daily":25,"monthly":null})", defaultObjectives},
      {R"([25,750])", defaultObjectives},
      {"goals", defaultObjectives},
      {"", defaultObjectives}};
  for (const auto& [document, expected] : documents) {
    storeKeychainItem(objectivesAccount, document);
    EXPECT_EQ(loadObjectives(), expected) << document;
  }
}

TEST_F(Credentials, clientFileIsReadStrictly) {
  EXPECT_FALSE(loadOAuthConfig());
  const std::string client =
      R"({"client_id":" a ","client_secret":"b","auth_uri":"c","token_uri":"d"})";
  writeClientFile(R"({"web":)" + client + "}");
  ASSERT_TRUE(loadOAuthConfig());
  EXPECT_EQ(loadOAuthConfig()->clientID, " a ");
  writeClientFile(R"({"web":{},"installed":)" + client + "}");
  EXPECT_EQ(loadOAuthConfig()->tokenURI, "d");
  for (const char* installed : {"null", "\"x\"", "[]", "1", "{}"}) {
    writeClientFile(R"({"web":)" + client + R"(,"installed":)" + installed + "}");
    EXPECT_FALSE(loadOAuthConfig()) << installed;
  }
  for (const char* key : {"client_id", "client_secret", "auth_uri", "token_uri"}) {
    auto broken = nlohmann::json::parse(client);
    broken[key] = 5;
    writeClientFile(nlohmann::json{{"installed", broken}}.dump());
    EXPECT_FALSE(loadOAuthConfig()) << key;
    broken.erase(key);
    writeClientFile(nlohmann::json{{"installed", broken}}.dump());
    EXPECT_FALSE(loadOAuthConfig()) << key;
  }
  for (const char* document : {"", "[]", "\"x\"", "{", "{}"}) {
    writeClientFile(document);
    EXPECT_FALSE(loadOAuthConfig()) << document;
  }
}

TEST_F(Credentials, tokenAnswersAreDecidedByTheBody) {
  EXPECT_EQ(accessTokenFrom(R"({"access_token":"t","expires_in":3599,"error":null})"), "t");
  EXPECT_EQ(accessTokenFrom(R"({"access_token":""})"), "");
  EXPECT_EQ(tokenError(R"({"error":"invalid_grant","error_description":"Token revoked."})"),
            "Authentication error: Token revoked.");
  EXPECT_EQ(tokenError(R"({"error":"invalid_client"})"), "Authentication error: invalid_client");
  EXPECT_EQ(tokenError(R"({"access_token":"t","error":""})"), "Authentication error: ");
  EXPECT_EQ(tokenError("{}"), "Authentication error: response without access_token");
  EXPECT_EQ(tokenError(R"({"access_token":"t","expires_in":"3599"})"),
            "expires_in: expected a 64-bit integer");
  EXPECT_EQ(tokenError(R"({"access_token":"t","refresh_token":1})"),
            "refresh_token: expected a string");
  EXPECT_EQ(tokenError("<html>"), "not a JSON document");
}

TEST_F(Credentials, refreshSendsTheForm) {
  sandbox::Server server({});
  EXPECT_EQ(refreshError(), "OAuth configuration not found (client_secret.json missing).");
  writeClientFile(server.clientFile().dump());
  EXPECT_EQ(refreshError(), "Not connected to Google.");
  storeKeychainItem(refreshTokenAccount, server.address()["refreshToken"]);
  EXPECT_EQ(refreshError(), "no error");
  const auto requests = server.takeRequests();
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_EQ(requests[0].headers.find("Content-Type")->second, "application/x-www-form-urlencoded");
  EXPECT_THAT(requests[0].body,
              testing::HasSubstr("refresh_token=1%2F%2F0sandbox%2Brefresh%2Ftoken%3D"));
  EXPECT_THAT(requests[0].body, testing::HasSubstr("grant_type=refresh_token"));
  storeKeychainItem(refreshTokenAccount, "é revoked");
  EXPECT_EQ(refreshError(), "Authentication error: Token has been expired or revoked.");
  EXPECT_EQ(percentEncodeValue("é a+/~._-"), "%C3%A9%20a%2B%2F~._-");
  writeClientFile(
      R"({"web":{"client_id":"a","client_secret":"b","auth_uri":"c","token_uri":"no address"}})");
  EXPECT_THROW(refreshAccessToken(), platform::TransportError);
}
