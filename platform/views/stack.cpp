#include <algorithm>
#include <cmath>

#include "platform/views/element.hpp"
#include "platform/views/sharing.hpp"

// Stacks and the spacers in them.

namespace platform {

namespace {

enum class Axis { horizontal, vertical };

double along(Axis axis, const Size& size) {
  return axis == Axis::horizontal ? size.width : size.height;
}

double across(Axis axis, const Size& size) {
  return axis == Axis::horizontal ? size.height : size.width;
}

Proposal proposal(Axis axis, std::optional<double> alongAxis, std::optional<double> acrossAxis) {
  return axis == Axis::horizontal ? Proposal{alongAxis, acrossAxis}
                                  : Proposal{acrossAxis, alongAxis};
}

class SpacerElement : public Element {
 public:
  explicit SpacerElement(double minimum) : minimum_(minimum) {}

  std::optional<double> spacerMinimum() const override { return minimum_; }

 protected:
  /// Its stack gives it a length along the axis alone.
  Size sizeFor(const Proposal& offer) const override {
    const auto length = [this](const std::optional<double>& room) {
      return std::max(minimum_, room.value_or(minimum_));
    };
    return {length(offer.width), length(offer.height)};
  }

 private:
  double minimum_;
};

class StackElement : public Element {
 public:
  StackElement(Axis axis, Alignment alignment, double spacing, std::vector<ElementPtr> children)
      : axis_(axis), alignment_(alignment), spacing_(spacing), children_(std::move(children)) {}

  Placed place(const Rect& frame) const override {
    Placed placed{this, frame, {}};
    const auto sizes = childSizes({frame.width, frame.height});
    double position = 0;
    for (std::size_t i = 0; i < children_.size(); ++i) {
      const double length = along(axis_, sizes[i]);
      const Rect lane = axis_ == Axis::horizontal
                            ? Rect{frame.x + position, frame.y, length, frame.height}
                            : Rect{frame.x, frame.y + position, frame.width, length};
      placed.children.push_back(children_[i]->place(aligned(sizes[i], lane, alignment_)));
      position += length + spacing_;
    }
    return placed;
  }

 protected:
  Size sizeFor(const Proposal& offer) const override {
    double length = spacings();
    double breadth = 0;
    const auto sizes = childSizes(offer);
    for (const auto& size : sizes) {
      length += along(axis_, size);
      breadth = std::max(breadth, across(axis_, size));
    }
    return axis_ == Axis::horizontal ? Size{length, breadth} : Size{breadth, length};
  }

 private:
  [[nodiscard]] double spacings() const {
    return children_.empty() ? 0 : spacing_ * static_cast<double>(children_.size() - 1);
  }

  /// Each child's size when the stack is offered that room. Spacers have no breadth.
  [[nodiscard]] std::vector<Size> childSizes(const Proposal& offer) const {
    const auto room = axis_ == Axis::horizontal ? offer.width : offer.height;
    const auto breadth = axis_ == Axis::horizontal ? offer.height : offer.width;
    const auto measured = [&](const Element& child, std::optional<double> length) {
      return child.measure(proposal(axis_, length, breadth));
    };
    std::vector<StackChild> lengths;
    for (const auto& child : children_) {
      const auto minimum = child->spacerMinimum();
      StackChild entry;
      entry.isSpacer = minimum.has_value();
      if (room) {
        entry.minimum = minimum.value_or(entry.isSpacer ? 0 : along(axis_, measured(*child, 0)));
        entry.maximum = entry.isSpacer ? unbounded : along(axis_, measured(*child, unbounded));
      }
      entry.lengthFor = [&, element = child.get()](double length) {
        return along(axis_, measured(*element, length));
      };
      lengths.push_back(std::move(entry));
    }
    const auto shares = room ? shareOut(*room - spacings(), lengths) : std::vector<double>();
    std::vector<Size> sizes;
    for (std::size_t i = 0; i < children_.size(); ++i) {
      // What a child takes may be less than it was offered; asked for that, it stays the same.
      const auto length = room ? std::optional(shares[i]) : std::nullopt;
      Size size = measured(*children_[i], length);
      if (const auto minimum = children_[i]->spacerMinimum()) {
        const double taken = length.value_or(*minimum);
        size = axis_ == Axis::horizontal ? Size{taken, 0} : Size{0, taken};
      }
      sizes.push_back(size);
    }
    return sizes;
  }

  Axis axis_;
  Alignment alignment_;
  double spacing_;
  std::vector<ElementPtr> children_;
};

class SpacerNode : public Node {
 public:
  explicit SpacerNode(double minimum) : minimum_(minimum) {}
  ElementPtr resolve(const Inherited&) const override {
    return std::make_unique<SpacerElement>(minimum_);
  }

 private:
  double minimum_;
};

class StackNode : public Node {
 public:
  StackNode(Axis axis, Alignment alignment, double spacing, Views children)
      : axis_(axis), alignment_(alignment), spacing_(spacing), children_(std::move(children)) {}

  ElementPtr resolve(const Inherited& inherited) const override {
    std::vector<ElementPtr> elements;
    elements.reserve(children_.size());
    for (const auto& child : children_) elements.push_back(child.node().resolve(inherited));
    return std::make_unique<StackElement>(axis_, alignment_, spacing_, std::move(elements));
  }

 private:
  Axis axis_;
  Alignment alignment_;
  double spacing_;
  Views children_;
};

}  // namespace

View vStack(VerticalStack style, Views children) {
  const Alignment alignment{style.alignment, VerticalAlignment::top};
  return View(
      std::make_shared<StackNode>(Axis::vertical, alignment, style.spacing, std::move(children)));
}

View hStack(HorizontalStack style, Views children) {
  const Alignment alignment{HorizontalAlignment::leading, style.alignment};
  return View(
      std::make_shared<StackNode>(Axis::horizontal, alignment, style.spacing, std::move(children)));
}

View spacer(double minimum) { return View(std::make_shared<SpacerNode>(minimum)); }

View label(View title, Symbol image) {
  return hStack({.spacing = 4}, {symbol(image), std::move(title)});
}

}  // namespace platform
