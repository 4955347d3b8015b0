#pragma once

#include <span>
#include <string>
#include <string_view>

namespace platform {

/// Base64 for addresses, without padding (RFC 4648, section 5).
std::string base64Url(std::span<const unsigned char> bytes);

/// BASE64URL(SHA-256(text)): 43 characters.
std::string sha256Base64Url(std::string_view text);

/// 32 bytes of the system's random source, as 43 characters of base64url. Throws
/// std::system_error.
std::string randomToken();

}  // namespace platform
