#include "platform/views/layout.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <tuple>

#include "platform/views/sharing.hpp"

using namespace platform;
using testing::ElementsAre;

namespace {

/// Every character is half as wide as the font is high; lines are as high as the font.
class FakeText : public ShapedText {
 public:
  FakeText(std::size_t length, double size) : length_(length), size_(size) {}
  double width() const override { return static_cast<double>(length_) * size_ / 2; }
  double lineHeight() const override { return size_; }
  Wrapped wrapped(double room) const override {
    const double perLine = std::max(1.0, std::floor(room / (size_ / 2)));
    return {perLine * size_ / 2,
            static_cast<int>(std::ceil(static_cast<double>(length_) / perLine))};
  }
  void paint(cairo_t*, const TextPlacement&) const override {}

 private:
  std::size_t length_;
  double size_;
};

class FakeTypesetter : public Typesetter {
 public:
  std::shared_ptr<const ShapedText> shape(const std::string& text,
                                          const Font& font) const override {
    return std::make_shared<FakeText>(text.size(), font.size);
  }
};

DrawList draw(const View& view, Size size = {100, 100}, bool rightToLeft = false) {
  Canvas canvas;
  canvas.size = size;
  canvas.rightToLeft = rightToLeft;
  auto list = layOut(view, canvas, FakeTypesetter());
  list.items.erase(list.items.begin());  // the background
  return list;
}

std::vector<Rect> frames(const DrawList& list) {
  std::vector<Rect> result;
  for (const auto& item : list.items) result.push_back(item.frame);
  return result;
}

/// A text of that many points at 10 points a character pair.
View block(int width) {
  return text(std::string(static_cast<std::size_t>(width / 5), 'x'))
      .font(Font::system(10))
      .lineLimit(1);
}

View filled(View view) {
  return hStack({}, {std::move(view)})
      .frame({.maxWidth = unbounded, .maxHeight = unbounded, .alignment = Alignment::topLeading});
}

StackChild fixed(double length) {
  return {length, length, false, [=](double) { return length; }};
}

StackChild shrinkable(double least, double most) {
  return {least, most, false, [=](double offer) { return std::clamp(offer, least, most); }};
}

StackChild spacerOf(double minimum) {
  return {minimum, unbounded, true, [=](double offer) { return std::max(minimum, offer); }};
}

}  // namespace

TEST(ShareOut, servesTheLeastFlexibleFirst) {
  EXPECT_THAT(shareOut(100, {shrinkable(0, 80), fixed(30), shrinkable(0, 20)}),
              ElementsAre(50, 30, 20));
  EXPECT_THAT(shareOut(100, {shrinkable(0, unbounded), shrinkable(0, unbounded)}),
              ElementsAre(50, 50));
  EXPECT_THAT(shareOut(20, {fixed(30), shrinkable(0, 80)}), ElementsAre(30, 0));
  EXPECT_TRUE(shareOut(10, {}).empty());
}

TEST(ShareOut, servesSpacersLast) {
  EXPECT_THAT(shareOut(332, {fixed(134), spacerOf(8), shrinkable(0, unbounded)}),
              ElementsAre(134, 8, 190));
  EXPECT_THAT(shareOut(100, {spacerOf(10), fixed(40), spacerOf(0)}), ElementsAre(30, 40, 30));
  EXPECT_THAT(shareOut(60, {spacerOf(20), fixed(35), spacerOf(0)}), ElementsAre(20, 35, 5));
  EXPECT_THAT(shareOut(30, {spacerOf(8), fixed(40)}), ElementsAre(8, 40));
}

TEST(Stacks, placeTheirChildren) {
  const auto column =
      vStack({.alignment = HorizontalAlignment::leading, .spacing = 4}, {block(20), block(40)});
  EXPECT_THAT(frames(draw(filled(column))), ElementsAre(Rect{0, 0, 20, 10}, Rect{0, 14, 40, 10}));
  const auto centred = vStack({.spacing = 4}, {block(20), block(40)});
  EXPECT_THAT(frames(draw(filled(centred))), ElementsAre(Rect{10, 0, 20, 10}, Rect{0, 14, 40, 10}));
  const auto row =
      hStack({.spacing = 6}, {block(20), spacer(), block(20)}).frame({.maxWidth = unbounded});
  EXPECT_THAT(frames(draw(row)), ElementsAre(Rect{0, 45, 20, 10}, Rect{80, 45, 20, 10}));
}

TEST(Stacks, mirrorFromRightToLeft) {
  const auto row = filled(hStack({.spacing = 5}, {block(20), block(10)}));
  EXPECT_THAT(frames(draw(row, {100, 100}, true)),
              ElementsAre(Rect{80, 0, 20, 10}, Rect{65, 0, 10, 10}));
  const auto ring = circle({.trimTo = 0.25, .rotation = -0.25}).frame({.width = 20, .height = 20});
  const auto list = draw(filled(ring), {100, 100}, true);
  EXPECT_EQ(list.items[0].frame.x, 80);
  EXPECT_EQ(std::get<ArcItem>(list.items[0].content).from, 0);
}

TEST(Grids, divideTheWidthEqually) {
  const auto cells = grid({.columns = 2,
                           .columnSpacing = 10,
                           .rowSpacing = 5,
                           .cellAlignment = HorizontalAlignment::leading},
                          {block(20), vStack({}, {block(5), block(5)}), block(30)});
  EXPECT_THAT(frames(draw(filled(cells))), ElementsAre(Rect{0, 5, 20, 10}, Rect{55, 0, 5, 10},
                                                       Rect{55, 10, 5, 10}, Rect{0, 25, 30, 10}));
}

TEST(Frames, claimTheRoomOfferedOrWhatTheContentNeeds) {
  const auto claimed = block(20).frame({.maxWidth = unbounded, .alignment = Alignment::leading});
  EXPECT_THAT(frames(draw(filled(claimed))), ElementsAre(Rect{0, 0, 20, 10}));
  const auto square = block(20).frame({.width = 50, .height = 30});
  EXPECT_THAT(frames(draw(filled(square))), ElementsAre(Rect{15, 10, 20, 10}));
  EXPECT_THAT(frames(draw(filled(block(20).padding(8)))), ElementsAre(Rect{8, 8, 20, 10}));
}

TEST(Texts, shrinkThenAreCut) {
  const auto drawn = [](int own, double room, double factor) {
    const auto list = draw(filled(block(own).minimumScaleFactor(factor)), {room, 100});
    const auto& item = list.items.at(0);
    return std::tuple(std::get<TextItem>(item.content).placement.scale,
                      std::get<TextItem>(item.content).placement.truncated, item.frame.width);
  };
  EXPECT_EQ(drawn(100, 100, 0.5), std::tuple(1, false, 100));
  EXPECT_EQ(drawn(100, 80, 0.5), std::tuple(0.8, false, 80));
  EXPECT_EQ(drawn(100, 50, 0.5), std::tuple(0.5, false, 50));
  EXPECT_EQ(drawn(100, 40, 0.5), std::tuple(0.5, true, 40));
  EXPECT_EQ(drawn(100, 80, 1), std::tuple(1, true, 80));
}

TEST(Shapes, drawOnlyWhatCanBeSeen) {
  const auto arcs = [](CircleStyle style) {
    return draw(circle(style).frame({.width = 20, .height = 20}), {20, 20}).items;
  };
  EXPECT_TRUE(arcs({.trimTo = 0, .lineCap = LineCap::round}).empty());
  EXPECT_TRUE(draw(divider()).items.empty()) << "a divider has no colour of its own";
  const auto full = std::get<ArcItem>(arcs({.rotation = -0.25})[0].content);
  EXPECT_EQ(full.to - full.from, 1);
  const auto line = draw(vStack({}, {divider().overlay(Color::white.opacity(0.15))}));
  ASSERT_EQ(line.items.size(), 1U);
  EXPECT_EQ(line.items[0].frame, (Rect{0, 50, 100, 0.5}));
  EXPECT_EQ(line.items[0].color, (Color{1, 1, 1, 0.15}));
}

TEST(Accessibility, speaksOnePhraseForEachElement) {
  const auto list =
      draw(vStack({}, {text("a"), hStack({}, {text("b"), text("c")}).accessibilityLabel("b and c"),
                       symbol(Symbol::hexagonGrid), text("d")}));
  EXPECT_THAT(list.accessibility, ElementsAre("a", "b and c", "d"));
}

TEST(Layout, planesPinTheirPartsOnWholePixels) {
  const auto bar = [](double x, double top, double bottom) {
    return Pinned{{x, top, 0.084, bottom - top}, Alignment::center, rectangle({})};
  };
  const View marks = plane({bar(0.1, 0.256, 0.8),
                            bar(0.184, 0.8, 0.8),
                            bar(0.2, 0.799, 0.8),
                            {{0.5, 0.4, 0.3, 0}, Alignment::trailing, block(20)},
                            {{0, 0.5, 1, 0}, Alignment::leading, rule({.dash = 4})}});
  EXPECT_THAT(frames(draw(marks)), ElementsAre(Rect{10, 26, 8, 54}, Rect{20, 79, 8, 1},
                                               Rect{60, 35, 20, 10}, Rect{0, 50, 100, 1}))
      << "equally wide, on one line, none for nothing";
  EXPECT_EQ(frames(draw(marks, {100, 100}, true))[0], (Rect{82, 26, 8, 54}));
  EXPECT_TRUE(draw(block(20).accessibilityHidden()).accessibility.empty());
}
