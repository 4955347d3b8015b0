#include <algorithm>
#include <cmath>

#include "platform/views/element.hpp"

// Planes, and the rectangles and rules that stand on them.

namespace platform {

namespace {

constexpr double idealLength = 100;  // where nothing is offered

double rounded(double length, double scale) { return std::round(length * scale) / scale; }

/// Equal lengths stay equal, and nothing vanishes between two pixels.
double wholePixels(double length, double scale) {
  return std::max(rounded(length, scale), 1 / scale);
}

class RectangleElement : public Element {
 public:
  RectangleElement(RectangleStyle style, const Inherited& inherited)
      : style_(style), color_(inherited.color), scale_(inherited.deviceScale) {}

  /// Both horizontal edges stand on pixels, so that what grows from one line begins there.
  void emit(const Placed& placed, DrawList& list) const override {
    auto frame = placed.frame;
    if (!(frame.height > 0)) return;
    frame.width = wholePixels(frame.width, scale_);
    const double top = rounded(frame.y, scale_);
    const double bottom = rounded(frame.y + frame.height, scale_);
    frame.y = std::min(top, bottom - 1 / scale_);
    frame.height = bottom - frame.y;
    list.items.emplace_back(frame, color_, RectangleItem{style_});
  }

 protected:
  Size sizeFor(const Proposal& offer) const override {
    return {offer.width.value_or(idealLength), offer.height.value_or(idealLength)};
  }

 private:
  RectangleStyle style_;
  Color color_;
  double scale_;
};

class RuleElement : public Element {
 public:
  RuleElement(RuleStyle style, const Inherited& inherited)
      : dash_(style.dash),
        height_(wholePixels(style.lineWidth, inherited.deviceScale)),
        color_(inherited.color) {}

  void emit(const Placed& placed, DrawList& list) const override {
    list.items.emplace_back(placed.frame, color_, RuleItem{dash_});
  }

 protected:
  Size sizeFor(const Proposal& offer) const override {
    return {offer.width.value_or(idealLength), height_};
  }

 private:
  double dash_;
  double height_;
  Color color_;
};

struct PinnedElement {
  Rect part;
  Alignment alignment;
  ElementPtr element;
};

class PlaneElement : public Element {
 public:
  explicit PlaneElement(std::vector<PinnedElement> children) : children_(std::move(children)) {}

  Placed place(const Rect& frame) const override {
    Placed placed{this, frame, {}};
    for (const auto& [part, alignment, element] : children_) {
      const Rect room{frame.x + part.x * frame.width, frame.y + part.y * frame.height,
                      part.width * frame.width, part.height * frame.height};
      const auto size = element->measure({room.width, room.height});
      placed.children.push_back(element->place(aligned(size, room, alignment)));
    }
    return placed;
  }

 protected:
  Size sizeFor(const Proposal& offer) const override {
    return {offer.width.value_or(idealLength), offer.height.value_or(idealLength)};
  }

 private:
  std::vector<PinnedElement> children_;
};

/// Makes an element of a style and what is inherited.
template <class StyledElement, class Style>
class StyledNode : public Node {
 public:
  explicit StyledNode(Style style) : style_(style) {}
  ElementPtr resolve(const Inherited& inherited) const override {
    return std::make_unique<StyledElement>(style_, inherited);
  }

 private:
  Style style_;
};

class PlaneNode : public Node {
 public:
  explicit PlaneNode(std::vector<Pinned> children) : children_(std::move(children)) {}

  ElementPtr resolve(const Inherited& inherited) const override {
    std::vector<PinnedElement> elements;
    elements.reserve(children_.size());
    for (const auto& [part, alignment, view] : children_)
      elements.push_back({part, alignment, view.node().resolve(inherited)});
    return std::make_unique<PlaneElement>(std::move(elements));
  }

 private:
  std::vector<Pinned> children_;
};

}  // namespace

View rectangle(RectangleStyle style) {
  return View(std::make_shared<StyledNode<RectangleElement, RectangleStyle>>(style));
}

View rule(RuleStyle style) {
  return View(std::make_shared<StyledNode<RuleElement, RuleStyle>>(style));
}

View plane(std::vector<Pinned> children) {
  return View(std::make_shared<PlaneNode>(std::move(children)));
}

}  // namespace platform
