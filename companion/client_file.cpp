#include "companion/client_file.hpp"

#include "companion/loopback_sockets.hpp"
#include "companion/redirect_address.hpp"
#include "companion/user_data.hpp"
#include "platform/foundation/bundle.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/json.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/text.hpp"
#include "platform/foundation/url.hpp"

namespace companion {

namespace fs = std::filesystem;
using platform::JsonDecoder;
using platform::localizedFormat;
using platform::localizedString;

namespace {

constexpr const char* fileName = "client_secret.json";
constexpr std::size_t largestClientFile = 256U << 10U;

/// Ends every complaint: what to pick instead.
std::string pickAnother(const std::string& problem) {
  return problem + " " +
         localizedString(
             "Pick the JSON file that the Google Cloud console offers for an OAuth client of the "
             "type \"Desktop app\".");
}

ClientFileError incomplete(const platform::JsonDecodingError& error) {
  return {pickAnother(localizedString("This is no complete client file.")),
          platform::oneLine(error.what())};
}

std::string requiredText(const JsonDecoder& client, const char* key) {
  auto text = client.at(key).string();
  if (text.empty()) throw platform::JsonDecodingError(std::string(key) + ": empty");
  return text;
}

/// An address of the provider; no secret goes to one that is not protected.
std::string requiredAddress(const JsonDecoder& client, const char* key) {
  auto address = requiredText(client, key);
  const auto origin = platform::originOf(address);
  if (!origin || !platform::isAllowed(*origin))
    throw platform::JsonDecodingError(std::string(key) + ": expected an https address");
  return address;
}

Client decodeClient(const JsonDecoder& document) {
  Client result;
  result.isWeb = !document.contains("installed");
  const auto client = document.at(result.isWeb ? "web" : "installed");
  result.config = {requiredText(client, "client_id"), requiredText(client, "client_secret"),
                   requiredAddress(client, "auth_uri"), requiredAddress(client, "token_uri")};
  if (const auto list = client.optionalAt("redirect_uris")) {
    for (const auto& address : list->array()) result.redirectURIs.push_back(address.string());
  }
  return result;
}

std::string whyNotRead(const fs::path& file, const platform::FileError& error) {
  using Case = platform::FileError::Case;
  const auto name = platform::oneLine(file.string());
  switch (error.kind) {
    case Case::missing:
      return localizedFormat("There is no file %s.", {name});
    case Case::notRegular:
      return localizedFormat("%s is a folder or a device.", {name});
    case Case::tooLarge:
      return localizedFormat("%s is larger than a client file ever is.", {name});
    default:
      return localizedFormat("%s cannot be read.", {name});
  }
}

std::string readClientFile(const fs::path& file) {
  try {
    return platform::readRegularFile(file, largestClientFile);
  } catch (const platform::FileError& error) {
    throw ClientFileError(pickAnother(whyNotRead(file, error)));
  }
}

/// Throws ClientFileError for a port that could never be listened on.
void requirePermittedAddress(const Client& client) {
  if (!client.isWeb) return;
  try {
    requirePermittedPort(loopbackRedirect(client)->port);
  } catch (const SignInError& error) {
    throw ClientFileError(error.what());
  }
}

}  // namespace

Client parseClientFile(std::string_view text) {
  try {
    const JsonDecoder document(text);
    if (document.contains("private_key"))
      throw ClientFileError(pickAnother(
          localizedString("This is the key of a service account, which AdSense does not accept.")));
    if (!document.contains("installed") && !document.contains("web"))
      throw ClientFileError(pickAnother(localizedString("There is no OAuth client in this file.")));
    auto client = decodeClient(document);
    if (client.isWeb && !loopbackRedirect(client))
      throw ClientFileError(SignInError(SignInError::Case::noLoopbackAddress).what());
    return client;
  } catch (const platform::JsonDecodingError& error) {
    throw incomplete(error);
  }
}

std::optional<ClientInForce> clientInForce() {
  try {
    return requireClient();
  } catch (const SignInError&) {
    return std::nullopt;
  }
}

ClientInForce requireClient() {
  using Case = SignInError::Case;
  const auto resource = platform::findResource(fileName);
  if (!resource) throw SignInError(Case::noClientFile);
  try {
    return {decodeClient(JsonDecoder(resource->bytes)), resource->file};
  } catch (const platform::JsonDecodingError& error) {
    throw SignInError(Case::unusableClientFile,
                      resource->file.string() + ": " + incomplete(error).what());
  }
}

TakenClient takeOverClientFile(const fs::path& file) {
  const auto bytes = readClientFile(file);
  const auto client = parseClientFile(bytes);
  requirePermittedAddress(client);
  const auto former = clientInForce();
  const auto folder = platform::userResourceFolder();
  if (!folder) throw ClientFileError(localizedString("There is no home folder to keep it in."));
  try {
    platform::writePrivateFile(*folder / fileName, bytes);
  } catch (const platform::FileError& error) {
    throw ClientFileError(localizedFormat("The client file could not be kept: %s",
                                          {platform::oneLine(error.what())}));
  }
  TakenClient taken{{client, *folder / fileName}, std::nullopt};
  if (former && former->client.config.clientID == client.config.clientID) return taken;
  try {
    forgetFigures();
  } catch (const SignInError& error) {
    taken.left = error;
  }
  return taken;
}

}  // namespace companion
