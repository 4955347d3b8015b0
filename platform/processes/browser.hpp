#pragma once

#include <functional>
#include <string>

namespace platform {

/// Opens an address in the user's browser, which inherits neither standard output nor standard
/// error and outlives this program. Returns whether a browser was started; `failed` is called from
/// the main loop when it then ends with an error.
bool openInBrowser(const std::string& address, std::function<void()> failed = {});

}  // namespace platform
