#include "companion/commands.hpp"

#include <nlohmann/json.hpp>
#include <unistd.h>

#include <iostream>

#include "companion/client_file.hpp"
#include "companion/former_figures.hpp"
#include "companion/history_command.hpp"
#include "companion/news/news_command.hpp"
#include "companion/running_host.hpp"
#include "companion/sign_in_command.hpp"
#include "companion/status.hpp"
#include "companion/user_data.hpp"
#include "platform/foundation/json.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/standard_streams.hpp"
#include "platform/foundation/text.hpp"
#include "platform/processes/process.hpp"

namespace companion {

namespace {

using platform::Json;

/// Prints one line, and returns the exit status that goes with it.
int complain(const std::vector<std::string>& sentences) {
  std::cerr << "velmora:";
  for (const auto& sentence : sentences) {
    if (!sentence.empty()) std::cerr << ' ' << platform::oneLine(sentence);
  }
  std::cerr << std::endl;
  return 1;
}

int print(const std::string& line) {
  return platform::printLine(line) ? 0 : complain({"cannot write to standard output"});
}

int print(const Json& json) { return print(platform::printJson(json)); }

Json jsonForm(const std::optional<ClientInForce>& client) {
  if (!client) return nullptr;
  return {{"clientID", client->client.config.clientID}, {"file", client->file.string()}};
}

Json jsonForm(const Failure& failure) {
  Json json{{"error", failure.description},
            {"kind", nameOf(failure.kind)},
            {"title", failure.title},
            {"advice", failure.advice}};
  if (!failure.page.empty()) json["page"] = failure.page;
  return json;
}

template <class Value>
Json orNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json(nullptr);
}

int openWindow() {
  const auto program = platform::findProgram("velmora-window");
  if (!program.empty()) execl(program.c_str(), program.c_str(), nullptr);
  return complain(
      {platform::localizedString("The window is not installed. See \"velmora --help\" for what the "
                                 "terminal offers.")});
}

int signOutCommand() {
  const auto outcome = tryToSignOut();
  refreshRunningHost();
  const auto withdrawal =
      outcome.isWithdrawn
          ? ""
          : platform::localizedString(
                "Google could not be told. To withdraw the permission there too, remove "
                "Velmora from the third-party access of your Google Account.");
  if (outcome.left) return complain({outcome.left->what(), withdrawal});
  if (!outcome.isWithdrawn) complain({withdrawal});
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
    if (taken.left) complain({taken.left->what()});
    return print(jsonForm(taken.client));
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
    if (problem) json["check"].update(jsonForm(*problem));
  }
  return print(json);
}

int historyCommand(const CommandLine& line) {
  const auto outcome = historyFromTerminal(line);
  const int status = outcome.output.empty() ? 0 : print(outcome.output);
  if (status == 0 && !outcome.warning.empty()) complain({outcome.warning});
  return status;
}

}  // namespace

int runCommand(const CommandLine& line) {
  using Command = CommandLine::Command;
  try {
    settleFigures();
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
      case Command::history:
        return historyCommand(line);
      case Command::news:
        return news::runNewsCommand(line) ? 0 : complain({"cannot write to standard output"});
      case Command::window:
        break;
    }
    return openWindow();
  } catch (const std::exception& error) {
    return complain({error.what()});
  }
}

}  // namespace companion
