#include "companion/sign_in.hpp"

#include <arpa/inet.h>
#include <gio/gio.h>
#include <gmock/gmock.h>
#include <httplib.h>
#include <nlohmann/json.hpp>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <atomic>
#include <csignal>
#include <thread>
#include <tuple>

#include "VelmoraWidget/AccessToken.hpp"
#include "VelmoraWidget/AccountResolution.hpp"
#include "VelmoraWidget/SharedKeychain.hpp"
#include "VelmoraWidget/SnapshotCache.hpp"
#include "VelmoraWidget/SnapshotFetch.hpp"
#include "companion/former_figures.hpp"
#include "companion/redirect_listener.hpp"
#include "companion/user_data.hpp"
#include "platform/foundation/background_tasks.hpp"
#include "platform/foundation/glib.hpp"
#include "platform/foundation/http.hpp"
#include "platform/foundation/url.hpp"
#include "platform/foundation/user_defaults.hpp"
#include "sandbox/server.hpp"
#include "tests/support/environment.hpp"
#include "tests/support/replaced_constants.hpp"
#include "tests/support/waiting.hpp"

using namespace companion;
using namespace std::chrono_literals;
using platform::UserDefaults;
using sandbox::Fault;
using sandbox::Step;
using testing::HasSubstr;
using Case = SignInError::Case;

namespace {

constexpr uid_t nobody = 65534;

/// What a user does at the address, on a thread of its own.
using Browser = std::function<void(const std::string& address)>;

struct Url {
  std::string origin;
  std::map<std::string, std::string> query;

  explicit Url(const std::string& address)
      : origin(address.substr(0, address.find_first_of("/?", 8))) {
    const auto mark = address.find('?');
    if (mark == std::string::npos) return;
    for (const auto& item : platform::queryItems(address.substr(mark + 1)))
      query[item.name] = item.value;
  }
};

/// Somebody else is signed in already; the sandbox's user allows everything.
class SigningIn : public tests::Environment {
 public:
  explicit SigningIn(sandbox::ConsentMode consent = sandbox::ConsentMode::allow)
      : server_({.consent = consent}) {
    tests::setAdSenseBaseURL(server_.baseURL());
    tests::setRevocationURL(server_.address()["revokeURL"]);
    tests::setRequestTimeout(20s);
    setenv("XDG_DATA_HOME", (folder_ / "data").c_str(), 1);
    setenv("PATH", "/nowhere", 1);  // no host to tell
    writeClientFile(server_.clientFile().dump());
    storeKeychainItem(velmora::refreshTokenAccount, "former token");
    velmora::saveCachedSnapshot(velmora::VelmoraSnapshot::sample());
    UserDefaults::standard().setString(velmora::accountCacheKey, "accounts/former");
  }

  SignInOutcome signIn(const Browser& browser, std::chrono::seconds limit = 20s,
                       SignInEvents events = {}) {
    const platform::GLoop loop(g_main_loop_new(nullptr, FALSE));
    SignInOutcome outcome;
    std::thread user;
    events.waiting = [&](const std::string& address) {
      user = std::thread([&browser, address] { browser(address); });
    };
    events.answered = [&] { answered_ = true; };
    events.finished = [&](const SignInOutcome& end) {
      outcome = end;
      g_main_loop_quit(loop.get());
    };
    {
      SignIn signIn(limit, std::move(events));
      current_ = &signIn;
      g_main_loop_run(loop.get());
      current_ = nullptr;
    }
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
    if (user.joinable()) user.join();
    platform::drainBackgroundTasks();
    return outcome;
  }

  /// Opens the address and follows where it leads.
  std::function<void(const std::string&)> follows() {
    return [this](const std::string& address) {
      try {
        page_ = platform::sendRequest({.url = address}).body;
      } catch (const platform::TransportError&) {
        page_ = "gone";
      }
    };
  }

  static std::optional<std::string> token() { return velmora::refreshTokenItem().readString(); }

  static bool formerUserIsStillThere() {
    return token() == "former token" && velmora::loadCachedSnapshot() &&
           UserDefaults::standard().string(velmora::accountCacheKey) == "accounts/former";
  }

  int revocations() {
    int count = 0;
    for (const auto& request : server_.takeRequests()) count += request.target == "/revoke";
    return count;
  }

  void cancel() { current_->cancel(); }

 protected:
  sandbox::Server server_;
  std::string page_;
  SignIn* current_ = nullptr;
  std::atomic<bool> answered_ = false;
};

class Denying : public SigningIn {
 public:
  Denying() : SigningIn(sandbox::ConsentMode::deny) {}
};

/// The query that the provider would send the browser back with.
std::string redirectQuery(const std::string& address) {
  httplib::Client provider(Url(address).origin);
  const auto answer = provider.Get(address.substr(address.find('/', 8)));
  const auto target = answer->get_header_value("Location");
  return target.substr(target.find('?'));
}

/// As if the disk were full, for every write of this process.
void letFilesGrow(bool allowed) {
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  ::getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = allowed ? limit.rlim_max : 0;
  ::setrlimit(RLIMIT_FSIZE, &limit);
}

std::string listenerOf(const std::string& address) { return Url(address).query["redirect_uri"]; }

}  // namespace

TEST_F(SigningIn, putsTheNewUserInTheFormersPlace) {
  httplib::Headers headers;
  const auto outcome = signIn([&](const std::string& address) {
    httplib::Client listener(listenerOf(address));
    const auto end = listener.Get("/" + redirectQuery(address));
    headers = end->headers;
    page_ = end->body;
  });
  ASSERT_FALSE(outcome.error) << outcome.error->what();
  EXPECT_EQ(outcome.account, "Velmora sandbox");
  EXPECT_THAT(page_, HasSubstr("Velmora sandbox"));
  EXPECT_THAT(*token(), testing::StartsWith("1//0"));
  EXPECT_FALSE(velmora::loadCachedSnapshot());
  EXPECT_THAT(*UserDefaults::standard().string(velmora::accountCacheKey),
              testing::StartsWith("accounts/pub-"));
  EXPECT_EQ(headers.find("Cache-Control")->second, "no-store");
  EXPECT_EQ(headers.find("Referrer-Policy")->second, "no-referrer");
  EXPECT_EQ(page_.find("http"), std::string::npos) << "a resource from elsewhere";
  EXPECT_EQ(page_.find(*token()), std::string::npos);

  const auto withdrawn = *token();
  EXPECT_TRUE(signOut());
  EXPECT_EQ(token(), std::nullopt);
  EXPECT_EQ(UserDefaults::standard().string(velmora::accountCacheKey), std::nullopt);
  EXPECT_TRUE(signOut()) << "nobody is signed in";
  storeKeychainItem(velmora::refreshTokenAccount, withdrawn);
  EXPECT_TRUE(signOut()) << "a token that is gone already is a good end";
  storeKeychainItem(velmora::refreshTokenAccount, withdrawn);
  tests::setRevocationURL("http://127.0.0.1:9/revoke");
  EXPECT_FALSE(signOut()) << "the provider is away";
  EXPECT_EQ(token(), std::nullopt);
}

TEST_F(SigningIn, aFetchUnderWayStoresNothingForSomebodyElse) {
  const auto token = server_.address()["refreshToken"].get<std::string>();
  const std::pair<const char*, std::function<void()>> changes[] = {
      {"signed out", [] { signOut(); }},
      {"removed by hand", [] { clearKeychain(); }},
      {"another user", [] {
         storeKeychainItem(velmora::refreshTokenAccount, "another token");
         forgetFigures();
       }}};
  for (const auto& [name, change] : changes) {
    for (const auto during : {Step::accounts, Step::report}) {
      forgetFigures();
      storeKeychainItem(velmora::refreshTokenAccount, token);
      server_.setOverride([&, change = change](Step asked, const auto&) {
        if (asked == during) change();
        return std::optional<std::string>();
      });
      tests::setRevocationURL("http://127.0.0.1:9/revoke");
      EXPECT_THROW(velmora::fetchSnapshot(), velmora::OAuthError) << name;
      EXPECT_FALSE(velmora::loadCachedSnapshot()) << name;
      if (during == Step::accounts) {
        EXPECT_FALSE(UserDefaults::standard().string(velmora::accountCacheKey)) << name;
      }
    }
  }
  server_.setOverride({});
  forgetFigures();
  storeKeychainItem(velmora::refreshTokenAccount, token);
  velmora::fetchSnapshot();
  EXPECT_TRUE(velmora::loadCachedSnapshot());
}

TEST_F(SigningIn, aKillLeavesNobodyBesideTheFormersFigures) {
  putFiguresAside();
  EXPECT_FALSE(velmora::loadCachedSnapshot());
  settleFigures();
  EXPECT_TRUE(formerUserIsStillThere()) << "killed before the token was stored";
  putFiguresAside();
  velmora::saveCachedSnapshot({.today = 7});
  settleFigures();
  EXPECT_EQ(velmora::loadCachedSnapshot()->today, 7) << "fetched meanwhile";

  putFiguresAside();
  storeKeychainItem(velmora::refreshTokenAccount, "new token");
  EXPECT_FALSE(velmora::loadCachedSnapshot());
  putFiguresAside();
  settleFigures();
  EXPECT_FALSE(velmora::loadCachedSnapshot()) << "killed after it was stored";
  for (const auto& key : asideKeys()) {
    EXPECT_FALSE(UserDefaults::standard().data(key)) << key;
    EXPECT_FALSE(UserDefaults::standard().string(key)) << key;
  }
}

TEST_F(Denying, changesNothing) {
  const auto outcome = signIn(follows());
  ASSERT_TRUE(outcome.error);
  EXPECT_EQ(outcome.error->kind, Case::denied);
  EXPECT_THAT(page_, HasSubstr("Permission was denied"));
  EXPECT_TRUE(formerUserIsStillThere());
}

TEST_F(SigningIn, failuresAreTypedAndChangeNothing) {
  using Kind = Fault::Kind;
  const std::pair<Fault, Case> faults[] = {
      {{Kind::status, 400}, Case::refused},    {{Kind::status, 503}, Case::unavailable},
      {{Kind::html, 502}, Case::unavailable},  {{Kind::html, 404}, Case::unreachable},
      {{Kind::html, 0}, Case::unreachable},    {{Kind::truncate, 0}, Case::unreachable},
      {{Kind::drop, 0}, Case::unreachable},    {{Kind::empty, 0}, Case::unreachable},
      {{Kind::garbage, 0}, Case::unreachable}, {{Kind::redirectLoop, 0}, Case::unreachable}};
  for (const auto& [fault, expected] : faults) {
    server_.setFaults({{Step::exchange, fault}});
    const auto outcome = signIn(follows());
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->kind, expected) << outcome.error->what();
    EXPECT_THAT(page_, HasSubstr("The sign-in did not succeed"));
    const auto status = "HTTP " + std::to_string(fault.status);
    EXPECT_THAT(outcome.error->what(),
                HasSubstr(fault.status == 0 || expected == Case::refused ? "" : status));
    EXPECT_TRUE(formerUserIsStillThere());
  }
  server_.setFaults({{Step::exchange, {Kind::slow, 0}}});
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(signIn(follows(), 2s).error->kind, Case::unreachable);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s);
}

TEST_F(SigningIn, whatIsGrantedInVainIsWithdrawn) {
  const std::string answer = R"("access_token":"ya29.x","token_type":"Bearer")";
  const std::tuple<Step, std::string, Case> answers[] = {
      {Step::exchange, "{" + answer + "}", Case::noRefreshToken},
      {Step::exchange, "{" + answer + R"(,"refresh_token":"1//x","scope":"openid email"})",
       Case::noPermission},
      {Step::exchange,
       "{" + answer +
           R"(,"refresh_token":"1//x","scope":"https://www.googleapis.com/auth/adsense.readonlyx"})",
       Case::noPermission},
      {Step::accounts, "{}", Case::noAccount}};
  for (const auto& [step, body, expected] : answers) {
    server_.setOverride([step = step, body = body](Step asked, const auto&) {
      return asked == step ? std::optional(body) : std::nullopt;
    });
    const auto outcome = signIn(follows());
    ASSERT_TRUE(outcome.error) << body;
    EXPECT_EQ(outcome.error->kind, expected) << body;
    EXPECT_EQ(revocations(), 1) << body;
    EXPECT_TRUE(formerUserIsStillThere());
  }
  const std::string odd = R"("refresh_token":"1//x","expires_in":"3599","scope":["x"])";
  server_.setOverride([&](Step asked, const auto&) {
    return asked == Step::exchange ? std::optional("{" + answer + "," + odd + "}") : std::nullopt;
  });
  EXPECT_TRUE(signIn(follows()).error);
  EXPECT_EQ(revocations(), 1);
  // An account that cannot be asked for now is no reason to refuse.
  server_.setOverride({});
  server_.setFaults({{Step::accounts, {Fault::Kind::status, 503}}});
  EXPECT_FALSE(signIn(follows()).error);
  EXPECT_NE(token(), "former token");
}

TEST_F(SigningIn, strangersChangeNothing) {
  int idle[50];
  const auto outcome = signIn([&](const std::string& address) {
    const auto listener = listenerOf(address);
    const auto port = std::stoi(listener.substr(listener.rfind(':') + 1));
    sockaddr_in socketAddress{.sin_family = AF_INET,
                              .sin_port = htons(static_cast<std::uint16_t>(port)),
                              .sin_addr = {htonl(INADDR_LOOPBACK)},
                              .sin_zero = {}};
    for (auto& connection : idle) {
      connection = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
      ::connect(connection, reinterpret_cast<sockaddr*>(&socketAddress), sizeof socketAddress);
    }
    httplib::Client browser(listener);
    const auto query = redirectQuery(address);
    const auto state = Url(address).query["state"];
    const auto status = [&](const std::string& target) { return browser.Get(target)->status; };
    EXPECT_EQ(status("/?code=x&state=" + state + "x"), 400);
    EXPECT_EQ(status("/?code=x&state=" + state.substr(1)), 400);
    EXPECT_EQ(status("/?code=x&state=" + state + "&state=" + state), 400);
    EXPECT_EQ(status("/?state=" + state), 400);
    EXPECT_EQ(status("/?code=&state=" + state), 400);
    EXPECT_EQ(status("/elsewhere" + query), 404);
    EXPECT_EQ(browser.Post("/" + query, "", "text/plain")->status, 405);
    EXPECT_EQ(browser.Head("/" + query)->status, 405);
    const auto answer = browser.Get("/?error=<script>alert(1)</script>&state=wrong");
    EXPECT_EQ(answer->body.find("<script"), std::string::npos);
    std::thread again([&] { EXPECT_EQ(httplib::Client(listener).Get("/" + query)->status, 200); });
    EXPECT_EQ(status("/" + query), 200);
    again.join();
  });
  for (const int connection : idle) ::close(connection);
  ASSERT_FALSE(outcome.error) << outcome.error->what();
  EXPECT_EQ(revocations(), 0);
}

TEST_F(SigningIn, aSecondCodeIsAnAttack) {
  server_.setFaults({{Step::exchange, {Fault::Kind::slow, 0}}});
  signIn(
      [&](const std::string& address) {
        const auto listener = listenerOf(address);
        std::thread first([&] {
          httplib::Client(listener).Get("/?code=1&state=" + Url(address).query["state"]);
        });
        tests::waitFor("the first answer", [this] { return answered_.load(); });
        EXPECT_EQ(
            httplib::Client(listener).Get("/?code=2&state=" + Url(address).query["state"])->status,
            400);
        first.join();
      },
      3s);
  EXPECT_TRUE(formerUserIsStillThere());
}

TEST_F(SigningIn, endsWithoutAnAnswer) {
  EXPECT_EQ(signIn([](const std::string&) {}, 1s).error->kind, Case::timeLimit);
  const auto cancels = [this](const std::string&) {
    g_idle_add(
        [](gpointer test) {
          static_cast<SigningIn*>(test)->cancel();
          return gboolean{G_SOURCE_REMOVE};
        },
        this);
  };
  EXPECT_EQ(signIn(cancels).error->kind, Case::cancelled);
  removeClientFile();
  EXPECT_EQ(signIn(follows()).error->kind, Case::noClientFile);
  EXPECT_TRUE(formerUserIsStillThere());
}

TEST_F(SigningIn, manyAtOnceFindThatTheyCanStore) {
  std::atomic<int> failures = 0;
  std::vector<std::jthread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&failures] {
      for (int j = 0; j < 10; ++j) {
        try {
          requireState();
        } catch (const SignInError&) {
          ++failures;
        }
      }
    });
  }
  threads.clear();
  EXPECT_EQ(failures, 0);
}

TEST_F(SigningIn, aSecondSignalBreaksOffWhatIsBeingFinished) {
  server_.setFaults({{Step::exchange, {Fault::Kind::slow, 0}}});
  setenv("VELMORA_TEST_API", server_.baseURL().c_str(), 1);
  setenv("VELMORA_TEST_REVOCATION", server_.address()["revokeURL"].get<std::string>().c_str(), 1);
  setenv("VELMORA_TEST_TIMEOUT_MS", "60000", 1);
  std::filesystem::create_directories(folder_ / "data/velmora-widget");
  tests::writeFile(folder_ / "data/velmora-widget/client_secret.json", server_.clientFile().dump());
  const auto flags = static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_PIPE |
                                                   G_SUBPROCESS_FLAGS_STDERR_SILENCE);
  const platform::Reference<GSubprocess> program(
      g_subprocess_new(flags, nullptr, VELMORA, "sign-in", "--print-address", nullptr));
  const platform::Reference<GDataInputStream> output(
      g_data_input_stream_new(g_subprocess_get_stdout_pipe(program.get())));
  const platform::GText address(
      g_data_input_stream_read_line(output.get(), nullptr, nullptr, nullptr));
  ASSERT_TRUE(address);
  std::thread browser([&] { follows()(address.get()); });
  const auto deadline = std::chrono::steady_clock::now() + 10s;
  const auto isExchanging = [this] {
    for (const auto& request : server_.takeRequests()) {
      if (request.target == "/token") return true;
    }
    return false;
  };
  while (!isExchanging() && std::chrono::steady_clock::now() < deadline)
    std::this_thread::sleep_for(20ms);
  std::atomic<bool> isOver = false;
  std::thread ending([&] {
    g_subprocess_wait(program.get(), nullptr, nullptr);
    isOver = true;
  });
  int signals = 0;
  while (!isOver && std::chrono::steady_clock::now() < deadline) {
    g_subprocess_send_signal(program.get(), SIGINT);
    ++signals;
    std::this_thread::sleep_for(100ms);
  }
  EXPECT_TRUE(isOver);
  EXPECT_GE(signals, 2) << "the first lets it be finished";
  g_subprocess_force_exit(program.get());
  ending.join();
  browser.join();
  EXPECT_EQ(g_subprocess_get_exit_status(program.get()), 1);
  EXPECT_TRUE(formerUserIsStillThere());
}

TEST_F(SigningIn, aCodeIsSentOnceAndNowhereElse) {
  server_.setFaults({{Step::exchange, {Fault::Kind::redirectLoop, 0}}});
  EXPECT_EQ(signIn(follows()).error->kind, Case::unreachable);
  int exchanges = 0;
  for (const auto& request : server_.takeRequests()) exchanges += request.target == "/token";
  EXPECT_EQ(exchanges, 1);
}

TEST_F(SigningIn, nobodyIsJoinedToTheFormersAccount) {
  const auto folder = defaultsFile().parent_path();
  std::filesystem::remove_all(folder);
  tests::writeFile(folder, "a file where the folder should be");
  const auto outcome = signIn(follows());
  ASSERT_TRUE(outcome.error);
  EXPECT_EQ(outcome.error->kind, Case::stateNotWritable);
  EXPECT_EQ(token(), "former token");
  EXPECT_NO_THROW(signOut());
  EXPECT_EQ(token(), std::nullopt);
}

TEST_F(SigningIn, aDiskThatFillsDuringTheExchangeChangesNothing) {
  server_.setOverride([](Step asked, const auto&) {
    if (asked == Step::accounts) letFilesGrow(false);
    return std::optional<std::string>();
  });
  const auto outcome = signIn(follows());
  letFilesGrow(true);
  ASSERT_TRUE(outcome.error);
  EXPECT_EQ(outcome.error->kind, Case::stateNotWritable);
  EXPECT_TRUE(formerUserIsStillThere());
  EXPECT_EQ(revocations(), 1);
}

TEST_F(SigningIn, aSignOutRemovesWhatItCan) {
  letFilesGrow(false);
  EXPECT_NO_THROW(forgetFigures());
  letFilesGrow(true);
  EXPECT_FALSE(velmora::loadCachedSnapshot()) << "full";

  if (::geteuid() != 0) GTEST_SKIP() << "needs to become another user";
  velmora::saveCachedSnapshot(velmora::VelmoraSnapshot::sample());
  const auto folder = defaultsFile().parent_path();
  const auto asNobody = [&](mode_t folderMode, mode_t fileMode, Case expected) {
    for (const auto& owned : {folder, defaultsFile()})
      EXPECT_EQ(::chown(owned.c_str(), nobody, nobody) == 0, std::filesystem::exists(owned));
    ::chmod(defaultsFile().c_str(), fileMode);
    ::chmod(folder.c_str(), folderMode);
    ::chmod(folder_.c_str(), 0755);
    ::chmod(folder.parent_path().c_str(), 0755);
    const pid_t child = ::fork();
    if (child == 0) {
      if (::setuid(nobody) != 0) ::_exit(2);
      try {
        forgetFigures();
      } catch (const SignInError& error) {
        ::_exit(error.kind == expected ? 0 : 1);
      }
      ::_exit(expected == Case::cancelled ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  };
  constexpr auto works = Case::cancelled;
  EXPECT_EQ(asNobody(0500, 0400, Case::figuresLeft), 0);
  EXPECT_TRUE(velmora::loadCachedSnapshot());
  EXPECT_EQ(asNobody(0500, 0600, works), 0) << "the folder alone cannot be written";
  EXPECT_FALSE(velmora::loadCachedSnapshot());
  velmora::saveCachedSnapshot(velmora::VelmoraSnapshot::sample());
  EXPECT_EQ(asNobody(0700, 0400, works), 0) << "the file alone cannot be written";
  EXPECT_FALSE(velmora::loadCachedSnapshot());
  EXPECT_EQ(asNobody(0500, 0600, works), 0) << "there is none";
}

TEST_F(SigningIn, aWebClientUsesItsOwnAddress) {
  auto web = server_.clientFile()["installed"];
  const int port = RedirectListener({}, {}).port();  // free again
  const auto uri = "http://localhost:" + std::to_string(port) + "/b%20ck";
  web["redirect_uris"] = {"https://velmora.example/back", uri};
  writeClientFile(platform::Json{{"web", web}}.dump());
  std::string asked;
  const auto visit = [&](const std::string& address) {
    auto url = Url(address);
    asked = url.query["redirect_uri"];
    httplib::Client listener("127.0.0.1", port);
    EXPECT_EQ(listener.Get("/?code=x&state=" + url.query["state"])->status, 404);
    httplib::Client byIPv6("::1", port);
    EXPECT_EQ(byIPv6.Get("/b%20ck?code=x")->status, 400);
    listener.Get("/b%20ck?error=access_denied&state=" + url.query["state"]);
  };
  EXPECT_EQ(signIn(visit).error->kind, Case::denied);
  EXPECT_EQ(asked, uri);
  {
    const RedirectListener other({.uri = "", .port = port}, {});
    EXPECT_EQ(signIn(visit).error->kind, Case::portTaken);
  }
  web["redirect_uris"] = {"http://127.0.0.1.evil.example/", "http://127.0.0.1@evil.example/",
                          "https://127.0.0.1/"};
  writeClientFile(platform::Json{{"web", web}}.dump());
  EXPECT_EQ(signIn(visit).error->kind, Case::noLoopbackAddress);
}
