#include <fuzzer/FuzzedDataProvider.h>

#include <bit>
#include <cmath>
#include <cstdlib>

#include "VelmoraWidget/EarningsWidgetView.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/views/layout.hpp"
#include "platform/widgets/widget_drawing.hpp"

// Whatever the figures and texts of a snapshot are, in every language, family, scale and format:
// a picture comes out, and everything is on it.

namespace {

using platform::PictureFormat;
using platform::WidgetFamily;

/// As often as not a figure of an account, else any bits.
double figure(FuzzedDataProvider& input) {
  constexpr double cents = 100;
  if (input.ConsumeBool()) return input.ConsumeIntegral<std::int32_t>() / cents;
  return std::bit_cast<double>(input.ConsumeIntegral<std::uint64_t>());
}

std::optional<std::string> optionalText(FuzzedDataProvider& input) {
  if (!input.ConsumeBool()) return std::nullopt;
  return input.ConsumeRandomLengthString();
}

velmora::PerfValues performance(FuzzedDataProvider& input) {
  return {figure(input), figure(input), figure(input), figure(input), figure(input), figure(input)};
}

velmora::EarningsEntry entry(FuzzedDataProvider& input) {
  velmora::VelmoraSnapshot snapshot;
  snapshot.currency = input.ConsumeRandomLengthString();
  snapshot.balance = optionalText(input);
  snapshot.today = figure(input);
  snapshot.yesterday = figure(input);
  snapshot.monthToDate = figure(input);
  snapshot.perfYesterday = performance(input);
  snapshot.perfPrevWeek = performance(input);
  return {{}, snapshot, {figure(input), figure(input)}, input.ConsumeBool()};
}

platform::Canvas canvas(FuzzedDataProvider& input) {
  const auto family =
      input.PickValueInArray({WidgetFamily::systemSmall, WidgetFamily::systemMedium,
                              WidgetFamily::systemLarge, WidgetFamily::systemExtraLarge});
  platform::Canvas result;
  result.size = platform::familySize(family);
  result.inset = 16;
  result.cornerRadius = 20;
  result.scale = input.ConsumeFloatingPointInRange(0.25, 2.0);
  result.rightToLeft = input.ConsumeBool();
  result.environment.set(family);
  return result;
}

void chooseLanguage(FuzzedDataProvider& input) {
  static std::string loaded;
  const std::string language =
      input.PickValueInArray({"en_US", "de_DE", "fr_FR", "ar_EG", "ja_JP"});
  if (language == loaded) return;
  setenv("LANGUAGE", language.c_str(), 1);
  platform::loadStringTables();
  loaded = language;
}

/// Whether a frame is on the canvas, to a pixel.
bool isOn(const platform::Rect& frame, const platform::Canvas& canvas) {
  const double pixel = 1 / canvas.scale;
  return frame.x >= -pixel && frame.y >= -pixel && frame.width >= 0 && frame.height >= 0 &&
         frame.x + frame.width <= canvas.size.width + pixel &&
         frame.y + frame.height <= canvas.size.height + pixel;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto typesetter = platform::systemTypesetter();
  FuzzedDataProvider input(data, size);
  const auto format = input.PickValueInArray(
      {PictureFormat::json, PictureFormat::pdf, PictureFormat::png, PictureFormat::svg});
  chooseLanguage(input);
  const auto where = canvas(input);
  const auto list =
      platform::layOut(velmora::EarningsWidgetView{entry(input), std::nullopt}, where, *typesetter);
  for (const auto& item : list.items) {
    if (!isOn(item.frame, where)) __builtin_trap();
  }
  if (platform::picture(list, format).empty()) __builtin_trap();
  return 0;
}
