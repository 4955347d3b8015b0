#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace companion {

/// The error document of the provider's services, as far as it could be read:
/// `{"error":{"message","status","details":[{"reason","metadata":{"activationUrl"}}]}}`, with the
/// reasons in `errors` in older ones.
struct ServiceError {
  std::string status;  ///< "PERMISSION_DENIED" and others
  std::string message;
  std::vector<std::string> reasons;
  /// Where an API that is not enabled can be enabled: a page of the provider's console, else empty.
  std::string activationPage;

  [[nodiscard]] bool hasReason(std::initializer_list<std::string_view> any) const;
};

/// Reads the body of a refusal. What is missing or of another shape stays empty.
ServiceError readServiceError(std::string_view body);

}  // namespace companion
