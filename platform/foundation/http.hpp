#pragma once

#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace platform {

struct HttpHeader {
  std::string name;
  std::string value;
};

/// One request. Headers and body count as credentials: neither follows a redirect to another
/// origin.
struct HttpRequest {
  std::string url;
  std::vector<HttpHeader> headers;
  /// Present: a POST of these bytes. Absent: a GET.
  std::optional<std::string> body;
  /// For the whole exchange, redirects included.
  std::chrono::milliseconds timeout{60'000};
  /// Without it, a redirect is an answer like any other.
  bool followsRedirects = true;
};

struct HttpResponse {
  int status = 0;
  std::string body;
};

/// No answer came: an address that is none or not allowed, no network, a name that does not
/// resolve, TLS, a broken or oversized answer, too many redirects, or the time ran out. The
/// message never holds a header, a body or an address's path.
class TransportError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Sends a request through the process-wide session, which keeps connections open between
/// requests, and waits for the whole answer. Safe from any thread.
///
/// https everywhere, plain http to loopback only, the same for redirects; 301, 302, 303, 307 and
/// 308 are followed (RFC 9110, section 15.4), 20 times at most. To another origin, headers are
/// left behind and a body is not sent at all (TransportError). An answer over 64 MiB is an error.
/// Every HTTP status is an answer.
HttpResponse sendRequest(const HttpRequest& request);

}  // namespace platform
