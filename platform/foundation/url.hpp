#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// One `name=value` of a query.
struct QueryItem {
  std::string name;
  std::string value;

  bool operator==(const QueryItem&) const = default;
};

/// Where a request goes: what two addresses must share for credentials to travel between them.
struct Origin {
  std::string scheme;
  std::string host;
  std::string port;

  bool operator==(const Origin&) const = default;
};

/// Keeps the bytes listed in `unreserved` and writes every other byte as "%" and two upper-case
/// hexadecimal digits (RFC 3986, section 2.1).
std::string percentEncoded(std::string_view text, std::string_view unreserved);

/// The origin of an absolute http or https address (RFC 3986); absent when the text is none.
std::optional<Origin> originOf(const std::string& url);

/// The items of a query (without the "?") or of a form (application/x-www-form-urlencoded), in
/// order and decoded; a plus is a space.
std::vector<QueryItem> queryItems(std::string_view query);

/// The path of an absolute address, as it stands; "/" without one.
std::string pathOf(const std::string& url);

/// Whether requests may go there: https anywhere, plain http to this machine alone.
bool isAllowed(const Origin& origin);

/// Whether the host is this machine: localhost, 127.0.0.0/8 or ::1.
bool isLoopback(const Origin& origin);

/// The address with its query replaced by the items, in order, percent-encoded. Absent when `url`
/// is no absolute http or https address.
std::optional<std::string> urlWithQuery(const std::string& url,
                                        const std::vector<QueryItem>& items);

}  // namespace platform
