#include "companion/service_error.hpp"

#include <algorithm>
#include <optional>

#include "platform/foundation/json.hpp"
#include "platform/foundation/url.hpp"

namespace companion {

namespace {

using platform::JsonDecoder;
using platform::JsonDecodingError;

/// A member that should be there; one of another shape counts as missing.
std::optional<JsonDecoder> member(const std::optional<JsonDecoder>& object, const char* key) {
  try {
    return object ? object->optionalAt(key) : std::nullopt;
  } catch (const JsonDecodingError&) {
    return std::nullopt;
  }
}

std::string text(const std::optional<JsonDecoder>& object, const char* key) {
  const auto value = member(object, key);
  try {
    return value ? value->string() : "";
  } catch (const JsonDecodingError&) {
    return "";
  }
}

std::vector<JsonDecoder> list(const std::optional<JsonDecoder>& object, const char* key) {
  const auto value = member(object, key);
  try {
    return value ? value->array() : std::vector<JsonDecoder>{};
  } catch (const JsonDecodingError&) {
    return {};
  }
}

/// An answer may come from anybody: no other page is ever offered to the user.
bool isConsolePage(const std::string& address) {
  constexpr std::size_t longest = 1000;
  if (address.size() > longest) return false;
  const auto origin = platform::originOf(address);
  return origin && origin->scheme == "https" && address.find('@') == std::string::npos &&
         (origin->host == "console.cloud.google.com" ||
          origin->host == "console.developers.google.com");
}

std::optional<JsonDecoder> document(std::string_view body) {
  try {
    return JsonDecoder(body);
  } catch (const JsonDecodingError&) {
    return std::nullopt;
  }
}

}  // namespace

bool ServiceError::hasReason(std::initializer_list<std::string_view> any) const {
  return std::find_first_of(reasons.begin(), reasons.end(), any.begin(), any.end()) !=
         reasons.end();
}

ServiceError readServiceError(std::string_view body) {
  const auto error = member(document(body), "error");
  ServiceError result{text(error, "status"), text(error, "message"), {}, ""};
  for (const auto* key : {"details", "errors"}) {
    for (const auto& detail : list(error, key)) {
      if (auto reason = text(detail, "reason"); !reason.empty())
        result.reasons.push_back(std::move(reason));
      const auto page = text(member(detail, "metadata"), "activationUrl");
      if (isConsolePage(page)) result.activationPage = page;
    }
  }
  return result;
}

}  // namespace companion
