#include <algorithm>

#include "platform/views/element.hpp"

// Modifiers, layers and components.

namespace platform {

namespace {

class FrameElement : public Element {
 public:
  FrameElement(Frame frame, ElementPtr child) : frame_(frame), child_(std::move(child)) {}

  Placed place(const Rect& frame) const override {
    const auto size = child_->measure({frame.width, frame.height});
    return {this, frame, {child_->place(aligned(size, frame, frame_.alignment))}};
  }

 protected:
  Size sizeFor(const Proposal& offer) const override {
    const Proposal inner{bounded(frame_.width, frame_.maxWidth, offer.width),
                         bounded(frame_.height, frame_.maxHeight, offer.height)};
    const auto content = child_->measure(inner);
    return {length(frame_.width, frame_.maxWidth, offer.width, content.width),
            length(frame_.height, frame_.maxHeight, offer.height, content.height)};
  }

 private:
  using Length = std::optional<double>;

  /// What the content is offered.
  static Length bounded(const Length& fixed, const Length& maximum, const Length& offer) {
    if (fixed) return fixed;
    if (maximum && offer) return std::min(*maximum, *offer);
    return offer;
  }

  static double length(const Length& fixed, const Length& maximum, const Length& offer,
                       double content) {
    if (fixed) return *fixed;
    if (maximum && offer) return std::max(content, std::min(*maximum, *offer));
    return content;
  }

  Frame frame_;
  ElementPtr child_;
};

class PaddingElement : public Element {
 public:
  PaddingElement(double inset, ElementPtr child) : inset_(inset), child_(std::move(child)) {}

  Placed place(const Rect& frame) const override {
    const Rect inner{frame.x + inset_, frame.y + inset_, std::max(0.0, frame.width - 2 * inset_),
                     std::max(0.0, frame.height - 2 * inset_)};
    return {this, frame, {child_->place(inner)}};
  }

 protected:
  Size sizeFor(const Proposal& offer) const override {
    const auto less = [this](const std::optional<double>& room) {
      return room ? std::optional(std::max(0.0, *room - 2 * inset_)) : std::nullopt;
    };
    const auto size = child_->measure({less(offer.width), less(offer.height)});
    return {size.width + 2 * inset_, size.height + 2 * inset_};
  }

 private:
  double inset_;
  ElementPtr child_;
};

class LayersElement : public Element {
 public:
  explicit LayersElement(std::vector<ElementPtr> children) : children_(std::move(children)) {}

  Placed place(const Rect& frame) const override {
    Placed placed{this, frame, {}};
    for (const auto& child : children_) {
      const auto size = child->measure({frame.width, frame.height});
      placed.children.push_back(child->place(aligned(size, frame, Alignment::center)));
    }
    return placed;
  }

 protected:
  Size sizeFor(const Proposal& offer) const override {
    Size size;
    for (const auto& child : children_) {
      const auto own = child->measure(offer);
      size = {std::max(size.width, own.width), std::max(size.height, own.height)};
    }
    return size;
  }

 private:
  std::vector<ElementPtr> children_;
};

/// Takes its child's place and size; what it adds, it adds to the draw list.
class WrapperElement : public Element {
 public:
  explicit WrapperElement(ElementPtr child) : child_(std::move(child)) {}
  Placed place(const Rect& frame) const override { return {this, frame, {child_->place(frame)}}; }

 protected:
  Size sizeFor(const Proposal& offer) const override { return child_->measure(offer); }

 private:
  ElementPtr child_;
};

class OverlayElement : public WrapperElement {
 public:
  OverlayElement(Color color, ElementPtr child) : WrapperElement(std::move(child)), color_(color) {}

  void emit(const Placed& placed, DrawList& list) const override {
    const auto first = list.items.size();
    WrapperElement::emit(placed, list);
    const auto last = list.items.size();
    for (auto i = first; i < last; ++i) {
      auto copy = list.items[i];
      copy.color = color_;
      list.items.push_back(std::move(copy));
    }
  }

 private:
  Color color_;
};

class AccessibilityElement : public WrapperElement {
 public:
  AccessibilityElement(std::string phrase, ElementPtr child)
      : WrapperElement(std::move(child)), phrase_(std::move(phrase)) {}

  void emit(const Placed& placed, DrawList& list) const override {
    const auto before = list.accessibility.size();
    WrapperElement::emit(placed, list);
    list.accessibility.resize(before);
    list.accessibility.push_back(phrase_);
  }

 private:
  std::string phrase_;
};

class HiddenElement : public WrapperElement {
 public:
  using WrapperElement::WrapperElement;

  void emit(const Placed& placed, DrawList& list) const override {
    const auto before = list.accessibility.size();
    WrapperElement::emit(placed, list);
    list.accessibility.resize(before);
  }
};

/// Resolves its child in changed surroundings.
class InheritingNode : public Node {
 public:
  InheritingNode(std::function<void(Inherited&)> change, View child)
      : change_(std::move(change)), child_(std::move(child)) {}

  ElementPtr resolve(const Inherited& inherited) const override {
    Inherited changed = inherited;
    change_(changed);
    return child_.node().resolve(changed);
  }

 private:
  std::function<void(Inherited&)> change_;
  View child_;
};

/// Makes an element of a parameter and its resolved child.
template <class WrappingElement, class Parameter>
class WrappingNode : public Node {
 public:
  WrappingNode(Parameter parameter, View child)
      : parameter_(std::move(parameter)), child_(std::move(child)) {}

  ElementPtr resolve(const Inherited& inherited) const override {
    return std::make_unique<WrappingElement>(parameter_, child_.node().resolve(inherited));
  }

 private:
  Parameter parameter_;
  View child_;
};

class HiddenNode : public Node {
 public:
  explicit HiddenNode(View child) : child_(std::move(child)) {}

  ElementPtr resolve(const Inherited& inherited) const override {
    return std::make_unique<HiddenElement>(child_.node().resolve(inherited));
  }

 private:
  View child_;
};

class BodyNode : public Node {
 public:
  explicit BodyNode(std::function<View(const ViewEnvironment&)> body) : body_(std::move(body)) {}

  ElementPtr resolve(const Inherited& inherited) const override {
    return body_(*inherited.environment).node().resolve(inherited);
  }

 private:
  std::function<View(const ViewEnvironment&)> body_;
};

class LayersNode : public Node {
 public:
  explicit LayersNode(Views children) : children_(std::move(children)) {}

  ElementPtr resolve(const Inherited& inherited) const override {
    std::vector<ElementPtr> elements;
    for (const auto& child : children_) elements.push_back(child.node().resolve(inherited));
    return std::make_unique<LayersElement>(std::move(elements));
  }

 private:
  Views children_;
};

View inheriting(std::function<void(Inherited&)> change, const View& child) {
  return View(std::make_shared<InheritingNode>(std::move(change), child));
}

template <class WrappingElement, class Parameter>
View wrapping(Parameter parameter, const View& child) {
  return View(
      std::make_shared<WrappingNode<WrappingElement, Parameter>>(std::move(parameter), child));
}

}  // namespace

View layers(Views children) { return View(std::make_shared<LayersNode>(std::move(children))); }

View View::fromBody(std::function<View(const ViewEnvironment&)> body) {
  return View(std::make_shared<BodyNode>(std::move(body)));
}

View View::font(Font font) const {
  return inheriting([font](Inherited& inherited) { inherited.font = font; }, *this);
}

View View::foregroundColor(Color color) const {
  return inheriting([color](Inherited& inherited) { inherited.color = color; }, *this);
}

View View::lineLimit(int lines) const {
  return inheriting([lines](Inherited& inherited) { inherited.lineLimit = lines; }, *this);
}

View View::minimumScaleFactor(double factor) const {
  return inheriting([factor](Inherited& inherited) { inherited.minimumScale = factor; }, *this);
}

View View::multilineTextAlignment(HorizontalAlignment alignment) const {
  return inheriting([alignment](Inherited& inherited) { inherited.textAlignment = alignment; },
                    *this);
}

View View::frame(Frame frame) const { return wrapping<FrameElement>(frame, *this); }

View View::padding(double inset) const { return wrapping<PaddingElement>(inset, *this); }

View View::overlay(Color color) const { return wrapping<OverlayElement>(color, *this); }

View View::accessibilityLabel(std::string phrase) const {
  return wrapping<AccessibilityElement>(std::move(phrase), *this);
}

View View::accessibilityHidden() const { return View(std::make_shared<HiddenNode>(*this)); }

}  // namespace platform
