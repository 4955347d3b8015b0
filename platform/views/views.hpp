#pragma once

#include <any>
#include <concepts>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <typeindex>
#include <vector>

#include "platform/views/geometry.hpp"
#include "platform/views/style.hpp"

namespace platform {

// The catalogue of views: factories, and modifiers that return a changed copy. A view is an
// immutable description; drawing it is what layout.hpp is for.

class Node;  // what stands behind a view; hidden in the units of this folder

/// What surrounds a view: values by their type, set by the host.
class ViewEnvironment {
 public:
  template <class Value>
  void set(Value value) {
    values_[typeid(Value)] = std::move(value);
  }
  template <class Value>
  [[nodiscard]] Value get(Value fallback) const {
    const auto found = values_.find(typeid(Value));
    return found == values_.end() ? fallback : std::any_cast<Value>(found->second);
  }

 private:
  std::map<std::type_index, std::any> values_;
};

inline constexpr double unbounded = std::numeric_limits<double>::infinity();

/// A fixed size, or one that claims all the room offered (`maxWidth = unbounded`), with the
/// content aligned inside. Lengths that are absent are the content's own.
struct Frame {
  std::optional<double> width;
  std::optional<double> height;
  std::optional<double> maxWidth;
  std::optional<double> maxHeight;
  Alignment alignment = Alignment::center;
};

class View;

/// A record with a body made of other views; the body may depend on the environment.
template <class T>
concept Component = requires(const T& component) {
  { component.body() } -> std::convertible_to<View>;
} || requires(const T& component, const ViewEnvironment& environment) {
  { component.body(environment) } -> std::convertible_to<View>;
};

class View {
 public:
  explicit View(std::shared_ptr<const Node> node) : node_(std::move(node)) {}

  template <class T>
    requires(!std::same_as<T, View> && Component<T>)
  View(T component)  // NOLINT: a component is a view
      : View(fromBody([component = std::move(component)](const ViewEnvironment& environment) {
          if constexpr (requires { component.body(environment); }) {
            return View(component.body(environment));
          } else {
            static_cast<void>(environment);
            return View(component.body());
          }
        })) {}

  // These apply to the view and everything in it, unless something inside says otherwise.
  [[nodiscard]] View font(Font font) const;
  [[nodiscard]] View foregroundColor(Color color) const;
  /// At most that many lines; text that does not fit is cut at its end with an ellipsis.
  [[nodiscard]] View lineLimit(int lines) const;
  /// Text may be drawn at any size down to that factor before it is cut.
  [[nodiscard]] View minimumScaleFactor(double factor) const;
  /// Where the lines of a wrapped text stand.
  [[nodiscard]] View multilineTextAlignment(HorizontalAlignment alignment) const;

  [[nodiscard]] View frame(Frame frame) const;
  /// Empty space on all four edges.
  [[nodiscard]] View padding(double inset) const;
  /// The view's shapes once more, on top, in that colour.
  [[nodiscard]] View overlay(Color color) const;
  /// Makes the view one element for people who do not look, who hear this phrase.
  [[nodiscard]] View accessibilityLabel(std::string phrase) const;
  /// Keeps the view from people who do not look: what it shows is said elsewhere.
  [[nodiscard]] View accessibilityHidden() const;

  [[nodiscard]] const Node& node() const { return *node_; }

 private:
  static View fromBody(std::function<View(const ViewEnvironment&)> body);

  std::shared_ptr<const Node> node_;
};

using Views = std::vector<View>;

struct VerticalStack {
  HorizontalAlignment alignment = HorizontalAlignment::center;
  double spacing = 0;
};

struct HorizontalStack {
  VerticalAlignment alignment = VerticalAlignment::center;
  double spacing = 0;
};

/// Children from top to bottom.
View vStack(VerticalStack style, Views children);
/// Children from the leading to the trailing edge.
View hStack(HorizontalStack style, Views children);
/// Children on top of each other, the first at the back, centred.
View layers(Views children);

/// Takes up free room along its stack's axis, but never less than the minimum.
View spacer(double minimum = 8);
/// A hairline across a vertical stack. It has no colour of its own: overlay one.
View divider();

struct GridStyle {
  int columns = 1;
  double columnSpacing = 0;
  double rowSpacing = 0;
  HorizontalAlignment cellAlignment = HorizontalAlignment::center;
};

/// Cells row by row in columns that share the width equally.
View grid(GridStyle style, Views cells);

/// A text exactly as given.
View text(std::string content);
/// The text for a key in the program's string table.
View localizedText(const char* key);

/// The symbols, drawn in the size of the font and the colour in force.
enum class Symbol { hexagonGrid, triangleUp, triangleDown };
View symbol(Symbol symbol);
/// A symbol and a text beside it.
View label(View title, Symbol symbol);

/// A stroked circle that touches the edges of the room it is given.
struct CircleStyle {
  /// The part of the outline that is drawn, as fractions of it. The outline starts at three
  /// o'clock and runs clockwise. Less than none of it, or what is no number, draws nothing; more
  /// than all of it draws all.
  double trimFrom = 0;
  double trimTo = 1;
  double lineWidth = 1;
  LineCap lineCap = LineCap::butt;
  double rotation = 0;  ///< clockwise, in turns
};
View circle(CircleStyle style);

/// How an area is filled. Areas that differ in meaning differ in this, never in colour alone.
enum class Fill { solid, hatched, outlined };

/// A rectangle over all the room it is given.
struct RectangleStyle {
  Fill fill = Fill::solid;
  double topRadius = 0;     ///< of both upper corners
  double bottomRadius = 0;  ///< of both lower corners
  double lineWidth = 1;     ///< of the outline, inside, and of the hatching
};
View rectangle(RectangleStyle style);

/// A line from the leading to the trailing edge.
struct RuleStyle {
  double lineWidth = 1;
  double dash = 0;  ///< length of the dashes and half of that of the gaps; 0 leaves the line whole
};
View rule(RuleStyle style);

/// A view in a part of a plane, as fractions of the plane's width and height from its leading and
/// upper edges; a part without a height or width is a point to stand at.
struct Pinned {
  Rect part;
  Alignment alignment;
  View view;
};
/// Views in their places, the first at the back. Takes all the room it is offered.
View plane(std::vector<Pinned> children);

/// Top to bottom, behind a widget's content.
struct LinearGradient {
  Color top;
  Color bottom;
};

}  // namespace platform
