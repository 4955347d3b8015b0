#include "companion/redirect_listener.hpp"

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <optional>

#include "companion/loopback_peer.hpp"
#include "companion/loopback_sockets.hpp"
#include "companion/sign_in_error.hpp"
#include "platform/foundation/glib.hpp"

using namespace companion;
using namespace std::chrono_literals;
using platform::Descriptor;
using testing::HasSubstr;
using testing::StartsWith;
using Case = SignInError::Case;

namespace {

constexpr uid_t nobody = 65534;
constexpr const char* rightRequest = "GET /back?right HTTP/1.1\r\nHost: localhost\r\n\r\n";

bool runUntil(const std::function<bool()>& happened) {
  const auto deadline = std::chrono::steady_clock::now() + 10s;
  while (!happened()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    const auto wake =
        g_timeout_add(20, [](gpointer) { return gboolean{G_SOURCE_REMOVE}; }, nullptr);
    g_main_context_iteration(nullptr, TRUE);
    if (g_main_context_find_source_by_id(nullptr, wake) != nullptr) g_source_remove(wake);
  }
  return true;
}

Descriptor connectTo(int port, int family = AF_INET) {
  Descriptor connection(::socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_in ipv4{.sin_family = AF_INET,
                   .sin_port = htons(static_cast<std::uint16_t>(port)),
                   .sin_addr = {htonl(INADDR_LOOPBACK)},
                   .sin_zero = {}};
  sockaddr_in6 ipv6{};
  ipv6.sin6_family = AF_INET6;
  ipv6.sin6_port = ipv4.sin_port;
  ipv6.sin6_addr = in6addr_loopback;
  const bool isIPv4 = family == AF_INET;
  const auto* address =
      isIPv4 ? reinterpret_cast<sockaddr*>(&ipv4) : reinterpret_cast<sockaddr*>(&ipv6);
  const bool connected =
      ::connect(connection.get(), address, isIPv4 ? sizeof ipv4 : sizeof ipv6) == 0;
  return connected ? std::move(connection) : Descriptor();
}

void send(const Descriptor& connection, std::string_view text) {
  ::send(connection.get(), text.data(), text.size(), MSG_NOSIGNAL);
}

/// What has arrived so far; absent while nothing has. Empty once the connection has ended.
std::optional<std::string> arrived(const Descriptor& connection) {
  std::string text(65536, '\0');
  const auto count = ::recv(connection.get(), text.data(), text.size(), MSG_DONTWAIT);
  if (count < 0 && errno == EAGAIN) return std::nullopt;
  return text.substr(0, count < 0 ? 0 : static_cast<std::size_t>(count));
}

std::string answerTo(const Descriptor& connection, std::string_view request) {
  send(connection, request);
  std::optional<std::string> text;
  runUntil([&] { return (text = arrived(connection)).has_value(); });
  return text.value_or("no answer");
}

long residentKilobytes() {
  std::ifstream file("/proc/self/statm");
  long size = 0, resident = 0;
  file >> size >> resident;
  return resident * (::sysconf(_SC_PAGESIZE) / 1024);
}

/// Runs it in a process of its own, which ends with the number it returns.
int inChild(const std::function<int()>& work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  int status = 0;
  ::waitpid(child, &status, 0);
  return WEXITSTATUS(status);
}

int refusal(int port, bool alsoIPv6 = false) {
  try {
    listenOnLoopback(port, alsoIPv6);
  } catch (const SignInError& error) {
    return static_cast<int>(error.kind);
  }
  return -1;
}

class Listening : public testing::Test {
 protected:
  /// Says yes to one query, and keeps the browser waiting.
  RedirectListener listener_{{.uri = "", .port = 0, .path = "/back"}, [this](const auto& query) {
                               asked_ += 1;
                               return query == "right";
                             }};
  int asked_ = 0;
};

}  // namespace

TEST_F(Listening, answersFromTheHeadAndKeepsNoBody) {
  const std::pair<const char*, const char*> heads[] = {
      {"POST /back?right", "405"}, {"GET /elsewhere", "404"}, {"GET /back?right", "413"}};
  const std::string block(1U << 20U, 'x');
  [[maybe_unused]] const auto before = residentKilobytes();
  for (const auto& [line, status] : heads) {
    for (const char* length : {"Content-Length: 400000000", "Transfer-Encoding: chunked"}) {
      const auto connection = connectTo(listener_.port());
      const auto answer = answerTo(
          connection, std::string(line) + " HTTP/1.1\r\nHost: x\r\n" + length + "\r\n\r\n");
      EXPECT_THAT(answer, StartsWith(std::string("HTTP/1.1 ") + status)) << line << length;
      EXPECT_THAT(answer, HasSubstr("</html>"));
      send(connection, "20000000\r\n");
      for (int i = 0; i < 20; ++i) {
        send(connection, block);
        g_main_context_iteration(nullptr, FALSE);
      }
    }
  }
#ifndef __SANITIZE_ADDRESS__  // which keeps what was freed
  EXPECT_LT(residentKilobytes() - before, 20'000);
#endif
  EXPECT_EQ(asked_, 0);
}

TEST_F(Listening, hearsAgainAfterTheDescriptorsWereUsedUp) {
  std::vector<Descriptor> early;
  for (int i = 0; i < 5; ++i) early.push_back(connectTo(listener_.port()));
  rlimit limit{};
  ::getrlimit(RLIMIT_NOFILE, &limit);
  auto low = limit;
  low.rlim_cur = static_cast<rlim_t>(early.back().get()) + 1;
  ::setrlimit(RLIMIT_NOFILE, &low);
  for (int i = 0; i < 100; ++i) g_main_context_iteration(nullptr, FALSE);
  ::setrlimit(RLIMIT_NOFILE, &limit);
  EXPECT_THAT(answerTo(early.back(), "GET / HTTP/1.1\r\nHost: x\r\n\r\n"),
              StartsWith("HTTP/1.1 404"));
}

TEST_F(Listening, idleConnectionsKeepNobodyOut) {
  rlimit limit{};
  ::getrlimit(RLIMIT_NOFILE, &limit);
  const auto first = connectTo(listener_.port());
  send(first, rightRequest);
  ASSERT_TRUE(runUntil([this] { return asked_ == 1; }));
  std::vector<Descriptor> idle;
  for (int i = 0; i < 400; ++i) {
    idle.push_back(connectTo(listener_.port()));
    g_main_context_iteration(nullptr, FALSE);
  }
  EXPECT_THAT(answerTo(connectTo(listener_.port()), "GET / HTTP/1.1\r\nHost: x\r\n\r\n"),
              StartsWith("HTTP/1.1 404"));
  EXPECT_EQ(arrived(idle.front()), "") << "the oldest made room";
  EXPECT_EQ(arrived(first), std::nullopt) << "but for the browser that waits";
  rlimit now{};
  ::getrlimit(RLIMIT_NOFILE, &now);
  EXPECT_EQ(now.rlim_cur, limit.rlim_cur) << "a browser would inherit it";
}

TEST_F(Listening, anotherUserChangesNothing) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs to become another user";
  const auto visit = [this] {
    if (::setuid(nobody) != 0) return 2;
    const auto connection = connectTo(listener_.port());
    send(connection, rightRequest);
    std::string answer(64, '\0');
    ::recv(connection.get(), answer.data(), answer.size(), 0);
    return answer.starts_with("HTTP/1.1 403") ? 0 : 1;
  };
  const pid_t child = ::fork();
  if (child == 0) ::_exit(visit());
  int status = -1;
  EXPECT_TRUE(runUntil([&] { return ::waitpid(child, &status, WNOHANG) == child; }));
  EXPECT_EQ(status, 0);
  EXPECT_EQ(asked_, 0);
  send(connectTo(listener_.port()), rightRequest);
  const auto browser = connectTo(listener_.port());
  send(browser, rightRequest);
  EXPECT_TRUE(runUntil([this] { return asked_ > 0; }));
  EXPECT_EQ(asked_, 1) << "who has gone already is no browser";
}

TEST(LoopbackPeer, isFoundInTheSystemsTables) {
  const std::string title = "  sl  local_address rem_address   st tx_queue rx_queue ...\n";
  const std::string listens =
      "   0: 0100007F:1F90 00000000:0000 0A 00000000:00000000 00:00000000 00000000  1000 0 11 1\n";
  const std::string here =
      "   1: 0100007F:1F90 0100007F:A001 01 00000000:00000000 00:00000000 00000000  1000 0 12 1\n";
  const auto there = [](const std::string& user, const std::string& inode) {
    return "   2: 0100007F:A001 0100007F:1F90 01 00000000:00000000 00:00000000 00000000 " + user +
           " 0 " + inode + " 1\n";
  };
  const ConnectionEnds ends{"0100007F:1F90", "0100007F:A001",
                            "0000000000000000FFFF00000100007F:A001"};
  const auto peer = [&](const std::string& rows) { return peerIn(title + rows, ends, 1000); };
  EXPECT_EQ(peer(listens + here + there("1000", "13")), Peer::sameUser);
  EXPECT_EQ(peer(listens + here + there("0", "13")), Peer::sameUser) << "the administrator";
  EXPECT_EQ(peer(listens + here + there("1001", "13")), Peer::otherUser);
  EXPECT_EQ(peer(listens + here + there("0", "0")), Peer::otherUser) << "nobody's any more";
  EXPECT_EQ(peer(listens), Peer::otherUser) << "reset";
  EXPECT_EQ(peer(listens + here), Peer::unknown) << "from outside";
  EXPECT_EQ(peer(""), Peer::unknown);
  EXPECT_EQ(peer(listens + "rubbish\n\n   2: 0100007F:A001\n" + here), Peer::unknown);
  EXPECT_EQ(peer(listens + here +
                 "   3: 0000000000000000FFFF00000100007F:A001 "
                 "0000000000000000FFFF00000100007F:1F90 01 0:0 0:0 0 1001 0 14 1\n"),
            Peer::otherUser)
      << "by way of IPv6";
}

TEST(LoopbackSockets, sayWhatIsInTheWay) {
  const auto both = listenOnLoopback(0, true);
  if (both.size() == 2) {
    const int port = portOf(both.front().get());
    EXPECT_TRUE(connectTo(port, AF_INET));
    EXPECT_TRUE(connectTo(port, AF_INET6));
  }
  auto taken = listenOnLoopback(0, true);
  const int port = portOf(taken.front().get());
  EXPECT_EQ(refusal(port), static_cast<int>(Case::portTaken));
  taken.erase(taken.begin());
  if (!taken.empty()) {
    EXPECT_EQ(refusal(port), -1);
    EXPECT_EQ(refusal(port, true), static_cast<int>(Case::portTaken)) << "[::1] alone is taken";
  }
  const auto withoutNetwork = [] {
    if (::unshare(CLONE_NEWNET) != 0) return 254;
    return refusal(0);
  };
  const int without = inChild(withoutNetwork);
  if (without == 254) GTEST_SKIP() << "needs a network of its own";
  EXPECT_EQ(without, static_cast<int>(Case::noLoopback));
  EXPECT_EQ(inChild([] {
              ::unshare(CLONE_NEWNET);
              const Descriptor control(::socket(AF_INET, SOCK_DGRAM, 0));
              ifreq loopback{};
              std::strcpy(loopback.ifr_name, "lo");
              loopback.ifr_flags = IFF_UP;
              ::ioctl(control.get(), SIOCSIFFLAGS, &loopback);
              if (::setuid(nobody) != 0) return 255;
              return refusal(80);
            }),
            static_cast<int>(Case::portForbidden));
}
