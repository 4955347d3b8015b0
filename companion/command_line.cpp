#include "companion/command_line.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cmath>
#include <tuple>

#include "companion/history/history_file.hpp"
#include "companion/news/kind.hpp"
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

std::string checkOutput(const std::string& file) {
  return historyFile(file) ? "" : "'" + file + "' does not end in .csv, .json, .png, .svg or .pdf";
}

std::string checkScale(const std::string& text) {
  double scale = 0;
  const bool isNumber = CLI::detail::lexical_cast(text, scale);
  return isNumber && scale > 0 && scale <= 8 ? "" : "'" + text + "' is not above 0 and at most 8";
}

CLI::App& addCommand(CLI::App& app, CommandLine& line, const std::string& name,
                     CommandLine::Command command, const std::string& description) {
  auto* added = app.add_subcommand(name, description);
  added->callback([&line, command] { line.command = command; });
  return *added;
}

void declareHistory(CLI::App& app, CommandLine& line) {
  auto& history = addCommand(app, line, "history", CommandLine::Command::history,
                             "Show the days behind the figures, or their chart");
  history.add_option("--days", line.days, "how many, up to today: 1 to 730 (default 35)")
      ->check(CLI::Range(1, mostDays))
      ->type_name("N");
  history.add_flag("--offline", line.isOffline, "ask nobody, show what was fetched last");
  history
      .add_option("--output", line.output,
                  "file ending in .csv or .json, or in .png, .svg or .pdf for the chart")
      ->check(CLI::Validator([](std::string& text) { return checkOutput(text); }, ""))
      ->type_name("FILE");
  history.add_option("--scale", line.scale, "of the chart: device pixels per point (default 1)")
      ->check(CLI::Validator([](std::string& text) { return checkScale(text); }, ""))
      ->type_name("S");
}

void addNewsCommand(CLI::App& app, CommandLine& line) {
  auto& news = addCommand(app, line, "news", CommandLine::Command::news,
                          "Tell what has happened that was not told yet");
  auto* peek = news.add_flag("--peek", line.peek, "do not remember what is told");
  const CLI::Validator isKind(
      [](std::string& text) -> std::string {
        const auto kinds = companion::news::kinds();
        const bool isOne = std::any_of(kinds.begin(), kinds.end(),
                                       [&text](const auto& kind) { return kind.id == text; });
        return isOne ? "" : "'" + text + "' is no kind of news";
      },
      "");
  for (const auto& [name, chosen, description] :
       {std::tuple("--on", &line.newsOn, "tell this kind, repeatable"),
        std::tuple("--off", &line.newsOff, "do not tell this kind, repeatable")})
    news.add_option(name, *chosen, description)->check(isKind)->type_name("KIND")->excludes(peek);
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
  declareHistory(app, line);
  addNewsCommand(app, line);
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
  for (const auto& kind : line.newsOn) {
    if (std::find(line.newsOff.begin(), line.newsOff.end(), kind) != line.newsOff.end())
      return EarlyExit{2, "'" + kind + "' cannot be on and off"};
  }
  line.timeout = std::chrono::seconds(timeout);
  return std::nullopt;
}

}  // namespace companion
