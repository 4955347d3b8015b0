#include "companion/command_line.hpp"

#include <CLI/CLI.hpp>

#include <cmath>

#include "platform/foundation/text.hpp"

namespace companion {

namespace {

constexpr int longestTimeout = 86'400;  // seconds

std::optional<double> amountFrom(const std::string& text) {
  // Hexadecimal numbers and names such as "inf" are no amounts.
  if (text.find_first_not_of("0123456789.+-eE") != std::string::npos) return std::nullopt;
  const auto amount = platform::numberFromText(text);
  return amount && std::isfinite(*amount) && *amount > 0 ? amount : std::nullopt;
}

std::string checkAmount(const std::string& text) {
  return amountFrom(text) ? "" : "'" + text + "' is no amount above zero";
}

void addAmount(CLI::App& command, const std::string& name, std::optional<double>& amount,
               const std::string& description) {
  command
      .add_option_function<std::string>(
          name, [&amount](const std::string& text) { amount = amountFrom(text); }, description)
      ->check(CLI::Validator([](std::string& text) { return checkAmount(text); }, ""))
      ->type_name("AMOUNT");
}

CLI::App& addCommand(CLI::App& app, CommandLine& line, const std::string& name,
                     CommandLine::Command command, const std::string& description) {
  auto* added = app.add_subcommand(name, description);
  added->callback([&line, command] { line.command = command; });
  return *added;
}

void declare(CLI::App& app, CommandLine& line, int& timeout) {
  using Command = CommandLine::Command;
  app.set_version_flag("--version", "velmora " VELMORA_VERSION);
  app.require_subcommand(0, 1);
  auto& signIn = addCommand(app, line, "sign-in", Command::signIn, "Sign in with the browser");
  signIn.add_flag("--print-address", line.printAddress,
                  "print the address of the sign-in page instead of opening it");
  signIn.add_option("--timeout", timeout, "how long to wait (default 600)")
      ->check(CLI::Range(1, longestTimeout))
      ->type_name("SECONDS");
  addCommand(app, line, "sign-out", Command::signOut,
             "Withdraw the permission and forget the figures");
  auto& goals = addCommand(app, line, "goals", Command::goals, "Show or change the goals");
  addAmount(goals, "--daily", line.daily, "for a day, in the account's currency");
  addAmount(goals, "--monthly", line.monthly, "for a month");
  auto& client =
      addCommand(app, line, "client", Command::client, "Show or take over the OAuth client file");
  client.add_option("FILE", line.clientFile, "the JSON file of the Google Cloud console");
  auto& status = addCommand(app, line, "status", Command::status, "Show what is at hand");
  status.add_flag("--check", line.check, "fetch fresh figures first, and say how that went");
}

}  // namespace

std::optional<EarlyExit> parseCommandLine(int argumentCount, char** arguments, CommandLine& line) {
  CLI::App app(
      "Signs you in to your AdSense figures and sets Velmora up. Without a command, its window "
      "opens.",
      "velmora");
  auto timeout = static_cast<int>(line.timeout.count());
  declare(app, line, timeout);
  try {
    app.parse(argumentCount, arguments);
  } catch (const CLI::CallForHelp&) {
    return EarlyExit{0, app.help()};
  } catch (const CLI::CallForVersion& version) {
    return EarlyExit{0, version.what()};
  } catch (const CLI::ParseError& error) {
    return EarlyExit{2, platform::oneLine(error.what())};
  }
  line.timeout = std::chrono::seconds(timeout);
  return std::nullopt;
}

}  // namespace companion
