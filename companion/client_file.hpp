#pragma once

#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "VelmoraWidget/OAuthConfig.hpp"
#include "companion/sign_in_error.hpp"

namespace companion {

/// An OAuth client as the provider's file describes it.
struct Client {
  velmora::OAuthConfig config;
  bool isWeb = false;  ///< kind "web", else "installed" (a desktop application)
  std::vector<std::string> redirectURIs;
};

/// A file that cannot serve as client file. `what()` has the advice and the detail.
class ClientFileError : public std::exception {
 public:
  /// Why, and what to pick instead, in the user's language; and the technical text, if there is
  /// one.
  ClientFileError(std::string advice, std::string detail = "")
      : advice_(std::move(advice)),
        detail_(std::move(detail)),
        description_(detail_.empty() ? advice_ : advice_ + " (" + detail_ + ")") {}

  [[nodiscard]] const std::string& advice() const { return advice_; }
  [[nodiscard]] const std::string& detail() const { return detail_; }
  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::string advice_;
  std::string detail_;
  std::string description_;
};

/// The client that is in force for every program of Velmora, and where it stands.
struct ClientInForce {
  Client client;
  std::filesystem::path file;
};

/// Reads and checks a client file's text. Throws ClientFileError.
Client parseClientFile(std::string_view text);

/// The user's own client file, else the installation's; absent without a usable one.
std::optional<ClientInForce> clientInForce();

/// The same. Throws SignInError (noClientFile, unusableClientFile).
ClientInForce requireClient();

struct TakenClient {
  ClientInForce client;
  /// Why the account and the figures of the client before are still there.
  std::optional<SignInError> left;
};

/// Checks a file and takes it over for this user. On a ClientFileError nothing has changed. Another
/// client than before forgets the account and the figures of the former one; that this cannot be
/// done does not keep it out.
TakenClient takeOverClientFile(const std::filesystem::path& file);

}  // namespace companion
