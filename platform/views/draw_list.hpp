#pragma once

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "platform/foundation/json.hpp"
#include "platform/views/geometry.hpp"
#include "platform/views/style.hpp"
#include "platform/views/typesetter.hpp"
#include "platform/views/views.hpp"

namespace platform {

struct TextItem {
  std::string text;  ///< whole, before cutting
  Font font;
  TextPlacement placement;
  std::shared_ptr<const ShapedText> shaped;
};

struct SymbolItem {
  Symbol symbol = Symbol::hexagonGrid;
};

/// Part of a circle's outline, in turns clockwise from twelve o'clock; the circle touches the
/// frame's edges.
struct ArcItem {
  double from = 0;
  double to = 1;
  double width = 1;
  LineCap cap = LineCap::butt;
};

struct DividerItem {};

/// An area over the whole frame.
struct RectangleItem {
  RectangleStyle style;
};

/// A line across the frame, as thick as that is high.
struct RuleItem {
  double dash = 0;
};

struct GradientItem {
  LinearGradient colors;
};

/// One thing to draw. Frames are in points from the widget's top left corner.
struct DrawItem {
  Rect frame;
  Color color;
  std::variant<TextItem, SymbolItem, ArcItem, DividerItem, GradientItem, RectangleItem, RuleItem>
      content;
};

/// Everything a widget draws, back to front, and everything it says.
struct DrawList {
  std::string family;
  double scale = 1;  ///< device pixels per point
  Size size;
  Rect content;
  double cornerRadius = 0;
  std::vector<DrawItem> items;
  /// One phrase for each element, in reading order.
  std::vector<std::string> accessibility;
};

/// The list without its phrases, as an object for files and tests.
Json jsonForm(const DrawList& list);

}  // namespace platform
