#include <algorithm>
#include <cstdint>
#include <string>

#include "companion/authorization.hpp"
#include "companion/end_page.hpp"
#include "platform/foundation/url.hpp"

// The query that a browser brings back, and what the page says of it: only the sign-in's own state
// counts, and nothing that came along becomes part of the page's markup.

namespace {

auto tags(const std::string& page) { return std::count(page.begin(), page.end(), '<'); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string query(reinterpret_cast<const char*>(data), size);
  const auto answer = companion::readRedirect(query, {"http://127.0.0.1:9", "state", "verifier"});
  if (answer && query.find("state") == query.npos && query.find('%') == query.npos)
    __builtin_trap();
  if (query.empty()) return 0;
  if (tags(companion::failurePage(query)) != tags(companion::failurePage("x"))) __builtin_trap();
  if (tags(companion::successPage(query)) != tags(companion::successPage("x"))) __builtin_trap();
  return 0;
}
