#include <cairo.h>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

#include "VelmoraWidget/EarningsWidget.hpp"
#include "VelmoraWidget/EarningsWidgetView.hpp"
#include "VelmoraWidget/ProgressRing.hpp"
#include "VelmoraWidget/WidgetComponents.hpp"
#include "platform/foundation/raii.hpp"
#include "platform/widgets/widget_drawing.hpp"
#include "tests/support/environment.hpp"

using namespace velmora;
using platform::Color;
using platform::DrawList;
using platform::Json;
using platform::WidgetFamily;
using testing::ElementsAre;

namespace {

using Picture = platform::Owned<cairo_surface_t, cairo_surface_destroy>;

constexpr double tolerance = 2;  // points, for the fonts

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
  return {{"frame", {0, 0, 0, 0}}, {"color", {0, 0, 0, 0}}, {"size", 0},
          {"weight", ""},          {"design", ""},          {"truncated", false}};
}

/// A text's place relative to the content.
void expectAt(const DrawList& list, const std::string& text, double x, double y) {
  const auto frame = find(list, text)["frame"];
  EXPECT_NEAR(frame[0].get<double>() - 16, x, tolerance) << text;
  EXPECT_NEAR(frame[1].get<double>() - 16, y, tolerance) << text;
}

std::vector<Json> arcs(const DrawList& list) {
  std::vector<Json> result;
  for (const auto& item : items(list)) {
    if (item["kind"] == "arc") result.push_back(item);
  }
  return result;
}

void expectRingAt(const Json& arc, double x, double y) {
  EXPECT_NEAR(arc["frame"][0].get<double>() - 16, x, tolerance);
  EXPECT_NEAR(arc["frame"][1].get<double>() - 16, y, tolerance);
}

std::string style(const Json& item) {
  char text[64];
  std::snprintf(text, sizeof text, "%g %s %s %.2f %.2f", item["size"].get<double>(),
                item["weight"].get<std::string>().c_str(),
                item["design"].get<std::string>().c_str(), item["color"][2].get<double>(),
                item["color"][3].get<double>());
  return text;
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

TEST_F(Drawing, smallIsTwoRingsWithAmounts) {
  const auto list = draw(sampleEntry(), WidgetFamily::systemSmall);
  expectRingAt(arcs(list)[0], 0, 20.5);
  expectRingAt(arcs(list)[2], 76, 20.5);
  EXPECT_EQ(style(find(list, "92 %")), "13.64 bold rounded 1.00 1.00");
  EXPECT_EQ(style(find(list, "Day")), "10 medium default 1.00 0.60");
  EXPECT_EQ(style(find(list, "€217.81")), "11 semibold rounded 1.00 0.85");
  EXPECT_NEAR(find(list, "Month")["frame"][1].get<double>() - 16, 86.5, tolerance);
  EXPECT_NEAR(find(list, "€9.21")["frame"][1].get<double>() - 16, 103.5, tolerance);
  EXPECT_THAT(list.accessibility, ElementsAre("Day, 92 %, €9.21", "Month, 73 %, €217.81"));
}

TEST_F(Drawing, mediumAddsTwoFigures) {
  const auto list = draw(sampleEntry(), WidgetFamily::systemMedium);
  expectAt(list, "AdSense earnings", 16, 0);
  expectRingAt(arcs(list)[0], 0, 37);
  expectRingAt(arcs(list)[2], 74, 37);
  expectAt(list, "Today", 178, 34);
  expectAt(list, "€9.21", 178, 49);
  expectAt(list, "Balance", 178, 83);
  expectAt(list, "389,85 €", 178, 98);
  EXPECT_EQ(style(find(list, "€9.21")), "20 bold rounded 0.42 1.00");
  EXPECT_EQ(style(find(list, "389,85 €")), "16 semibold rounded 1.00 1.00");
  EXPECT_EQ(style(find(list, "AdSense earnings")), "10 semibold default 0.42 1.00");
  EXPECT_THAT(list.accessibility, ElementsAre("AdSense earnings", "Day, 92 %", "Month, 73 %",
                                              "Today, €9.21", "Balance, 389,85 €"));
}

TEST_F(Drawing, largeShowsEverything) {
  const auto list = draw(sampleEntry(), WidgetFamily::systemLarge);
  expectRingAt(arcs(list)[0], 0, 42);
  expectRingAt(arcs(list)[2], 70, 42);
  expectAt(list, "Today", 144, 38);
  expectAt(list, "Yesterday", 243, 40.5);
  expectAt(list, "Ce mois", 144, 89);
  expectAt(list, "Performance · Yesterday", 0, 174.5);
  const char* titles[] = {"Page views", "Page RPM", "Impressions", "Clicks", "CPC", "Page CTR"};
  for (int i = 0; i < 6; ++i) expectAt(list, titles[i], 115.3 * (i % 3), i < 3 ? 213 : 277);
  expectAt(list, "4.51 k", 0, 228);
  EXPECT_EQ(style(find(list, "4.51 k")), "15 semibold rounded 1.00 1.00");
  EXPECT_EQ(style(find(list, "Performance · Yesterday")), "10 semibold default 1.00 0.80");
  EXPECT_EQ(style(find(list, "(+23 %)")), "10 medium default 0.29 1.00");
  EXPECT_EQ(style(find(list, "(-43 %)")), "10 medium default 0.23 1.00");
  for (const auto& item : items(list)) {
    if (item["kind"] != "divider") continue;
    EXPECT_NEAR(item["frame"][1].get<double>() - 16, 148, tolerance);
  }
  ASSERT_EQ(list.accessibility.size(), 14U);
  EXPECT_EQ(list.accessibility[8], "Page views, 4.51 k, up 23 %");
}

TEST_F(Drawing, captionsFollowTheLanguageButOne) {
  setLanguages("de");
  const auto german = draw(sampleEntry(), WidgetFamily::systemLarge);
  for (const char* text : {"Heute", "Seitenaufrufe", "Ce mois", "9,21\u00a0€", "389,85 €"})
    find(german, text);
  EXPECT_EQ(german.accessibility[8], "Seitenaufrufe, 4,51 k, plus 23 %");
  setLanguages("ar");
  const auto arabic = draw(sampleEntry(), WidgetFamily::systemLarge);
  expectRingAt(arcs(arabic)[0], 332 - 60, 42);
  EXPECT_EQ(arcs(arabic)[1]["from"], 0) << "rings do not mirror";
  const auto frame = find(arabic, "Ce mois")["frame"];
  EXPECT_NEAR(frame[0].get<double>() + frame[2].get<double>() - 16, 332 - 144, tolerance);
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
    EXPECT_EQ(style(items(list)[2]), "10 medium default 1.00 0.70");
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
    EXPECT_EQ(style(find(list, "—")), "16 semibold rounded 1.00 1.00");
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

/// How far two pictures are apart: the mean difference of their bytes, 0 to 255.
double difference(const std::string& file, const std::string& wantedFile) {
  const Picture picture(cairo_image_surface_create_from_png(file.c_str()));
  const Picture wanted(cairo_image_surface_create_from_png(wantedFile.c_str()));
  const auto size = static_cast<std::size_t>(cairo_image_surface_get_stride(wanted.get())) *
                    static_cast<std::size_t>(cairo_image_surface_get_height(wanted.get()));
  if (size == 0 ||
      cairo_image_surface_get_width(picture.get()) != cairo_image_surface_get_width(wanted.get()) ||
      cairo_image_surface_get_height(picture.get()) != cairo_image_surface_get_height(wanted.get()))
    return 255;
  const auto* a = cairo_image_surface_get_data(picture.get());
  const auto* b = cairo_image_surface_get_data(wanted.get());
  double sum = 0;
  for (std::size_t i = 0; i < size; ++i) sum += std::abs(int{a[i]} - int{b[i]});
  return sum / static_cast<double>(size);
}

TEST_F(Drawing, picturesLookAsTheyDid) {
  for (const auto& [family, name] : {std::pair(WidgetFamily::systemSmall, "small"),
                                     std::pair(WidgetFamily::systemMedium, "medium"),
                                     std::pair(WidgetFamily::systemLarge, "large")}) {
    const auto configuration = EarningsWidget{}.body();
    const auto entry = configuration.placeholder({});
    const auto file = (folder_ / name).string() + ".png";
    tests::writeFile(file, platform::picture(platform::drawWidget(entry.view, family, 2),
                                             platform::PictureFormat::png));
    EXPECT_LT(difference(file, std::string(PICTURES) + "/" + name + ".png"), 0.5) << name;
  }
}

TEST_F(Drawing, picturesAreTheSameEachTime) {
  using platform::PictureFormat;
  for (const auto format :
       {PictureFormat::png, PictureFormat::svg, PictureFormat::pdf, PictureFormat::json}) {
    const auto once = [format] {
      return platform::picture(draw(sampleEntry(), WidgetFamily::systemLarge, 1.5), format);
    };
    EXPECT_TRUE(once() == once());
  }
  for (const double scale : {0.01, 8.0})
    EXPECT_FALSE(
        platform::picture(draw(sampleEntry(), WidgetFamily::systemSmall, scale), PictureFormat::png)
            .empty());
}
