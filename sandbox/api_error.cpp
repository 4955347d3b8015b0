#include "sandbox/api_error.hpp"

#include <nlohmann/json.hpp>

#include <map>

namespace sandbox {

ApiError::ApiError(int httpStatus, const std::string& message)
    : std::runtime_error(message), status(httpStatus) {}

platform::Json errorDocument(int status, const std::string& message) {
  static const std::map<int, const char*> names{
      {400, "INVALID_ARGUMENT"}, {401, "UNAUTHENTICATED"},    {403, "PERMISSION_DENIED"},
      {404, "NOT_FOUND"},        {429, "RESOURCE_EXHAUSTED"}, {500, "INTERNAL"},
      {503, "UNAVAILABLE"},      {504, "DEADLINE_EXCEEDED"}};
  const auto name = names.find(status);
  return {{"error",
           {{"code", status},
            {"message", message},
            {"status", name == names.end() ? "UNKNOWN" : name->second}}}};
}

platform::Json serviceDisabledDocument() {
  const std::string page =
      "https://console.developers.google.com/apis/api/adsense.googleapis.com/overview?project="
      "648213975310";
  auto document = errorDocument(
      403,
      "AdSense Management API has not been used in project 648213975310 before or it is disabled.");
  document["error"]["details"] = {{{"@type", "type.googleapis.com/google.rpc.ErrorInfo"},
                                   {"reason", "SERVICE_DISABLED"},
                                   {"domain", "googleapis.com"},
                                   {"metadata",
                                    {{"service", "adsense.googleapis.com"},
                                     {"consumer", "projects/648213975310"},
                                     {"activationUrl", page}}}}};
  return document;
}

}  // namespace sandbox
