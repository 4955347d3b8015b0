#pragma once

#include <string>

namespace companion {

/// Opens an address in the user's browser, which inherits neither standard output nor standard
/// error. Returns whether a browser was started.
bool openInBrowser(const std::string& address);

}  // namespace companion
