#include <cstdint>
#include <string>

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "VelmoraWidget/Payments.hpp"
#include "VelmoraWidget/Reports.hpp"
#include "desktop/schedule.hpp"
#include "platform/foundation/text.hpp"
#include "platform/foundation/url.hpp"

// Texts: amounts, numbers, dates, addresses, currency codes.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto days = velmora::makeDayFormatter();
  const std::string input(reinterpret_cast<const char*>(data), size);
  velmora::parseAmount(input);
  velmora::formatCurrency(platform::numberFromText(input).value_or(1), input);
  static_cast<void>(days.date(input));
  desktop::unixSecondsFromIso(input);
  platform::urlWithQuery(input, {{input, input}});
  const auto repaired = platform::repairedUtf8(input);
  if (platform::repairedUtf8(repaired) != repaired) __builtin_trap();
  return 0;
}
