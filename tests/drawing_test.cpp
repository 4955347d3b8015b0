#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <cmath>
#include <ctime>
#include <limits>
#include <thread>

#include "VelmoraWidget/EarningsWidget.hpp"
#include "VelmoraWidget/EarningsWidgetView.hpp"
#include "VelmoraWidget/ProgressRing.hpp"
#include "VelmoraWidget/WidgetComponents.hpp"
#include "platform/views/typesetter.hpp"
#include "platform/widgets/widget_drawing.hpp"
#include "tests/support/environment.hpp"
#include "tests/support/pixels.hpp"

using namespace velmora;
using platform::Color;
using platform::DrawList;
using platform::Json;
using platform::WidgetFamily;
using testing::ElementsAre;

namespace {

EarningsEntry sampleEntry() { return {{}, VelmoraSnapshot::sample(), defaultObjectives, true}; }

DrawList draw(const platform::View& view, WidgetFamily family, double scale = 2) {
  return platform::drawWidget({view, {{0, 0, 0, 1}, {0, 0, 0, 1}}}, family, scale);
}

DrawList draw(const EarningsEntry& entry, WidgetFamily family, double scale = 2) {
  return draw(EarningsWidgetView{entry, std::nullopt}, family, scale);
}

Json items(const DrawList& list) { return jsonForm(list)["items"]; }

Json find(const DrawList& list, const std::string& text) {
  for (const auto& item : items(list)) {
    if (item.value("text", "") == text) return item;
  }
  ADD_FAILURE() << "no text " << text;
  return {{"frame", {0, 0, 0, 0}}, {"weight", ""}};
}

std::vector<Json> arcs(const DrawList& list) {
  std::vector<Json> result;
  for (const auto& item : items(list)) {
    if (item["kind"] == "arc") result.push_back(item);
  }
  return result;
}

using Drawing = tests::Environment;

/// The items of one ring.
std::vector<Json> ring(double progress) {
  const auto list =
      draw(ProgressRing{progress, 60, 6, 13.2, Color::white}, WidgetFamily::systemSmall);
  const auto all = items(list);
  return {all.begin() + 1, all.end()};
}

bool isGreen(const Json& item) { return item["color"][0] == 50 / 255.0; }

}  // namespace

TEST_F(Drawing, eachFamilySpeaksWhatItShows) {
  const auto phrases = [](WidgetFamily family) {
    return draw(sampleEntry(), family).accessibility;
  };
  EXPECT_THAT(phrases(WidgetFamily::systemSmall),
              ElementsAre("Day, 92 %, €9.21", "Month, 73 %, €217.81"));
  EXPECT_THAT(phrases(WidgetFamily::systemMedium),
              ElementsAre("AdSense earnings", "Day, 92 %", "Month, 73 %", "Today, €9.21",
                          "Balance, 389,85 €"));
  const auto large = phrases(WidgetFamily::systemLarge);
  ASSERT_EQ(large.size(), 14U);
  EXPECT_EQ(large[8], "Page views, 4.51 k, up 23 %");
}

TEST_F(Drawing, captionsFollowTheLanguageButOne) {
  setLanguages("de");
  const auto german = draw(sampleEntry(), WidgetFamily::systemLarge);
  for (const char* text : {"Heute", "Seitenaufrufe", "Ce mois", "9,21\u00a0€", "389,85 €"})
    find(german, text);
  EXPECT_EQ(german.accessibility[8], "Seitenaufrufe, 4,51 k, plus 23 %");
  setLanguages("ar");
  const auto arabic = draw(sampleEntry(), WidgetFamily::systemLarge);
  EXPECT_NEAR(arcs(arabic)[0]["frame"][0].get<double>() - 16, 332 - 60, 2);
  EXPECT_EQ(arcs(arabic)[1]["from"], 0) << "rings do not mirror";
  const auto frame = find(arabic, "Ce mois")["frame"];
  EXPECT_NEAR(frame[0].get<double>() + frame[2].get<double>() - 16, 332 - 144, 2);
}

TEST_F(Drawing, theSignedOutAreAskedToSignIn) {
  auto entry = sampleEntry();
  entry.isConnected = false;
  for (const auto family :
       {WidgetFamily::systemSmall, WidgetFamily::systemMedium, WidgetFamily::systemLarge}) {
    const auto list = draw(entry, family);
    EXPECT_THAT(list.accessibility, ElementsAre("Open Velmora to sign in"));
    ASSERT_EQ(list.items.size(), 3U);
    const auto& frame = list.items[2].frame;
    EXPECT_NEAR(frame.x + frame.width / 2, list.size.width / 2, 1);
    EXPECT_EQ(items(list)[2]["weight"], "medium");
    EXPECT_EQ(list.items[2].color, Color::white.opacity(0.7));
  }
}

TEST_F(Drawing, familiesAreDispatched) {
  const auto texts = [](std::optional<WidgetFamily> override, WidgetFamily family) {
    return draw(EarningsWidgetView{sampleEntry(), override}, family).accessibility.size();
  };
  EXPECT_EQ(texts({}, WidgetFamily::systemExtraLarge), 2U) << "as small";
  EXPECT_EQ(texts(WidgetFamily::systemLarge, WidgetFamily::systemSmall), 14U);
}

TEST_F(Drawing, absentBalanceAndZeroGoals) {
  auto entry = sampleEntry();
  entry.snapshot.balance.reset();
  entry.objectives = {0, -5};
  for (const auto family : {WidgetFamily::systemMedium, WidgetFamily::systemLarge}) {
    const auto list = draw(entry, family);
    EXPECT_EQ(find(list, "—")["weight"], "semibold");
    EXPECT_EQ(arcs(list).size(), 2U) << "tracks alone";
    find(list, "0 %");
  }
}

TEST_F(Drawing, ringsFollowTheirRules) {
  EXPECT_EQ(ring(0).size(), 2U);
  EXPECT_EQ(ring(0)[0]["color"][3], 0.18);
  EXPECT_EQ(ring(-0.2).size(), 2U);
  EXPECT_EQ(ring(-0.2)[1]["text"], "-20 %");
  EXPECT_EQ(ring(0.424)[1]["from"], 0);
  EXPECT_EQ(ring(0.424)[1]["to"], 0.424);
  EXPECT_EQ(ring(0.424)[1]["cap"], "round");
  EXPECT_EQ(ring(0.424)[2]["text"], "42 %");
  EXPECT_EQ(ring(0.125)[2]["text"], "13 %");
  EXPECT_EQ(ring(0.995)[2]["text"], "100 %");
  for (const auto& item : ring(0.995)) EXPECT_FALSE(isGreen(item));
  for (const double reached : {1.0, 1.37, 1e300, std::numeric_limits<double>::infinity()}) {
    for (const auto& item : ring(reached)) EXPECT_TRUE(isGreen(item));
    EXPECT_EQ(ring(reached)[1]["to"], 1);
  }
  EXPECT_EQ(ring(1.37)[2]["text"], "137 %");
  EXPECT_EQ(ring(NAN)[1]["text"], "—");
  EXPECT_EQ(ring(1e300)[2]["text"], "—");
  const auto wide = ring(123456789012345)[2];
  EXPECT_LT(wide["scale"], 1);
  EXPECT_LE(wide["frame"][2], 60);
}

TEST_F(Drawing, deltasPointUpUnlessTheyFall) {
  const auto symbols = [](Comparison comparison) {
    const auto all = items(draw(WidgetDelta{comparison}, WidgetFamily::systemSmall));
    return all[1]["name"].get<std::string>() + (isGreen(all[1]) ? " green " : " red ") +
           std::to_string(all.size() - 1);
  };
  EXPECT_EQ(symbols({5, 5}), "arrowtriangle.up.fill green 2");
  EXPECT_EQ(symbols({1, 0}), "arrowtriangle.up.fill green 1");
  EXPECT_EQ(symbols({-1, 0}), "arrowtriangle.down.fill red 1");
  EXPECT_EQ(symbols({NAN, 1}), "arrowtriangle.down.fill red 2");
}

TEST_F(Drawing, hostileFiguresStayInBounds) {
  auto entry = sampleEntry();
  auto& snapshot = entry.snapshot;
  const std::pair<double, const char*> figures[] = {
      {NAN, "EUR"}, {INFINITY, ""}, {-1e308, "XXXX"}, {1e15, "JPY"}, {0, "zz"}};
  for (const auto& [figure, currency] : figures) {
    snapshot.today = snapshot.yesterday = snapshot.monthToDate = figure;
    snapshot.perfYesterday = {figure, figure, figure, figure, figure, figure};
    snapshot.currency = currency;
    snapshot.balance = std::string(1000, 'W') + "\n\u2028\xff\0é";
    for (const auto family :
         {WidgetFamily::systemSmall, WidgetFamily::systemMedium, WidgetFamily::systemLarge}) {
      const auto list = draw(entry, family);
      for (const auto& item : list.items) {
        EXPECT_GE(item.frame.x, 0);
        EXPECT_LE(item.frame.x + item.frame.width, list.size.width);
        EXPECT_LE(item.frame.y + item.frame.height, list.size.height);
      }
      EXPECT_FALSE(platform::picture(list, platform::PictureFormat::png).empty());
    }
  }
}

TEST_F(Drawing, everyFormatTakesNoncharacters) {
  using platform::PictureFormat;
  auto entry = sampleEntry();
  for (const char* balance : {"\ufdd0", "\uffff1", "a\U0001fffe", "\U0010ffff\ufdef"}) {
    entry.snapshot.balance = balance;
    const auto list = draw(entry, WidgetFamily::systemMedium);
    EXPECT_EQ(find(list, balance)["truncated"], false);
    for (const auto format : {PictureFormat::png, PictureFormat::svg, PictureFormat::pdf})
      EXPECT_FALSE(platform::picture(list, format).empty()) << balance;
  }
}

TEST_F(Drawing, otherScriptsDoNotMoveTheRest) {
  const auto yOf = [](const char* balance) {
    auto entry = sampleEntry();
    entry.snapshot.balance = balance;
    return find(draw(entry, WidgetFamily::systemMedium), "Today")["frame"][1].get<double>();
  };
  for (const char* other : {"日本語 389", "٣٨٩٫٨٥", "हिन्दी", "ไทย", "😀"})
    EXPECT_EQ(yOf(other), yOf("389,85 €")) << other;
}

TEST_F(Drawing, figuresAreEquallyWide) {
  const auto width = [](const std::string& text) {
    return platform::systemTypesetter()->shape(text, platform::Font::system(20))->width();
  };
  for (const char* figures : {"000", "777", "888"}) EXPECT_EQ(width(figures), width("111"));
}

TEST_F(Drawing, cornersFadeWithoutChangingColour) {
  const platform::LinearGradient background{{0.2, 0.6, 1, 1}, {0.2, 0.6, 1, 1}};
  const auto list =
      platform::drawWidget({platform::text(""), background}, WidgetFamily::systemSmall, 2);
  int halfTransparent = 0;
  for (const auto& pixel :
       tests::readPng(platform::picture(list, platform::PictureFormat::png)).all) {
    if (pixel[3] < 50 || pixel[3] > 200) continue;
    ++halfTransparent;
    EXPECT_NEAR(pixel[0], 51, 3);
    EXPECT_NEAR(pixel[1], 153, 3);
    EXPECT_NEAR(pixel[2], 255, 3);
  }
  EXPECT_GT(halfTransparent, 40);
}

TEST_F(Drawing, picturesAreTheSameEachTime) {
  using platform::PictureFormat;
  const auto once = [](PictureFormat format, double scale = 1.5) {
    return platform::picture(draw(sampleEntry(), WidgetFamily::systemLarge, scale), format);
  };
  for (const auto format : {PictureFormat::png, PictureFormat::svg, PictureFormat::json})
    EXPECT_TRUE(once(format) == once(format));
  const auto pdf = once(PictureFormat::pdf);
  for (const auto then = std::time(nullptr); std::time(nullptr) == then;)
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_TRUE(once(PictureFormat::pdf) == pdf) << "no clock in it";
  for (const double scale : {0.01, 8.0}) EXPECT_FALSE(once(PictureFormat::png, scale).empty());
}

TEST_F(Drawing, fillsDifferWithoutTheirColour) {
  const auto inked = [](platform::View view) {
    const auto list = draw(view.foregroundColor(Color::white), WidgetFamily::systemSmall);
    const auto pixels = tests::readPng(platform::picture(list, platform::PictureFormat::png));
    double sum = 0;
    for (const auto& pixel : pixels.all) sum += pixel[0];
    return sum / 255 / 4 / 138;  // rows of the content
  };
  const auto filled = [&](platform::Fill fill) {
    return inked(platform::rectangle({.fill = fill, .topRadius = 4}));
  };
  EXPECT_NEAR(filled(platform::Fill::solid), 138, 1);
  EXPECT_NEAR(filled(platform::Fill::outlined), 4, 0.3) << "of one point on each side";
  EXPECT_GT(filled(platform::Fill::hatched), 138 / 4.0);
  EXPECT_LT(filled(platform::Fill::hatched), 138 * 3 / 4.0);
  EXPECT_NEAR(inked(platform::rule({})), 1, 0.05);
  EXPECT_NEAR(inked(platform::rule({.dash = 6})), 2 / 3.0, 0.05);
}
