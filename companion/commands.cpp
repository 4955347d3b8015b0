#include "companion/commands.hpp"

#include <nlohmann/json.hpp>
#include <unistd.h>

#include <iostream>

#include "companion/client_file.hpp"
#include "companion/running_host.hpp"
#include "companion/sign_in_command.hpp"
#include "companion/status.hpp"
#include "companion/user_data.hpp"
#include "platform/foundation/json.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/standard_streams.hpp"
#include "platform/foundation/text.hpp"

namespace companion {

namespace {

using platform::Json;

int complain(const std::string& message) {
  std::cerr << "velmora: " << platform::oneLine(message) << std::endl;
  return 1;
}

int print(const std::string& line) {
  return platform::printLine(line) ? 0 : complain("cannot write to standard output");
}

int print(const Json& json) { return print(platform::printJson(json)); }

Json jsonForm(const std::optional<ClientInForce>& client) {
  if (!client) return nullptr;
  return {{"clientID", client->client.config.clientID}, {"file", client->file.string()}};
}

template <class Value>
Json orNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json(nullptr);
}

int openWindow() {
  const auto program = findProgram("velmora-window");
  if (!program.empty()) execl(program.c_str(), program.c_str(), nullptr);
  return complain(
      platform::localizedString("The window is not installed. See \"velmora --help\" for what the "
                                "terminal offers."));
}

int signOutCommand() {
  const bool withdrawn = signOut();
  refreshRunningHost();
  if (!withdrawn)
    std::cerr << "velmora: "
              << platform::localizedString(
                     "The provider could not be told. To withdraw the permission there too, "
                     "remove Velmora from the third-party access of your Google Account.")
              << std::endl;
  return 0;
}

int goalsCommand(const CommandLine& line) {
  auto goals = storedGoals();
  if (line.daily) goals.daily = *line.daily;
  if (line.monthly) goals.monthly = *line.monthly;
  if (line.daily || line.monthly) {
    storeGoals(goals);
    refreshRunningHost();
  }
  return print(velmora::jsonForm(goals));
}

int clientCommand(const CommandLine& line) {
  if (line.clientFile) {
    const auto taken = takeOverClientFile(*line.clientFile);
    refreshRunningHost();
    return print(jsonForm(taken));
  }
  return print(jsonForm(requireClient()));
}

int statusCommand(const CommandLine& line) {
  const auto problem = line.check ? refreshFigures() : std::nullopt;
  const auto status = currentStatus();
  Json json{{"isSignedIn", status.isSignedIn},
            {"client", jsonForm(status.client)},
            {"goals", velmora::jsonForm(status.goals)},
            {"account", orNull(status.account)},
            {"snapshot", status.snapshot ? velmora::jsonForm(*status.snapshot) : Json(nullptr)}};
  if (line.check) {
    json["check"] = {{"ok", !problem}};
    if (problem) json["check"]["error"] = problem->description;
  }
  return print(json);
}

}  // namespace

int runCommand(const CommandLine& line) {
  using Command = CommandLine::Command;
  try {
    switch (line.command) {
      case Command::signIn:
        return print(signInFromTerminal(line));
      case Command::signOut:
        return signOutCommand();
      case Command::goals:
        return goalsCommand(line);
      case Command::client:
        return clientCommand(line);
      case Command::status:
        return statusCommand(line);
      case Command::window:
        break;
    }
    return openWindow();
  } catch (const std::exception& error) {
    return complain(error.what());
  }
}

}  // namespace companion
