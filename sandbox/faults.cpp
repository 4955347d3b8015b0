#include "sandbox/faults.hpp"

namespace sandbox {

const std::map<std::string, Step>& stepNames() {
  static const std::map<std::string, Step> names{
      {"token", Step::token},       {"accounts", Step::accounts}, {"report", Step::report},
      {"lastyear", Step::lastYear}, {"payments", Step::payments}, {"auth", Step::authorization},
      {"exchange", Step::exchange}, {"revoke", Step::revoke}};
  return names;
}

std::optional<Fault> parseFaultKind(const std::string& text) {
  using Kind = Fault::Kind;
  static const std::map<std::string, Kind> kinds{
      {"drop", Kind::drop},       {"truncate", Kind::truncate},
      {"garbage", Kind::garbage}, {"html", Kind::html},
      {"empty", Kind::empty},     {"slow", Kind::slow},
      {"huge", Kind::huge},       {"redirect-loop", Kind::redirectLoop}};
  if (const auto kind = kinds.find(text); kind != kinds.end()) return Fault{kind->second, 0};
  const bool threeDigits =
      text.size() == 3 && text.find_first_not_of("0123456789") == std::string::npos;
  if (!threeDigits) return std::nullopt;
  const int status = std::stoi(text);
  if (status < 300 || status > 599) return std::nullopt;
  return Fault{Kind::status, status};
}

std::optional<std::pair<Step, Fault>> parseFault(const std::string& text) {
  const auto separator = text.find('=');
  if (separator == std::string::npos) return std::nullopt;
  const auto step = stepNames().find(text.substr(0, separator));
  const auto fault = parseFaultKind(text.substr(separator + 1));
  if (step == stepNames().end() || !fault) return std::nullopt;
  return std::pair(step->second, *fault);
}

}  // namespace sandbox
