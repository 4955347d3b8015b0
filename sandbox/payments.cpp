#include "sandbox/payments.hpp"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <map>

namespace sandbox {

namespace chr = std::chrono;
using platform::Json;

namespace {

constexpr int monthsListed = 12;
constexpr chr::day paymentDay{21};

}  // namespace

std::string amountText(double amount, const std::string& currency, int fractionDigits) {
  char digits[64];
  std::snprintf(digits, sizeof digits, "%.*f", fractionDigits, amount);
  std::string text = digits;
  auto position = text.find('.') == std::string::npos ? text.size() : text.find('.');
  while (position > 3 && text[position - 4] != '-') text.insert(position -= 3, ",");
  static const std::map<std::string, std::pair<std::string, std::string>> signs{
      {"EUR", {"€", ""}}, {"USD", {"$", ""}}, {"GBP", {"£", ""}}, {"JPY", {"¥", " JPY"}}};
  const auto sign = signs.find(currency);
  if (sign == signs.end()) return currency + " " + text;
  return sign->second.first + text + sign->second.second;
}

Json listPayments(const Publisher& publisher) {
  const auto prefix = publisher.accountName() + "/payments/";
  const auto amount = [&](double value) {
    return amountText(value, publisher.currency(), publisher.fractionDigits());
  };
  const chr::year_month_day today{publisher.today()};
  const auto thisMonth = today.year() / today.month();
  // Until the 21st the month before is still to be paid.
  const auto lastPaid = today.day() >= paymentDay ? thisMonth : thisMonth - chr::months{1};

  Json list = Json::array();
  list.push_back({{"name", prefix + "youtube-unpaid"}, {"amount", amount(0)}});
  const double unpaid = publisher.earnings(chr::sys_days{lastPaid / 1}, publisher.today());
  list.push_back({{"name", prefix + "unpaid"}, {"amount", amount(unpaid)}});
  for (int back = 0; back < monthsListed; ++back) {
    const auto month = lastPaid - chr::months{back};
    const auto earned = month - chr::months{1};
    const double paid =
        publisher.earnings(chr::sys_days{earned / 1}, chr::sys_days{earned / chr::last});
    if (paid == 0) break;
    char day[32];
    std::snprintf(day, sizeof day, "%04d-%02u-%02u", static_cast<int>(month.year()),
                  static_cast<unsigned>(month.month()), static_cast<unsigned>(paymentDay));
    list.push_back({{"name", prefix + day},
                    {"date",
                     {{"year", static_cast<int>(month.year())},
                      {"month", static_cast<unsigned>(month.month())},
                      {"day", static_cast<unsigned>(paymentDay)}}},
                    {"amount", amount(paid)}});
  }
  return {{"payments", list}};
}

}  // namespace sandbox
