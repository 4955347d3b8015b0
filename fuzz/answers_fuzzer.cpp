#include <cstdint>
#include <exception>
#include <string_view>

#include "VelmoraWidget/AccessToken.hpp"
#include "VelmoraWidget/AdSenseClient.hpp"
#include "VelmoraWidget/Payments.hpp"
#include "VelmoraWidget/Reports.hpp"
#include "VelmoraWidget/SnapshotFetch.hpp"
#include "desktop/widget_answer.hpp"
#include "platform/foundation/json.hpp"

// Answers of the services, and what a widget program prints.

namespace {

template <class Read>
void attempt(const Read& read) {
  try {
    read();
  } catch (const std::exception&) {
    return;  // refused
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  attempt([&] { velmora::accessTokenFrom(input); });
  attempt([&] { velmora::decodeAccountsResponse(input); });
  attempt([&] { velmora::summarize(velmora::decodePaymentsResponse(input), "EUR"); });
  attempt([&] {
    const auto report = velmora::decodeReportResponse(input);
    velmora::reportTotal(report);
    const auto days = velmora::parseReportRows(report.headers, report.rows);
    if (!days.empty()) velmora::periodFigures(days, velmora::anchorDay(days, {}));
  });
  desktop::parseAnswer(std::string(input));
  return 0;
}
