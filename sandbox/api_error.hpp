#pragma once

#include <stdexcept>
#include <string>

#include "platform/foundation/json.hpp"

namespace sandbox {

/// A request that the service refuses, with the HTTP status and the canonical status of
/// google.rpc.Code that belong together.
class ApiError : public std::runtime_error {
 public:
  ApiError(int httpStatus, const std::string& message);

  int status;
};

/// `{"error":{"code","message","status"}}`, the error document of Google's APIs.
platform::Json errorDocument(int status, const std::string& message);

/// The one for an API that is not enabled in the client's project, with status 403.
platform::Json serviceDisabledDocument();

}  // namespace sandbox
