#include "platform/foundation/url.hpp"

#include <arpa/inet.h>
#include <curl/curl.h>

#include <algorithm>
#include <cctype>

#include "platform/foundation/raii.hpp"

namespace platform {

namespace {

using ParsedUrl = Owned<CURLU, curl_url_cleanup>;
using CurlText = Owned<char, curl_free>;

constexpr std::string_view rfc3986Unreserved =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";

/// The characters that may stand in an address; libcurl alone would let some others pass.
bool hasOnlyUrlCharacters(std::string_view text) {
  constexpr std::string_view punctuation = "-._~:/?#[]@!$&'()*+,;=";
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte == '%') {
      const bool escape = i + 2 < text.size() &&
                          std::isxdigit(static_cast<unsigned char>(text[i + 1])) &&
                          std::isxdigit(static_cast<unsigned char>(text[i + 2]));
      if (!escape) return false;
    } else if (byte >= 0x80 ||
               (!std::isalnum(byte) && punctuation.find(text[i]) == punctuation.npos)) {
      return false;
    }
  }
  return true;
}

ParsedUrl parsed(const std::string& url) {
  if (!hasOnlyUrlCharacters(url)) return nullptr;
  ParsedUrl parts(curl_url());
  if (!parts ||
      curl_url_set(parts.get(), CURLUPART_URL, url.c_str(), CURLU_PATH_AS_IS) != CURLUE_OK)
    return nullptr;
  return parts;
}

std::string part(CURLU* parts, CURLUPart which, unsigned flags = 0) {
  char* text = nullptr;
  if (curl_url_get(parts, which, &text, flags) != CURLUE_OK) return "";
  const CurlText owned(text);
  return owned.get();
}

std::string formDecoded(std::string text) {
  std::replace(text.begin(), text.end(), '+', ' ');
  int length = 0;
  const CurlText decoded(
      curl_easy_unescape(nullptr, text.data(), static_cast<int>(text.size()), &length));
  return decoded ? std::string(decoded.get(), static_cast<std::size_t>(length)) : "";
}

std::string lowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

}  // namespace

std::string percentEncoded(std::string_view text, std::string_view unreserved) {
  constexpr char digits[] = "0123456789ABCDEF";
  std::string encoded;
  for (const char character : text) {
    if (unreserved.find(character) != std::string_view::npos) {
      encoded += character;
    } else {
      const auto byte = static_cast<unsigned char>(character);
      encoded += {'%', digits[byte >> 4], digits[byte & 15]};
    }
  }
  return encoded;
}

std::optional<Origin> originOf(const std::string& url) {
  const auto parts = parsed(url);
  if (!parts) return std::nullopt;
  Origin origin{lowerCase(part(parts.get(), CURLUPART_SCHEME)),
                lowerCase(part(parts.get(), CURLUPART_HOST)),
                part(parts.get(), CURLUPART_PORT, CURLU_DEFAULT_PORT)};
  const bool web = origin.scheme == "http" || origin.scheme == "https";
  return web && !origin.host.empty() ? std::optional(origin) : std::nullopt;
}

std::vector<QueryItem> queryItems(std::string_view query) {
  std::vector<QueryItem> items;
  while (!query.empty()) {
    const auto pair = query.substr(0, query.find('&'));
    query.remove_prefix(std::min(pair.size() + 1, query.size()));
    if (pair.empty()) continue;
    const auto equals = std::min(pair.find('='), pair.size());
    const auto value = pair.substr(std::min(equals + 1, pair.size()));
    items.push_back(
        {formDecoded(std::string(pair.substr(0, equals))), formDecoded(std::string(value))});
  }
  return items;
}

std::string pathOf(const std::string& url) {
  const auto parts = parsed(url);
  return parts ? part(parts.get(), CURLUPART_PATH) : "/";
}

bool isLoopback(const Origin& origin) {
  in_addr address{};
  const bool ipv4 = inet_pton(AF_INET, origin.host.c_str(), &address) == 1;
  const bool ipv4Loopback = ipv4 && (ntohl(address.s_addr) >> 24) == 127;
  return origin.host == "localhost" || origin.host == "[::1]" || ipv4Loopback;
}

bool isAllowed(const Origin& origin) { return origin.scheme == "https" || isLoopback(origin); }

std::optional<std::string> urlWithQuery(const std::string& url,
                                        const std::vector<QueryItem>& items) {
  const auto parts = parsed(url);
  if (!parts || !originOf(url)) return std::nullopt;
  std::string query;
  for (const auto& item : items) {
    if (!query.empty()) query += '&';
    query += percentEncoded(item.name, rfc3986Unreserved) + "=" +
             percentEncoded(item.value, rfc3986Unreserved);
  }
  curl_url_set(parts.get(), CURLUPART_QUERY, query.c_str(), 0);
  return part(parts.get(), CURLUPART_URL);
}

}  // namespace platform
