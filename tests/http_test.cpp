#include "platform/foundation/http.hpp"

#include <gmock/gmock.h>
#include <httplib.h>

#include <set>
#include <thread>

#include "tests/support/waiting.hpp"

using namespace platform;
using namespace std::chrono_literals;

namespace {

/// A server on loopback that remembers what it was sent.
class Server {
 public:
  Server() {
    const auto remember = [this](const httplib::Request& request, httplib::Response& response) {
      requests.push_back(request);
      respond(request, response);
    };
    server_.Get(".*", remember);
    server_.Post(".*", remember);
    server_.set_keep_alive_max_count(100);
    server_.set_keep_alive_timeout(1);  // idle connections hold up the end
    server_.set_tcp_nodelay(true);
    port_ = server_.bind_to_any_port("127.0.0.1");
    thread_ = std::thread([this] { server_.listen_after_bind(); });
    tests::waitFor("the server", [this] { return server_.is_running(); });
  }
  ~Server() {
    server_.stop();
    thread_.join();
  }

  [[nodiscard]] std::string url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(port_) + path;
  }

  httplib::Server::Handler respond = [](const auto&, auto& response) {
    response.set_content("ok", "text/plain");
  };
  std::vector<httplib::Request> requests;

 private:
  httplib::Server server_;
  int port_ = 0;
  std::thread thread_;
};

HttpRequest credentialed(const std::string& url) {
  return {.url = url, .headers = {{"Authorization", "Bearer secret"}}, .body = std::nullopt};
}

void redirectTo(Server& server, const std::string& target, int status) {
  server.respond = [=](const httplib::Request&, httplib::Response& response) {
    response.set_redirect(target, status);
  };
}

std::string failure(const HttpRequest& request) {
  try {
    return "answered " + std::to_string(sendRequest(request).status);
  } catch (const TransportError& error) {
    return error.what();
  }
}

}  // namespace

TEST(Http, sendsWhatItIsGivenAndNothingElse) {
  Server server;
  const auto response = sendRequest({.url = server.url("/a/../b:c?x=%2B"),
                                     .headers = {{"Content-Type", "text/x"}, {"X-Own", "y"}},
                                     .body = std::string("a\0b", 3)});
  EXPECT_EQ(response.status, 200);
  EXPECT_EQ(response.body, "ok");
  const auto& request = server.requests.at(0);
  EXPECT_EQ(request.method, "POST");
  EXPECT_EQ(request.target, "/a/../b:c?x=%2B");
  EXPECT_EQ(request.body, std::string("a\0b", 3));
  std::set<std::string> names;
  for (const auto& [name, value] : request.headers) names.insert(name);
  // What the server's library adds, up to some version.
  for (const char* added : {"LOCAL_ADDR", "LOCAL_PORT", "REMOTE_ADDR", "REMOTE_PORT"})
    names.erase(added);
  EXPECT_EQ(names, (std::set<std::string>{"Content-Length", "Content-Type", "Host", "X-Own"}));
}

TEST(Http, redirectsKeepCredentialsAtHome) {
  Server other;
  Server server;
  for (const int status : {301, 302, 303, 307, 308}) {
    redirectTo(server, other.url("/other"), status);
    EXPECT_EQ(sendRequest(credentialed(server.url("/"))).body, "ok");
    EXPECT_FALSE(other.requests.back().has_header("Authorization")) << status;
  }
  other.requests.clear();
  const HttpRequest form{.url = server.url("/token"), .headers = {}, .body = "secret=form"};
  for (const int status : {307, 308}) {
    redirectTo(server, other.url("/other"), status);
    EXPECT_EQ(failure(form), "A redirect would carry the request to another host.");
  }
  EXPECT_TRUE(other.requests.empty());
  redirectTo(server, other.url("/other"), 303);
  EXPECT_EQ(sendRequest(form).body, "ok");
  EXPECT_EQ(other.requests.at(0).method + other.requests.at(0).body, "GET");
}

TEST(Http, redirectsWithinTheHostKeepEverything) {
  Server server;
  server.respond = [](const httplib::Request& request, httplib::Response& response) {
    if (request.path == "/") response.set_redirect("/next?q=1", 307);
    response.set_content(request.get_header_value("Authorization") + request.body, "text/plain");
  };
  auto request = credentialed(server.url("/"));
  request.body = " body";
  EXPECT_EQ(sendRequest(request).body, "Bearer secret body");
  redirectTo(server, "/next", 303);
  request.headers.push_back({"Content-Type", "text/x"});
  failure(request);
  EXPECT_EQ(server.requests.back().method, "GET");
  EXPECT_FALSE(server.requests.back().has_header("Content-Type")) << "it described the body";
}

TEST(Http, redirectsFollowTheRules) {
  Server server;
  redirectTo(server, "/again", 302);
  EXPECT_EQ(failure(credentialed(server.url("/"))), "Too many redirects.");
  EXPECT_EQ(server.requests.size(), 21U);
  redirectTo(server, "http://insecure.example/", 302);
  EXPECT_THAT(failure(credentialed(server.url("/"))), testing::StartsWith("Plain http"));
  redirectTo(server, "file:///etc/passwd", 302);
  EXPECT_EQ(failure(credentialed(server.url("/"))), "The request's address is not valid.");
}

TEST(Http, failuresAreOneTypedErrorWithoutSecrets) {
  Server server;
  EXPECT_THAT(failure(credentialed("http://127.0.0.1:9/secret")),
              testing::Not(testing::HasSubstr("secret")));
  EXPECT_THAT(failure(credentialed("http://example.com/")), testing::StartsWith("Plain http"));
  EXPECT_EQ(failure(credentialed("not an address")), "The request's address is not valid.");
  EXPECT_EQ(
      failure({.url = server.url("/"), .headers = {{"A", "x\r\nB: y"}}, .body = std::nullopt}),
      "A header value holds a line break.");
}

TEST(Http, answersHaveALimit) {
  Server server;
  server.respond = [](const auto& request, auto& response) {
    const std::string body((1U << 20U) + (request.path == "/more" ? 1 : 0), 'x');
    if (request.has_param("chunked")) {
      response.set_chunked_content_provider("text/plain", [body](auto, auto& sink) {
        sink.write(body.data(), body.size());
        sink.done();
        return true;
      });
    } else {
      response.set_content(body, "text/plain");
    }
  };
  for (const char* form : {"", "?chunked=1"}) {
    auto request = credentialed(server.url(std::string("/more") + form));
    EXPECT_THAT(failure(request), testing::HasSubstr("larger than 1 MiB")) << form;
    request.largestAnswer += 1;
    EXPECT_EQ(failure(request), "answered 200") << form;
    EXPECT_EQ(failure(credentialed(server.url(std::string("/") + form))), "answered 200") << form;
  }
}

TEST(Http, theTimeCoversTheWholeExchange) {
  Server server;
  server.respond = [](const auto&, auto& response) {
    std::this_thread::sleep_for(60ms);
    response.set_redirect("/again", 302);
  };
  auto request = credentialed(server.url("/"));
  request.timeout = 200ms;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_THAT(failure(request), testing::StartsWith("No answer from 127.0.0.1"));
  EXPECT_LT(std::chrono::steady_clock::now() - start, 900ms);
}
