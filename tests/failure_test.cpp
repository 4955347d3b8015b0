#include "companion/failure.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <tuple>

#include "VelmoraWidget/AccountResolution.hpp"
#include "VelmoraWidget/SharedKeychain.hpp"
#include "companion/service_error.hpp"
#include "companion/status.hpp"
#include "platform/foundation/http.hpp"
#include "platform/foundation/user_defaults.hpp"
#include "platform/keychain/keychain.hpp"
#include "sandbox/server.hpp"
#include "tests/support/environment.hpp"
#include "tests/support/program.hpp"
#include "tests/support/replaced_constants.hpp"

using namespace companion;
using namespace std::chrono_literals;
using platform::Json;
using testing::HasSubstr;
using Kind = FailureKind;

namespace {

/// A signed-in user of a provider that misbehaves.
class Failures : public tests::Environment {
 public:
  Failures() {
    tests::setAdSenseBaseURL(server_.baseURL());
    tests::setRequestTimeout(20s);
    writeClientFile(server_.clientFile().dump());
    storeKeychainItem(velmora::refreshTokenAccount, server_.address()["refreshToken"]);
  }

  Failure failureWith(const std::string& fault) {
    server_.setFaults({*sandbox::parseFault(fault)});
    tests::setRequestTimeout(fault.ends_with("slow") ? 1s : 20s);
    return refreshFigures().value_or(Failure{.kind = Kind::other, .title = "none"});
  }

  void answerReportWith(const std::string& body, int status) {
    server_.setOverride([=](sandbox::Step step, const auto&) {
      return step == sandbox::Step::report ? std::optional(sandbox::OverridingAnswer(body, status))
                                           : std::nullopt;
    });
  }

 protected:
  sandbox::Server server_{{}};
};

/// Words for a person: nothing of the wire in them, and always something to do.
void expectWords(const Failure& failure, const std::string& about) {
  for (const auto& text : {failure.title, failure.advice}) {
    EXPECT_FALSE(text.empty()) << about;
    EXPECT_EQ(text.find_first_of("{<_\"\n"), std::string::npos) << text;
    EXPECT_THAT(text, testing::Not(HasSubstr("HTTP")));
  }
  EXPECT_FALSE(failure.details.empty()) << about;
  EXPECT_EQ(failure.details.find('\n'), std::string::npos) << about;
}

}  // namespace

TEST_F(Failures, areToldApart) {
  const std::tuple<const char*, Kind, Remedy> faults[] = {
      {"token=invalid_grant", Kind::signInEnded, Remedy::signIn},
      {"token=invalid_client", Kind::clientRefused, Remedy::chooseClientFile},
      {"token=deleted_client", Kind::clientRefused, Remedy::chooseClientFile},
      {"token=unauthorized_client", Kind::clientRefused, Remedy::chooseClientFile},
      {"token=internal_failure", Kind::serviceProblem, Remedy::tryAgain},
      {"token=temporarily_unavailable", Kind::serviceProblem, Remedy::tryAgain},
      {"token=503", Kind::serviceProblem, Remedy::tryAgain},
      {"token=html-502", Kind::serviceProblem, Remedy::tryAgain},
      {"token=429", Kind::tooManyRequests, Remedy::tryAgain},
      {"token=invalid_scope", Kind::other, Remedy::tryAgain},
      {"token=html", Kind::foreignPage, Remedy::tryAgain},
      {"token=html-511", Kind::foreignPage, Remedy::tryAgain},
      {"token=html-404", Kind::other, Remedy::tryAgain},
      {"token=drop", Kind::noAnswer, Remedy::tryAgain},
      {"token=slow", Kind::noAnswer, Remedy::tryAgain},
      {"token=truncate", Kind::noAnswer, Remedy::tryAgain},
      {"accounts=401", Kind::signInEnded, Remedy::signIn},
      {"report=403", Kind::forbidden, Remedy::chooseAccount},
      {"report=service-disabled", Kind::apiNotEnabled, Remedy::openPage},
      {"report=429", Kind::tooManyRequests, Remedy::tryAgain},
      {"report=500", Kind::serviceProblem, Remedy::tryAgain},
      {"report=html-502", Kind::serviceProblem, Remedy::tryAgain},
      {"report=html", Kind::foreignPage, Remedy::tryAgain},
      {"report=html-302", Kind::foreignPage, Remedy::tryAgain},
      {"report=empty", Kind::foreignPage, Remedy::tryAgain},
      {"report=400", Kind::other, Remedy::tryAgain},
      {"report=redirect-loop", Kind::other, Remedy::tryAgain}};
  for (const auto& [fault, kind, remedy] : faults) {
    const auto failure = failureWith(fault);
    EXPECT_EQ(nameOf(failure.kind), nameOf(kind)) << fault;
    EXPECT_EQ(failure.remedy, remedy) << fault;
    expectWords(failure, fault);
    if (kind == Kind::serviceProblem) {
      EXPECT_TRUE(failure.passes) << fault;
    }
  }
  EXPECT_EQ(failureWith("report=service-disabled").page,
            "https://console.developers.google.com/apis/api/adsense.googleapis.com/"
            "overview?project=648213975310");
}

TEST_F(Failures, ofTheServiceAreReadFromItsDocument) {
  const auto refused = [](const std::string& detail) {
    return R"({"error":{"code":403,"status":"PERMISSION_DENIED","details":[)" + detail + "]}}";
  };
  answerReportWith(refused(R"({"reason":"ACCESS_TOKEN_SCOPE_INSUFFICIENT"})"), 403);
  EXPECT_EQ(refreshFigures()->remedy, Remedy::signIn);
  answerReportWith(R"({"error":{"errors":[{"reason":"accessNotConfigured"}]}})", 403);
  EXPECT_EQ(refreshFigures()->kind, Kind::apiNotEnabled);
  EXPECT_EQ(refreshFigures()->page,
            "https://console.cloud.google.com/apis/library/adsense.googleapis.com");
  for (const char* page : {"http://console.cloud.google.com/", "https://evil.example/",
                           "https://console.cloud.google.com@evil.example/", "x"})
    EXPECT_EQ(
        readServiceError(refused(R"({"metadata":{"activationUrl":")" + std::string(page) + "\"}}"))
            .activationPage,
        "")
        << page;
  for (const char* odd : {"", "[]", R"({"error":5})", R"({"error":{"details":{}}})",
                          R"({"error":{"details":[5]}})"}) {
    answerReportWith(odd, 403);
    EXPECT_EQ(refreshFigures()->kind, Kind::forbidden) << odd;
  }
  answerReportWith(R"({"rows":5})", 200);
  EXPECT_EQ(refreshFigures()->kind, Kind::other) << "the service's, but not to be understood";
}

TEST_F(Failures, onTheWayAreTheNetworks) {
  server_.setOverride([](sandbox::Step step, const auto&) {
    return step == sandbox::Step::accounts ? std::optional<sandbox::OverridingAnswer>("{}")
                                           : std::nullopt;
  });
  EXPECT_EQ(refreshFigures()->kind, Kind::noAccount);
  tests::setAdSenseBaseURL("http://127.0.0.1:9/v2");
  EXPECT_EQ(refreshFigures()->kind, Kind::noNetwork) << "nobody listens there";
  auto client = server_.clientFile();
  client["installed"]["token_uri"] = "https://name.invalid/token";
  writeClientFile(client.dump());
  EXPECT_EQ(refreshFigures()->kind, Kind::noNetwork);
  using Case = platform::TransportError::Case;
  EXPECT_EQ(describeFailure(platform::TransportError("x", Case::ledAway)).kind, Kind::foreignPage);
}

TEST_F(Failures, atHomeSayWhatToDo) {
  clearKeychain();
  EXPECT_EQ(refreshFigures()->kind, Kind::signedOut);
  namespace status = platform::keychain_status;
  EXPECT_EQ(describeFailure(velmora::KeychainError(status::interactionNotAllowed)).remedy,
            Remedy::unlockKeyring);
  for (const auto code : {status::notAvailable, status::timedOut})
    expectWords(describeFailure(velmora::KeychainError(code)), std::to_string(code));
  writeClientFile("{damaged");
  const auto damaged = *refreshFigures();
  EXPECT_EQ(damaged.kind, Kind::clientRefused);
  EXPECT_THAT(damaged.details, HasSubstr("client_secret.json"));
  expectWords(damaged, "damaged");
  EXPECT_EQ(describeFailure(std::runtime_error("x")).kind, Kind::other);
}
