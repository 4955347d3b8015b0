#include <cstdint>
#include <cstdlib>

#include "companion/authorization.hpp"
#include "companion/end_page.hpp"
#include "companion/sign_in_error.hpp"

// What a browser, or whoever found the port, sends in place of the provider's redirect.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string query(reinterpret_cast<const char*>(data), size);
  const companion::AuthorizationRequest request{"http://127.0.0.1:1", "state", "verifier"};
  const auto answer = companion::readRedirect(query, request);
  if (!answer) return 0;
  if (query.find("state") == std::string::npos && query.find('%') == std::string::npos)
    std::abort();
  const auto* failure = std::get_if<companion::AuthorizationFailure>(&*answer);
  if (failure == nullptr) return 0;
  const companion::SignInError error(companion::SignInError::Case::refused, failure->error);
  const std::string line = error.what();
  if (line.find_first_of("\n\r\x1b") != std::string::npos) std::abort();
  const auto page = companion::failurePage(line);
  if (page.find("<script") != std::string::npos) std::abort();
  return 0;
}
