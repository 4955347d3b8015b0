#include "platform/foundation/digest.hpp"

#include <glib.h>
#include <sys/random.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include "platform/foundation/raii.hpp"

namespace platform {

namespace {

using Bytes = std::array<unsigned char, 32>;
using Text = Owned<gchar, g_free>;
using Checksum = Owned<GChecksum, g_checksum_free>;

}  // namespace

std::string base64Url(std::span<const unsigned char> bytes) {
  const Text standard(g_base64_encode(bytes.data(), bytes.size()));
  std::string text(standard.get());
  std::replace(text.begin(), text.end(), '+', '-');
  std::replace(text.begin(), text.end(), '/', '_');
  return text.substr(0, text.find('='));
}

std::string sha256Base64Url(std::string_view text) {
  const Checksum checksum(g_checksum_new(G_CHECKSUM_SHA256));
  g_checksum_update(checksum.get(), reinterpret_cast<const guchar*>(text.data()),
                    static_cast<gssize>(text.size()));
  Bytes digest{};
  gsize size = digest.size();
  g_checksum_get_digest(checksum.get(), digest.data(), &size);
  return base64Url(digest);
}

std::string randomToken() {
  Bytes bytes{};
  if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
    throw std::system_error(errno, std::generic_category(), "no random bytes");
  return base64Url(bytes);
}

}  // namespace platform
