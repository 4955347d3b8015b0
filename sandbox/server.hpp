#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/json.hpp"
#include "sandbox/authorization.hpp"
#include "sandbox/faults.hpp"
#include "sandbox/notices.hpp"

namespace sandbox {

struct ServerOptions {
  int port = 0;  ///< 0 picks a free one
  std::uint64_t seed = 1;
  std::string currency = "EUR";  ///< ISO 4217 code
  std::chrono::milliseconds latency{0};
  std::map<Step, Fault> faults;
  ConsentMode consent = ConsentMode::ask;
  std::vector<Alert> alerts;
  std::vector<PolicyIssue> policyIssues;
  /// The day that counts as today; the current UTC day without it.
  std::optional<std::chrono::sys_days> today;
};

/// A request as it arrived.
struct RequestRecord {
  std::string method;
  std::string target;  ///< path and query, undecoded
  std::multimap<std::string, std::string> headers;
  std::string body;
  int remotePort = 0;  ///< tells connections apart
};

/// What a test wants to be answered.
struct OverridingAnswer {
  OverridingAnswer(std::string text, int httpStatus = 200)
      : body(std::move(text)), status(httpStatus) {}

  std::string body;
  int status;
};

/// The OAuth endpoints and the reporting API for one made-up publisher, on 127.0.0.1. Serves
/// from its construction to its destruction, in threads of its own.
class Server {
 public:
  /// Throws std::runtime_error when the port cannot be had.
  explicit Server(ServerOptions options);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  [[nodiscard]] std::string baseURL() const;
  [[nodiscard]] std::string tokenURL() const;
  /// `{"baseURL","tokenURL","authURL","revokeURL","clientID","clientSecret","refreshToken"}`.
  [[nodiscard]] platform::Json address() const;
  /// A client file in Google's form that names this server.
  [[nodiscard]] platform::Json clientFile() const;

  /// Replaces all faults from the next request on.
  void setFaults(std::map<Step, Fault> faults);
  /// Answers matching requests in another way: returns the body, with a status where it is not
  /// 200, or nothing for the usual answer.
  using Override = std::function<std::optional<OverridingAnswer>(Step, const RequestRecord&)>;
  void setOverride(Override override);
  /// What the service has to tell from the next request on.
  void setNotices(std::vector<Alert> alerts, std::vector<PolicyIssue> issues);
  /// Ends every sign-in there is, as a user does who withdraws the permission at the provider.
  void endSignIns();
  /// The requests since the last call.
  std::vector<RequestRecord> takeRequests();

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace sandbox
