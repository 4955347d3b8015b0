#include "companion/history/chart.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "companion/history/chart_axis.hpp"
#include "companion/history/chart_bars.hpp"
#include "companion/history/chart_geometry.hpp"
#include "companion/history/chart_table.hpp"
#include "platform/views/painter.hpp"
#include "tests/support/environment.hpp"

using namespace companion;
using platform::DrawList;
using platform::Json;
using std::chrono::days;
using testing::Contains;
using testing::ElementsAre;

namespace {

constexpr Day today = std::chrono::year{2026} / 11 / 23;  // a Monday

/// Days up to today; each earns what is asked of its date.
template <class Earnings>
History historyOf(int count, Earnings earnings, const std::string& currency = "EUR") {
  History history{"accounts/pub-1", currency, {}, {}};
  for (auto date = today - days{count - 1}; date <= today; date += days{1}) {
    history.days.push_back({date, {}});
    history.days.back().figures.earnings = earnings(date);
  }
  return history;
}

/// 8 a day, 5 a year earlier, and 4 so far today.
double usual(Day date) { return date == today ? 4 : date > today - days{365} ? 8 : 5; }

ChartModel modelOf(const History& history, ChartPeriod period = fiveWeeks) {
  return chartModel(history, {10, 300}, period);
}

DrawList drawn(const ChartModel& model, ChartStyle style = {}) {
  static const auto typesetter = platform::systemTypesetter();
  style.height = idealChartHeight(model, style, *typesetter);
  return layOutChart(model, style, *typesetter);
}

std::vector<Json> items(const DrawList& list, const std::string& kind,
                        const std::string& fill = "") {
  std::vector<Json> found;
  const auto all = jsonForm(list)["items"];
  for (const auto& item : all) {
    if (item["kind"] == kind && (fill.empty() || item["fill"] == fill)) found.push_back(item);
  }
  return found;
}

std::vector<std::string> texts(const DrawList& list) {
  std::vector<std::string> found;
  for (const auto& item : items(list, "text")) found.push_back(item["text"]);
  return found;
}

using Chart = tests::Environment;

}  // namespace

TEST(ChartAxisTest, hasRoundLinesAroundZero) {
  const auto lines = [](double least, double most) { return chartAxis(least, most).ticks(); };
  EXPECT_THAT(lines(0, 19.7), ElementsAre(0, 5, 10, 15, 20));
  EXPECT_THAT(lines(3, 0.4), testing::Each(testing::Ge(0)));
  EXPECT_THAT(lines(-8, 19.7), ElementsAre(-10, 0, 10, 20));
  EXPECT_THAT(lines(-5, -1), ElementsAre(-6, -4, -2, 0));
  EXPECT_EQ(lines(0, 0).size(), 2U);
  for (const double amount : {1e-300, 1e-9, 1e12, 1e300, HUGE_VAL})
    EXPECT_LE(lines(0, amount).size(), 6U) << amount;
  EXPECT_EQ(chartAxis(0, 20).position(5), 0.75);
  EXPECT_EQ(chartAxis(0, 20).position(-HUGE_VAL), 1);
}

TEST_F(Chart, barsAreDaysBesideThoseOfTheYearBefore) {
  const auto model = modelOf(historyOf(mostDays, usual));
  ASSERT_EQ(model.bars.size(), 35U);
  EXPECT_THAT(model.title, testing::MatchesRegex("Oct 20.*Nov 23, 2026"));
  EXPECT_EQ(model.total, "€276.00");
  EXPECT_EQ(model.mean, "€8.00 a day on average");
  ASSERT_EQ(model.figures.size(), 2U);
  EXPECT_EQ(model.figures[0].value, "€175.00");
  EXPECT_EQ(model.figures[1].title, "November, estimated");
  EXPECT_EQ(model.figures[1].value, "€240.00");
  EXPECT_EQ(model.bars[33].phrase, "Sun, Nov 22, €8.00 of €10, €5.00 a year before");
  EXPECT_EQ(model.bars[34].phrase, "Mon, Nov 23, €4.00 of €10, €5.00 a year before, not over yet");
  EXPECT_THAT(chartTable(model).rows[1], ElementsAre("Sun, Nov 22", "€8.00", "€10", "€5.00"));
  EXPECT_EQ(yearBefore(std::chrono::year{2028} / 2 / 29), Day{std::chrono::year{2027} / 2 / 28});

  const auto alone = modelOf(historyOf(10, usual));
  EXPECT_EQ(alone.bars.size(), 10U) << "days that are not known have no bar";
  EXPECT_FALSE(alone.bars[0].yearBefore);
  EXPECT_TRUE(alone.figures.empty());
  const auto aimless = chartModel(historyOf(10, usual), {0, NAN}, fiveWeeks);
  EXPECT_EQ(aimless.bars[0].phrase, "Sat, Nov 14, €8.00");
  EXPECT_TRUE(modelOf({}).bars.empty());
}

TEST_F(Chart, barsAreMonthsThatAreWhole) {
  const auto model = modelOf(historyOf(mostDays, usual), thirteenMonths);
  ASSERT_EQ(model.bars.size(), 13U);
  EXPECT_EQ(model.bars[0].name, "November 2025");
  EXPECT_FALSE(model.bars[0].yearBefore) << "23 of its days are not known";
  EXPECT_EQ(*model.bars[1].yearBefore, 31 * 5);
  EXPECT_EQ(model.bars[11].amount, "€248.00");
  EXPECT_TRUE(model.bars[11].isOver);
  EXPECT_FALSE(model.bars[12].isOver);
  EXPECT_EQ(model.bars[12].earnings, 22 * 8 + 4);
  EXPECT_EQ(*model.bars[12].yearBefore, 23 * 5) << "the same days: 1 to 23 November";
  EXPECT_EQ(modelOf(historyOf(40, usual), thirteenMonths).bars.size(), 1U);
  EXPECT_EQ(modelOf(historyOf(10, usual), thirteenMonths).bars.size(), 1U);
}

TEST_F(Chart, aNewAccountHasNoYearBefore) {
  const auto model =
      modelOf(historyOf(mostDays, [](Day date) { return date > today - days{5} ? 6.0 : 0; }));
  EXPECT_EQ(model.mean, "€6.00 a day on average");
  EXPECT_TRUE(model.figures.empty());
  EXPECT_EQ(items(drawn(model), "rectangle", "hatched").size(), 2U) << "one is in the legend";
  const auto nothing = modelOf(historyOf(mostDays, [](Day) { return 0.0; }));
  EXPECT_EQ(nothing.mean, "");
  EXPECT_EQ(nothing.total, "€0.00");
  EXPECT_THAT(texts(drawn(nothing)), Contains("€10")) << "the goal's height";
  EXPECT_THAT(texts(drawn(modelOf({}))), ElementsAre("There are no days yet."));
}

TEST_F(Chart, marksDifferInShape) {
  const auto list = drawn(modelOf(historyOf(mostDays, usual)));
  constexpr std::size_t legend = 1;
  EXPECT_EQ(items(list, "rectangle", "hatched").size(), 1 + legend);
  EXPECT_EQ(items(list, "rectangle", "solid").size(), 34 + 35 + 2 * legend);
  EXPECT_TRUE(items(list, "rectangle", "outlined").empty());
  std::size_t dashed = 0;
  for (const auto& line : items(list, "rule")) dashed += line["dash"] > 0 ? 1U : 0U;
  EXPECT_EQ(dashed, 1 + legend);
  EXPECT_THAT(list.accessibility, testing::SizeIs(3 + 35 + 2 + 1));
  const auto far = drawn(chartModel(historyOf(35, usual), {500, 1}, fiveWeeks));
  EXPECT_THAT(texts(far), Contains("Goal, €500 (off the chart)"));
}

TEST_F(Chart, barsStandOnZero) {
  const auto model =
      modelOf(historyOf(35, [](Day date) { return date == today - days{1} ? -5.0 : 10; }));
  const auto bars = items(drawn(model), "rectangle", "solid");
  const auto& up = bars[0]["frame"];
  const auto& down = bars[33]["frame"];
  EXPECT_EQ(up[1].get<double>() + up[3].get<double>(), down[1].get<double>());
  EXPECT_NEAR(up[3].get<double>(), 2 * down[3].get<double>(), 2);
  EXPECT_EQ(bars[0]["radii"][1], 0);
  EXPECT_EQ(bars[33]["radii"][0], 0);
  EXPECT_EQ(up[2], down[2]) << "equally wide";
}

TEST_F(Chart, oneBarCanBePointedAt) {
  const auto model = modelOf(historyOf(mostDays, usual));
  ChartStyle style{.width = 360, .highlighted = 34};
  EXPECT_THAT(texts(drawn(model, style)),
              testing::IsSupersetOf(
                  {"Mon, Nov 23 · not over yet", "€4.00", "of €10 · €5.00 a year before"}));
  EXPECT_EQ(drawn(model, style).size.height, drawn(model, {.width = 360}).size.height);
  const auto columns = chartColumns(model, style);
  EXPECT_EQ(barAt(model, style, columns.left + columns.slot * 7.5), 7U);
  EXPECT_EQ(barAt(model, style, columns.right - 0.1), 34U);
  for (const double beside : {columns.left - 1, columns.right + 1, -5.0, 1e9})
    EXPECT_FALSE(barAt(model, style, beside)) << beside;
  style.rightToLeft = true;
  EXPECT_EQ(barAt(model, style, 360 - columns.left - 0.1), 0U);
  const auto band = items(drawn(model, style), "rectangle", "outlined");
  ASSERT_EQ(band.size(), 1U);
  const double middle = band[0]["frame"][0].get<double>() + band[0]["frame"][2].get<double>() / 2;
  EXPECT_EQ(barAt(model, style, middle), 34U) << "what is drawn is what is hit";
  EXPECT_FALSE(barAt(modelOf({}), style, 100));
  style.highlighted = 99;
  EXPECT_THAT(texts(drawn(model, style)), Contains(model.total));
}

TEST_F(Chart, staysInsideAtEverySize) {
  for (const char* language : {"en", "de", "fr", "ar", "ja"}) {
    setLanguages(language);
    for (const auto period : {fiveWeeks, thirteenMonths}) {
      const auto model = modelOf(historyOf(mostDays, usual, "USD"), period);
      for (const double scale : {1.0, 1.5, 2.0}) {
        const ChartStyle style{.width = 360, .textScale = scale};
        const auto list = drawn(model, style);
        for (const auto& item : list.items) {
          const auto& [x, y, width, height] = item.frame;
          EXPECT_TRUE(x >= 0 && y >= 0 && x + width <= 360 && y + height <= list.size.height)
              << language << scale << " " << x << " " << y << " " << width << " " << height;
        }
        for (const auto& text : items(list, "text")) {
          EXPECT_FALSE(text["truncated"]) << text;
          EXPECT_GE(text["size"], 10) << text;
        }
      }
    }
  }
  const auto model = modelOf(historyOf(40, usual));
  for (const double width : {0.0, 1.0, 40.0}) drawn(model, {.width = width});
  const auto huge = modelOf(historyOf(mostDays, [](Day) { return 1e308; }));
  EXPECT_TRUE(platform::paintPdf(drawn(huge, {.dark = true})).starts_with("%PDF"));
}
