#pragma once

#include <optional>
#include <string>

namespace velmora {

/// The OAuth client that the user signed in with, as Google's client file describes it.
struct OAuthConfig {
  std::string clientID;
  std::string clientSecret;
  std::string authURI;
  std::string tokenURI;
};

/// Reads "client_secret.json" among the program's resources: the client object stands under
/// "installed" or, only when that key is missing, under "web". Absent when the file is missing or
/// unusable in any way.
std::optional<OAuthConfig> loadOAuthConfig();

}  // namespace velmora
