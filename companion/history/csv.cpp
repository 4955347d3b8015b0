#include "companion/history/csv.hpp"

#include <array>
#include <charconv>
#include <cstdio>
#include <limits>

#include "platform/foundation/text.hpp"

namespace companion {

namespace {

constexpr const char* endOfLine = "\r\n";

/// A text in quotes where it needs them.
std::string field(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char character : text) quoted += character == '"' ? "\"\"" : std::string(1, character);
  return quoted + "\"";
}

}  // namespace

std::string plainNumber(double number) {
  constexpr auto digits = std::numeric_limits<double>::digits10;
  std::array<char, std::numeric_limits<double>::max_exponent10 + 64> text{};
  std::snprintf(text.data(), text.size(), "%.*e", digits - 1, number);
  const double rounded = platform::numberFromText(text.data()).value_or(number);
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), rounded, std::chars_format::fixed).ptr;
  return {text.data(), end};
}

std::string csvForm(const History& history) {
  std::string csv = "date,currency";
  for (const auto& column : dayFields) csv += std::string(",") + column.column;
  csv += endOfLine;
  const auto currency = field(history.currency);
  for (const auto& [date, figures] : history.days) {
    csv += dayText(date) + "," + currency;
    for (const auto& column : dayFields) csv += "," + plainNumber(figures.*column.field);
    csv += endOfLine;
  }
  return csv;
}

}  // namespace companion
