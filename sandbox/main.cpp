#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>
#include <pthread.h>

#include <csignal>
#include <cstdio>
#include <iostream>

#include "sandbox/server.hpp"

namespace {

struct CommandLine {
  sandbox::ServerOptions options;
  int latency = 0;
  std::vector<std::string> faults;
  std::string today;
};

std::string checkFault(std::string& text) {
  return sandbox::parseFault(text) ? "" : "'" + text + "' is no STEP=KIND";
}

std::string checkDate(std::string& text) {
  int year = 0;
  unsigned month = 0;
  unsigned day = 0;
  char rest = 0;
  const bool parts = std::sscanf(text.c_str(), "%4d-%2u-%2u%c", &year, &month, &day, &rest) == 3;
  const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{month},
                                         std::chrono::day{day}};
  return parts && date.ok() ? "" : "'" + text + "' is no date like 2026-05-21";
}

std::chrono::sys_days dateOf(const std::string& text) {
  return std::chrono::year{std::stoi(text.substr(0, 4))} /
         std::stoi(text.substr(5, text.find('-', 5) - 5)) /
         std::stoi(text.substr(text.find('-', 5) + 1));
}

void declareOptions(CLI::App& app, CommandLine& line) {
  app.add_option("--port", line.options.port, "port on 127.0.0.1; 0 picks one (default 0)")
      ->check(CLI::Range(0, 65535));
  app.add_option("--seed", line.options.seed, "which made-up publisher (default 1)");
  app.add_option("--currency", line.options.currency, "ISO 4217 code (default EUR)")
      ->check([](const std::string& text) {
        const bool code = text.size() == 3 && std::all_of(text.begin(), text.end(), [](char c) {
                            return c >= 'A' && c <= 'Z';
                          });
        return code ? std::string() : "'" + text + "' is no currency code";
      });
  app.add_option("--latency", line.latency, "milliseconds before each answer (default 0)")
      ->check(CLI::Range(0, 600'000));
  app.add_option("--fault", line.faults,
                 "STEP=KIND, repeatable; steps: token, accounts, report, lastyear, payments, auth, "
                 "exchange, revoke; "
                 "kinds: a status from 300 to 599, drop, truncate, garbage, html, empty, slow, "
                 "redirect-loop, huge")
      ->check(CLI::Validator(checkFault, ""));
  app.add_option_function<std::string>(
         "--consent",
         [&line](const std::string& text) {
           line.options.consent = *sandbox::consentModeFrom(text);
         },
         "what the user at the sign-in page does: ask, allow or deny (default ask)")
      ->check(CLI::IsMember({"ask", "allow", "deny"}));
  app.add_option("--today", line.today, "the day that counts as today, like 2026-05-21")
      ->check(CLI::Validator(checkDate, ""));
}

}  // namespace

int main(int argumentCount, char** arguments) {
  CommandLine line;
  CLI::App app(
      "The OAuth endpoints and the AdSense reporting API on this machine, for demos and tests.",
      "velmora-sandbox");
  declareOptions(app, line);
  try {
    app.parse(argumentCount, arguments);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    std::cerr << "velmora-sandbox: " << error.what() << std::endl;
    return 2;
  }
  line.options.latency = std::chrono::milliseconds(line.latency);
  for (const auto& text : line.faults) {
    if (const auto fault = sandbox::parseFault(text)) line.options.faults.insert(*fault);
  }
  if (!line.today.empty()) line.options.today = dateOf(line.today);

  // Blocked before the server starts its threads, so that only the wait below takes them.
  sigset_t ending;
  sigemptyset(&ending);
  sigaddset(&ending, SIGINT);
  sigaddset(&ending, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &ending, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
  try {
    const sandbox::Server server(line.options);
    std::cout << platform::printJson(server.address()) << std::endl;
    int signal = 0;
    sigwait(&ending, &signal);
  } catch (const std::runtime_error& error) {
    std::cerr << "velmora-sandbox: " << error.what() << std::endl;
    return 1;
  }
  return 0;
}
