#include "companion/window/goal_text.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <string_view>

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "VelmoraWidget/PerformanceMetrics.hpp"
#include "platform/foundation/formatting.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/text.hpp"

namespace companion::window {

using platform::localizedFormat;
using platform::localizedString;

namespace {

constexpr double largest = 1e9;
constexpr int mostFractionDigits = 15;

/// Spaces of all widths that are typed or written around numbers, and marks of direction.
constexpr std::array<std::string_view, 8> invisible{" ",      "\t",     "\u00A0", "\u2009",
                                                    "\u202F", "\u200E", "\u200F", "\u061C"};

void removeAll(std::string& text, std::string_view part) {
  if (part.empty()) return;
  for (auto place = text.find(part); place != std::string::npos; place = text.find(part, place))
    text.erase(place, part.size());
}

std::string withoutSpaces(std::string text) {
  for (const auto part : invisible) removeAll(text, part);
  return text;
}

bool takeOff(std::string& text, const std::string& sign) {
  if (sign.empty() || text.size() <= sign.size()) return false;
  if (text.starts_with(sign)) {
    text.erase(0, sign.size());
  } else if (text.ends_with(sign)) {
    text.erase(text.size() - sign.size());
  } else {
    return false;
  }
  return true;
}

std::string upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char character) {
    return character < 0x80 ? static_cast<char>(std::toupper(character))
                            : static_cast<char>(character);
  });
  return text;
}

/// The amount's text without the currency's own sign or code, before or behind.
std::string withoutCurrency(const std::string& typed, const std::string& currency) {
  auto text = upper(withoutSpaces(typed));
  if (currency.empty()) {
    for (const auto* sign : {"€", "$", "£", "¥"})
      if (takeOff(text, sign)) break;
    return text;
  }
  const auto sign = upper(withoutSpaces(currencySign(currency)));
  if (takeOff(text, sign) || takeOff(text, currency)) return text;
  if (sign.find('$') != std::string::npos) takeOff(text, "$");
  return text;
}

bool isDigit(char character) { return character >= '0' && character <= '9'; }

/// "1.234,5" and "1,234.5": the last mark is the decimal one when the others part thousands.
/// Absent for anything that can be read in two ways.
std::optional<double> inOtherNotation(const std::string& text) {
  const auto last = text.find_last_of(".,");
  if (last == std::string::npos || last == 0) return std::nullopt;
  const char other = text[last] == '.' ? ',' : '.';
  const bool isGrouped = text.find(other) != std::string::npos;
  const auto fraction = text.size() - last - 1;
  if (fraction == 0 || (fraction == 3 && !isGrouped)) return std::nullopt;
  std::string plain;
  std::size_t group = 0;
  for (std::size_t i = last; i-- > 0;) {
    if (text[i] == other && group == 3) {
      group = 0;
    } else if (isDigit(text[i]) && (!isGrouped || group < 3)) {
      plain += text[i];
      ++group;
    } else {
      return std::nullopt;
    }
  }
  std::reverse(plain.begin(), plain.end());
  plain += '.';
  plain += text.substr(last + 1);
  return platform::numberFromText(plain);
}

/// How many digits behind the point the amount has in its shortest form.
int fractionDigits(double amount) {
  std::array<char, 400> text{};
  const auto* end =
      std::to_chars(text.data(), text.data() + text.size(), amount, std::chars_format::fixed).ptr;
  const std::string_view digits(text.data(), static_cast<std::size_t>(end - text.data()));
  const auto point = digits.find('.');
  return point == std::string_view::npos ? 0 : static_cast<int>(digits.size() - point - 1);
}

std::string example(const std::string& currency) { return goalText(12.5, currency); }

}  // namespace

std::string currencySign(const std::string& currency) {
  const auto locale = velmora::displayLocale();
  auto text = platform::currencyText(0, currency, 0, locale).value_or("");
  removeAll(text, platform::decimalText(0, 0, locale).value_or("0"));
  return withoutSpaces(text);
}

std::string goalText(double amount, const std::string& currency) {
  const int own = platform::currencyFractionDigits(currency).value_or(2);
  const int needed = fractionDigits(amount);
  const int digits = needed == 0 ? 0 : std::clamp(std::max(own, needed), 0, mostFractionDigits);
  return velmora::formatNumber(amount, digits);
}

GoalReading readGoal(const std::string& typed, const std::string& currency) {
  const auto text = withoutCurrency(typed, currency);
  if (text.empty()) return {std::nullopt, localizedString("Type an amount.")};
  auto amount = platform::decimalFromText(text, velmora::displayLocale());
  if (!amount) amount = inOtherNotation(text);
  if (!amount || text.find_first_of("EX") != std::string::npos)
    return {std::nullopt, currency.empty()
                              ? localizedFormat("Type an amount such as %s.", {example(currency)})
                              : localizedFormat("Type an amount in %s such as %s.",
                                                {currency, example(currency)})};
  if (!(*amount > 0)) return {std::nullopt, localizedString("A goal is more than zero.")};
  if (*amount > largest)
    return {std::nullopt, localizedFormat("A goal is at most %s.", {goalText(largest, currency)})};
  return {amount, ""};
}

}  // namespace companion::window
