#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>
#include <pthread.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <iostream>

#include "platform/foundation/text.hpp"
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

template <class Notice>
void addNotices(CLI::App& app, const std::string& name, std::vector<Notice>& notices,
                std::optional<Notice> (*parse)(const std::string&), const std::string& type,
                const std::string& description) {
  app.add_option_function<std::vector<std::string>>(
         name,
         [&notices, parse](const std::vector<std::string>& texts) {
           for (const auto& text : texts) notices.push_back(*parse(text));
         },
         description)
      ->check(CLI::Validator(
          [parse, type](std::string& text) {
            return parse(text) ? "" : "'" + text + "' is no " + type;
          },
          ""))
      ->type_name(type);
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
                 "STEP=KIND, repeatable; steps: token, accounts, report, lastyear, payments, "
                 "alerts, policy, auth, exchange, revoke; kinds: a status from 300 to 599, drop, "
                 "truncate, garbage, html, html-STATUS, empty, slow, redirect-loop, huge, "
                 "service-disabled; at token and exchange any OAuth error")
      ->check(CLI::Validator(checkFault, ""));
  app.add_option_function<std::string>(
         "--consent",
         [&line](const std::string& text) {
           line.options.consent = *sandbox::consentModeFrom(text);
         },
         "what the user at the sign-in page does: ask, allow or deny (default ask)")
      ->check(CLI::IsMember({"ask", "allow", "deny"}));
  addNotices(app, "--alert", line.options.alerts, sandbox::parseAlert, "SEVERITY=TEXT",
             "an alert of the service, repeatable; severities: INFO, WARNING, SEVERE");
  addNotices(app, "--policy", line.options.policyIssues, sandbox::parsePolicyIssue, "ACTION=SITE",
             "a policy issue, repeatable; actions: WARNED, AD_SERVING_RESTRICTED, "
             "AD_SERVING_DISABLED, AD_SERVED_WITH_CLICK_CONFIRMATION, "
             "AD_PERSONALIZATION_RESTRICTED");
  app.add_option("--today", line.today, "the day that counts as today, like 2026-05-21")
      ->check(CLI::Validator(checkDate, ""));
}

}  // namespace

int main(int argumentCount, char** arguments) {
  CommandLine line;
  CLI::App app(
      "The OAuth endpoints and the AdSense reporting API on this machine, for demos and tests. "
      "SIGUSR1 ends every sign-in, as if the user had withdrawn the permission.",
      "velmora-sandbox");
  declareOptions(app, line);
  try {
    app.parse(argumentCount, arguments);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    std::cerr << "velmora-sandbox: " << platform::oneLine(error.what()) << std::endl;
    return 2;
  }
  line.options.latency = std::chrono::milliseconds(line.latency);
  for (const auto& text : line.faults) {
    if (const auto fault = sandbox::parseFault(text)) line.options.faults.insert(*fault);
  }
  if (!line.today.empty()) line.options.today = dateOf(line.today);

  // Blocked before the server starts its threads, so that only the wait below takes them.
  sigset_t awaited;
  sigemptyset(&awaited);
  for (const int signal : {SIGINT, SIGTERM, SIGUSR1}) sigaddset(&awaited, signal);
  pthread_sigmask(SIG_BLOCK, &awaited, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
  try {
    sandbox::Server server(line.options);
    std::cout << platform::printJson(server.address()) << std::endl;
    int signal = 0;
    while (sigwait(&awaited, &signal) == 0 && signal == SIGUSR1) server.endSignIns();
  } catch (const std::runtime_error& error) {
    std::cerr << "velmora-sandbox: " << platform::oneLine(error.what()) << std::endl;
    return 1;
  }
  return 0;
}
