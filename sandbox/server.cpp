#include "sandbox/server.hpp"

#include <httplib.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <nlohmann/json.hpp>
#include <sys/socket.h>

#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <thread>

#include "sandbox/api_error.hpp"
#include "sandbox/payments.hpp"
#include "sandbox/publisher.hpp"
#include "sandbox/reports.hpp"
#include "sandbox/token_endpoint.hpp"

namespace sandbox {

namespace chr = std::chrono;
using platform::Json;

namespace {

constexpr const char* jsonType = "application/json; charset=UTF-8";
constexpr const char* clientID = "648213975310-sandbox.apps.example";
constexpr const char* clientSecret = "sandbox-client-secret";
// With characters that a form body must escape.
constexpr const char* refreshToken = "1//0sandbox+refresh/token=";
constexpr const char* accessToken = "ya29.sandbox-access-token";
constexpr std::size_t hugeSize = (64U << 20U) + 1;
constexpr chr::seconds slowDelay{90};

using SocketName = int (*)(int, sockaddr*, socklen_t*);

int portOf(int descriptor, SocketName name) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  const bool known = name(descriptor, reinterpret_cast<sockaddr*>(&address), &size) == 0;
  return known && address.sin_family == AF_INET ? ntohs(address.sin_port) : 0;
}

/// Closes the connections from one port, or from all when it is 0, to the server's port. The
/// library hands out no sockets, so they are found by their names.
void closeConnections(int serverPort, int clientPort) {
  constexpr int mostDescriptors = 1024;
  for (int descriptor = 0; descriptor < mostDescriptors; ++descriptor) {
    if (portOf(descriptor, getsockname) != serverPort) continue;
    const int peer = portOf(descriptor, getpeername);
    if (peer != 0 && (clientPort == 0 || peer == clientPort)) shutdown(descriptor, SHUT_RDWR);
  }
}

/// Announces more than it sends.
void truncateAnswer(httplib::Response& response) {
  response.set_content_provider(1000, jsonType,
                                [](std::size_t offset, std::size_t, httplib::DataSink& sink) {
                                  if (offset > 0) return false;
                                  const std::string start = R"({"headers":[)";
                                  return sink.write(start.data(), start.size());
                                });
}

const char* tokenErrorFor(int status) {
  if (status >= 500) return "internal_failure";
  return status == 401 ? "invalid_client" : "invalid_grant";
}

void sendHugeAnswer(httplib::Response& response) {
  response.set_chunked_content_provider(jsonType, [](std::size_t offset, httplib::DataSink& sink) {
    static const std::string block(1U << 20U, ' ');
    if (offset < hugeSize) return sink.write(block.data(), block.size());
    sink.done();
    return true;
  });
}

}  // namespace

class Server::Implementation {
 public:
  explicit Implementation(ServerOptions options) : options_(std::move(options)) {
    server_.set_socket_options([](socket_t socket) {  // unlike the usual ones, never share a port
      const int yes = 1;
      setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    server_.set_tcp_nodelay(true);
    server_.set_keep_alive_max_count(1'000'000);
    server_.set_payload_max_length(1U << 20U);
    server_.Post("/token", [this](const auto& request, auto& response) {
      const auto step = isCodeExchange(request.body) ? Step::exchange : Step::token;
      serve(step, request, response, [this, &request] {
        return answerTokenRequest(request.get_header_value("Content-Type"),
                                  request.get_header_value("Authorization"), request.body, grants_,
                                  {clientID, clientSecret});
      });
    });
    server_.Post("/revoke", [this](const auto& request, auto& response) {
      serve(Step::revoke, request, response, [this, &request] {
        return answerRevocation(request.get_header_value("Content-Type"), request.body, grants_);
      });
    });
    server_.Get("/auth", [this](const auto& request, auto& response) {
      serve(Step::authorization, request, response,
            [&] { return authorize(request, response, options_.consent); });
    });
    server_.Post("/consent", [this](const auto& request, auto& response) {
      const bool allowed =
          request.has_param("answer") && request.get_param_value("answer") == "allow";
      authorize(request, response, allowed ? ConsentMode::allow : ConsentMode::deny);
    });
    server_.Get("/v2/.*", [this](const auto& request, auto& response) {
      const auto step = stepOf(request);
      serve(step, request, response, [this, &request] { return answerApiRequest(request); });
    });
    server_.set_error_handler([](const httplib::Request&, httplib::Response& response) {
      if (!response.body.empty()) return;
      const auto document = errorDocument(response.status, "Not found.");
      response.set_content(document.dump(), jsonType);
    });
    const bool bound = options_.port == 0
                           ? (port_ = server_.bind_to_any_port("127.0.0.1")) > 0
                           : server_.bind_to_port("127.0.0.1", port_ = options_.port);
    if (!bound) throw std::runtime_error("cannot listen on port " + std::to_string(port_));
    thread_ = std::thread([this] { server_.listen_after_bind(); });
    while (!server_.is_running()) std::this_thread::yield();
  }

  ~Implementation() {
    {
      const std::lock_guard lock(mutex_);
      stopping_ = true;
    }
    stop_.notify_all();
    closeConnections(port_, 0);  // idle ones would hold up the end
    server_.stop();
    thread_.join();
  }

  [[nodiscard]] std::string origin() const { return "http://127.0.0.1:" + std::to_string(port_); }

  void setFaults(std::map<Step, Fault> faults) {
    const std::lock_guard lock(mutex_);
    options_.faults = std::move(faults);
  }

  void setOverride(Override override) {
    const std::lock_guard lock(mutex_);
    override_ = std::move(override);
  }

  void setNotices(std::vector<Alert> alerts, std::vector<PolicyIssue> issues) {
    const std::lock_guard lock(mutex_);
    options_.alerts = std::move(alerts);
    options_.policyIssues = std::move(issues);
  }

  void endSignIns() { grants_.clear(); }

  std::vector<RequestRecord> takeRequests() {
    const std::lock_guard lock(mutex_);
    return std::exchange(requests_, {});
  }

 private:
  static Step stepOf(const httplib::Request& request) {
    if (request.path.ends_with("/payments")) return Step::payments;
    if (request.path.ends_with("/alerts")) return Step::alerts;
    if (request.path.ends_with("/policyIssues")) return Step::policy;
    if (!request.path.ends_with("/reports:generate")) return Step::accounts;
    return request.has_param("dimensions") ? Step::report : Step::lastYear;
  }

  Publisher publisher() const {
    const auto now = chr::floor<chr::days>(chr::system_clock::now());
    return {options_.seed, options_.currency, options_.today.value_or(now)};
  }

  Answer answerApiRequest(const httplib::Request& request) {
    const auto authorization = request.get_header_value("Authorization");
    const std::string scheme = "Bearer ";
    if (!authorization.starts_with(scheme) ||
        !grants_.isAccessToken(authorization.substr(scheme.size())))
      return {401, errorDocument(401, "Request had invalid authentication credentials.")};
    const auto user = publisher();
    const std::string root = "/v2/";
    const std::string account = root + user.accountName();
    try {
      if (request.path == root + "accounts") return {200, {{"accounts", {accountJson(user)}}}};
      if (request.path == account) return {200, accountJson(user)};
      if (request.path == account + "/payments") return {200, listPayments(user)};
      if (request.path == account + "/alerts") return {200, alerts(user)};
      if (request.path == account + "/policyIssues") return {200, policyIssues(user, request)};
      if (request.path == account + "/reports:generate")
        return {200, generateReport(user, {request.params.begin(), request.params.end()})};
    } catch (const ApiError& error) {
      return {error.status, errorDocument(error.status, error.what())};
    }
    return {404, errorDocument(404, "Requested entity was not found.")};
  }

  Json alerts(const Publisher& user) {
    const std::lock_guard lock(mutex_);
    return listAlerts(user, options_.alerts);
  }

  Json policyIssues(const Publisher& user, const httplib::Request& request) {
    const std::lock_guard lock(mutex_);
    const auto size = request.get_param_value("pageSize");
    return listPolicyIssues(user, options_.policyIssues, std::strtoul(size.c_str(), nullptr, 10),
                            request.get_param_value("pageToken"));
  }

  /// The user's answer to a request at the authorization endpoint, or the page that asks for it.
  /// The response is made here; nothing is left to answer.
  std::nullopt_t authorize(const httplib::Request& request, httplib::Response& response,
                           ConsentMode mode) {
    constexpr const char* htmlType = "text/html; charset=UTF-8";
    constexpr int seeOther = 303;  // a form must not be sent on
    const auto asked =
        readAuthorizationRequest({request.params.begin(), request.params.end()}, clientID);
    if (!asked.pageError.empty()) {
      response.status = 400;
      response.set_content(errorPage(asked.pageError), htmlType);
    } else if (!asked.redirectError.empty()) {
      response.set_redirect(redirectAddress(asked, std::nullopt, asked.redirectError), seeOther);
    } else if (mode == ConsentMode::ask) {
      const auto query = request.target.substr(request.target.find('?') + 1);
      response.set_content(consentPage(query), htmlType);
    } else if (mode == ConsentMode::deny) {
      response.set_redirect(redirectAddress(asked, std::nullopt, "access_denied"), seeOther);
    } else {
      response.set_redirect(redirectAddress(asked, grants_.issueCode(asked.consent), ""), seeOther);
    }
    return std::nullopt;
  }

  static Json accountJson(const Publisher& user) {
    return {{"name", user.accountName()},
            {"displayName", "Velmora sandbox"},
            {"timeZone", {{"id", "Europe/Paris"}}},
            {"createTime", "2023-03-06T09:00:00Z"},
            {"state", "READY"}};
  }

  /// Waits, for at most that long, unless the server stops.
  void wait(chr::milliseconds time) {
    std::unique_lock lock(mutex_);
    stop_.wait_for(lock, time, [this] { return stopping_; });
  }

  template <class MakeAnswer>
  void serve(Step step, const httplib::Request& request, httplib::Response& response,
             const MakeAnswer& makeAnswer) {
    const RequestRecord record{request.method,
                               request.target,
                               {request.headers.begin(), request.headers.end()},
                               request.body,
                               request.remote_port};
    std::optional<Fault> fault;
    Override override;
    {
      const std::lock_guard lock(mutex_);
      requests_.push_back(record);
      if (const auto found = options_.faults.find(step); found != options_.faults.end())
        fault = found->second;
      override = override_;
    }
    wait(options_.latency);
    if (fault && apply(*fault, step, request, response)) return;
    if (const auto answer = override ? override(step, record) : std::nullopt) {
      response.status = answer->status;
      response.set_content(answer->body, jsonType);
      return;
    }
    const std::optional<Answer> answer = makeAnswer();
    if (!answer) return;
    response.status = answer->status;
    response.set_content(answer->document.dump(), jsonType);
  }

  /// Returns whether the fault has made the answer.
  bool apply(const Fault& fault, Step step, const httplib::Request& request,
             httplib::Response& response) {
    switch (fault.kind) {
      case Fault::Kind::status: {
        response.status = fault.status;
        const auto document = step == Step::token || step == Step::exchange
                                  ? tokenError(tokenErrorFor(fault.status), "Bad Request")
                                  : errorDocument(fault.status, "The sandbox was told to fail.");
        response.set_content(document.dump(), jsonType);
        return true;
      }
      case Fault::Kind::drop:
        closeConnections(port_, request.remote_port);
        return true;
      case Fault::Kind::truncate:
        truncateAnswer(response);
        return true;
      case Fault::Kind::garbage:
        response.set_content("{\"rows\":\"\xff\xfe\xc3\x28\"}", jsonType);
        return true;
      case Fault::Kind::html:
        if (fault.status != 0) response.status = fault.status;
        response.set_content("<!DOCTYPE html><title>Error</title><p>Sign in first.", "text/html");
        return true;
      case Fault::Kind::empty:
        response.set_content("", jsonType);
        return true;
      case Fault::Kind::slow:
        wait(slowDelay);
        return false;
      case Fault::Kind::redirectLoop:
        response.set_redirect(request.target, 307);
        return true;
      case Fault::Kind::huge:
        sendHugeAnswer(response);
        return true;
      case Fault::Kind::oauthError:
        response.status = fault.status;
        response.set_content(tokenError(fault.code, "Bad Request").dump(), jsonType);
        return true;
      case Fault::Kind::serviceDisabled:
        response.status = 403;
        response.set_content(serviceDisabledDocument().dump(), jsonType);
        return true;
    }
    return false;
  }

  ServerOptions options_;
  Grants grants_{{accessToken, refreshToken, "https://www.googleapis.com/auth/adsense.readonly"}};
  Override override_;
  std::vector<RequestRecord> requests_;
  mutable std::mutex mutex_;
  std::condition_variable stop_;
  bool stopping_ = false;
  httplib::Server server_;
  int port_ = 0;
  std::thread thread_;
};

Server::Server(ServerOptions options)
    : implementation_(std::make_unique<Implementation>(std::move(options))) {}

Server::~Server() = default;

std::string Server::baseURL() const { return implementation_->origin() + "/v2"; }

std::string Server::tokenURL() const { return implementation_->origin() + "/token"; }

Json Server::address() const {
  return {{"baseURL", baseURL()},
          {"tokenURL", tokenURL()},
          {"authURL", implementation_->origin() + "/auth"},
          {"revokeURL", implementation_->origin() + "/revoke"},
          {"clientID", clientID},
          {"clientSecret", clientSecret},
          {"refreshToken", refreshToken}};
}

Json Server::clientFile() const {
  return {{"installed",
           {{"client_id", clientID},
            {"client_secret", clientSecret},
            {"auth_uri", implementation_->origin() + "/auth"},
            {"token_uri", tokenURL()},
            {"redirect_uris", {"http://localhost"}}}}};
}

void Server::setFaults(std::map<Step, Fault> faults) {
  implementation_->setFaults(std::move(faults));
}

void Server::setOverride(Override override) { implementation_->setOverride(std::move(override)); }

void Server::setNotices(std::vector<Alert> alerts, std::vector<PolicyIssue> issues) {
  implementation_->setNotices(std::move(alerts), std::move(issues));
}

void Server::endSignIns() { implementation_->endSignIns(); }

std::vector<RequestRecord> Server::takeRequests() { return implementation_->takeRequests(); }

}  // namespace sandbox
