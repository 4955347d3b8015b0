#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <functional>

#include "VelmoraWidget/EarningsWidget.hpp"
#include "VelmoraWidget/EarningsWidgetView.hpp"
#include "platform/widgets/widget_drawing.hpp"
#include "tests/support/environment.hpp"
#include "tests/support/pixels.hpp"

// Compares what is drawn with the pictures and draw lists in tests/pictures. The letters of a font
// change from release to release, so of a text its place, its colour and how much ink it takes are
// compared; all else is compared pixel by pixel. REDRAW_PICTURES=1 in the environment writes them
// anew: look at them then.

using namespace velmora;
using platform::Json;
using platform::WidgetFamily;
using tests::Pixels;

namespace {

constexpr int scale = 2;
constexpr double nearby = 0.5;      // points that a place may differ by
constexpr double sameInk = 0.09;    // of a text's ink; a step of weight makes 11 % and more
constexpr double sameColor = 0.03;  // of a channel's share in the ink

struct Box {
  int left, top, right, bottom;
};

/// A picture with its draw list; `owner` has the topmost item at each pixel.
struct Drawing {
  Json items;
  Pixels pixels;
  std::vector<std::size_t> owner;

  std::size_t& ownerAt(int x, int y) {
    return owner[static_cast<std::size_t>(y * pixels.width + x)];
  }

  /// The pixels that an item may touch.
  [[nodiscard]] Box boxOf(std::size_t item) const {
    const double margin = 1 + items[item].value("width", 0.0) / 2;
    const std::vector<double> frame = items[item]["frame"];
    const auto pixel = [](double points) { return static_cast<int>(std::lround(points * scale)); };
    return {std::max(0, pixel(frame[0] - margin)), std::max(0, pixel(frame[1] - margin)),
            std::min(pixels.width, pixel(frame[0] + frame[2] + margin)),
            std::min(pixels.height, pixel(frame[1] + frame[3] + margin))};
  }

  /// Calls `use` with the place of each pixel in an item's box.
  template <class Use>
  void eachPixel(std::size_t item, const Use& use) {
    const auto box = boxOf(item);
    for (int y = box.top; y < box.bottom; ++y) {
      for (int x = box.left; x < box.right; ++x) use(x, y);
    }
  }
};

Drawing drawing(const std::string& png, const std::string& list) {
  Drawing result{Json::parse(list)["items"], tests::readPng(png), {}};
  result.owner.resize(result.pixels.all.size());
  for (std::size_t i = 0; i < result.items.size(); ++i)
    result.eachPixel(i, [&](int x, int y) { result.ownerAt(x, y) = i; });
  return result;
}

/// What a text adds to the background, which is the same along each row.
struct Ink {
  std::array<double, 3> channels{};
  double amount = 0;
  double x = 0;  ///< the middle of the ink, in points from the middle of the frame
  double y = 0;  ///< in points from the top of the frame
};

Ink inkOf(Drawing& drawing, std::size_t item) {
  Ink ink;
  drawing.eachPixel(item, [&](int x, int y) {
    if (drawing.ownerAt(x, y) != item) return;
    for (std::size_t channel = 0; channel < 3; ++channel) {
      const double added =
          int{drawing.pixels.at(x, y)[channel]} - int{drawing.pixels.at(4 * scale, y)[channel]};
      ink.channels[channel] += added;
      ink.amount += std::abs(added);
      ink.x += std::abs(added) * x;
      ink.y += std::abs(added) * y;
    }
  });
  const std::vector<double> frame = drawing.items[item]["frame"];
  ink.x = ink.x / ink.amount / scale - frame[0] - frame[2] / 2;
  ink.y = ink.y / ink.amount / scale - frame[1];
  return ink;
}

/// The smallest move that explains where a frame stands now: of its left end, middle or right end.
double moved(const std::vector<double>& frame, const std::vector<double>& wanted) {
  const double left = frame[0] - wanted[0];
  const double right = left + frame[2] - wanted[2];
  const double least = std::min({std::abs(left), std::abs(left + right) / 2, std::abs(right)});
  return std::max(least, std::abs(frame[1] - wanted[1]));
}

Json withoutPlace(Json item) {
  item.erase("frame");
  item.erase("center");
  return item;
}

void compareTexts(Drawing& now, Drawing& wanted) {
  double movedRight = 0;
  int texts = 0;
  for (std::size_t i = 0; i < wanted.items.size(); ++i) {
    const auto& item = wanted.items[i];
    if (item["kind"] != "text") continue;
    const auto ink = inkOf(now, i);
    const auto before = inkOf(wanted, i);
    EXPECT_NEAR(ink.amount / before.amount, 1, sameInk) << item;
    for (std::size_t channel = 0; channel < 3; ++channel) {
      EXPECT_NEAR(ink.channels[channel] / ink.amount, before.channels[channel] / before.amount,
                  sameColor)
          << item;
    }
    EXPECT_NEAR(ink.y, before.y, nearby) << item;
    movedRight += ink.x - before.x;
    ++texts;
  }
  EXPECT_NEAR(movedRight / texts, 0, nearby) << "single letters may be wider than they were";
}

/// How many pixels of an item that is no text look different.
int differentPixels(Drawing& now, Drawing& wanted, std::size_t item) {
  const int right = now.boxOf(item).left - wanted.boxOf(item).left;
  const int down = now.boxOf(item).top - wanted.boxOf(item).top;
  int different = 0;
  wanted.eachPixel(item, [&](int x, int y) {
    if (wanted.ownerAt(x, y) != item || now.ownerAt(x + right, y + down) != item) return;
    const auto& pixel = now.pixels.at(x + right, y + down);
    const auto& other = wanted.pixels.at(x, y);
    const auto differs = [](int a, int b) { return std::abs(a - b) > 10; };
    if (!std::equal(pixel.begin(), pixel.end(), other.begin(), std::not_fn(differs))) ++different;
  });
  return different;
}

}  // namespace

using Pictures = tests::Environment;

TEST_F(Pictures, lookAsTheyDid) {
  using platform::PictureFormat;
  const EarningsEntry sample{{}, VelmoraSnapshot::sample(), defaultObjectives, true};
  auto signedOut = sample;
  signedOut.isConnected = false;
  auto cut = sample;
  cut.snapshot.balance = "A balance that is longer than the room for it";
  const std::tuple<const char*, WidgetFamily, EarningsEntry> pictures[] = {
      {"small", WidgetFamily::systemSmall, sample},
      {"medium", WidgetFamily::systemMedium, sample},
      {"large", WidgetFamily::systemLarge, sample},
      {"signed-out", WidgetFamily::systemSmall, signedOut},
      {"cut", WidgetFamily::systemMedium, cut}};
  auto view = EarningsWidget{}.body().placeholder({}).view;
  for (const auto& [name, family, entry] : pictures) {
    SCOPED_TRACE(name);
    setLanguages(entry.isConnected ? "en" : "fr");  // where the sentence takes two lines
    view.content = EarningsWidgetView{entry, std::nullopt};
    const auto list = platform::drawWidget(view, family, scale);
    const auto png = platform::picture(list, PictureFormat::png);
    const auto json = platform::picture(list, PictureFormat::json);
    const auto file = std::string(PICTURES) + "/" + name;
    if (std::getenv("REDRAW_PICTURES") != nullptr) {
      tests::writeFile(file + ".png", png);
      tests::writeFile(file + ".json", json);
    }
    auto now = drawing(png, json);
    auto wanted = drawing(tests::readFile(file + ".png"), tests::readFile(file + ".json"));
    ASSERT_EQ(now.pixels.all.size(), wanted.pixels.all.size());
    ASSERT_EQ(now.items.size(), wanted.items.size());
    for (std::size_t i = 0; i < wanted.items.size(); ++i) {
      const auto& item = wanted.items[i];
      EXPECT_EQ(withoutPlace(now.items[i]), withoutPlace(item));
      ASSERT_LE(moved(now.items[i]["frame"], item["frame"]), nearby) << item;
      const int different = item["kind"] == "text" ? 0 : differentPixels(now, wanted, i);
      EXPECT_LE(different, 4) << item;
    }
    compareTexts(now, wanted);
  }
}
