#pragma once

#include <chrono>
#include <cstddef>
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
  /// In bytes. What is beyond it is an error, since all of it is kept in memory.
  std::size_t largestAnswer = std::size_t{1} << 20U;
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
  enum class Case {
    noNetwork,   ///< no connection: a name that does not resolve, no route, nobody there
    noAnswer,    ///< a connection, but no whole answer: it broke off, or the time ran out
    ledAway,     ///< somebody else answers: a redirect to elsewhere, another's certificate
    notPossible  ///< a request that may not be sent, or an answer that may not be read
  };

  explicit TransportError(const std::string& message, Case errorCase = Case::notPossible)
      : std::runtime_error(message), kind(errorCase) {}

  Case kind;
};

/// Sends a request through the process-wide session, which keeps connections open between
/// requests, and waits for the whole answer. Safe from any thread.
///
/// https everywhere, plain http to loopback only, the same for redirects; 301, 302, 303, 307 and
/// 308 are followed (RFC 9110, section 15.4), 20 times at most. To another origin, headers are
/// left behind and a body is not sent at all (TransportError). Every HTTP status is an answer.
HttpResponse sendRequest(const HttpRequest& request);

}  // namespace platform
