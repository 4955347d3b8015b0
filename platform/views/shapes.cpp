#include <algorithm>

#include "platform/views/element.hpp"
#include "platform/views/symbols.hpp"

// Symbols, circles and dividers.

namespace platform {

namespace {

constexpr double dividerHeight = 0.5;

class SymbolElement : public Element {
 public:
  SymbolElement(Symbol symbol, const Inherited& inherited)
      : symbol_(symbol), size_(symbolSize(symbol, inherited.font.size)), color_(inherited.color) {}

  void emit(const Placed& placed, DrawList& list) const override {
    list.items.emplace_back(placed.frame, color_, SymbolItem{symbol_});
  }

 protected:
  Size sizeFor(const Proposal&) const override { return size_; }

 private:
  Symbol symbol_;
  Size size_;
  Color color_;
};

/// Lengths to take when all room is welcome.
Size offered(const Proposal& offer, double otherwise) {
  return {offer.width.value_or(otherwise), offer.height.value_or(otherwise)};
}

class CircleElement : public Element {
 public:
  CircleElement(CircleStyle style, Color color) : style_(style), color_(color) {}

  void emit(const Placed& placed, DrawList& list) const override {
    const double sweep = std::clamp(style_.trimTo - style_.trimFrom, 0.0, 1.0);
    if (!(sweep > 0)) return;  // a round cap would leave a dot
    constexpr double threeOClock = 0.25;
    const double start = style_.trimFrom + threeOClock + style_.rotation;
    const double from = sweep == 1 ? 0 : start;
    const double side = std::min(placed.frame.width, placed.frame.height);
    list.items.emplace_back(aligned({side, side}, placed.frame, Alignment::center), color_,
                            ArcItem{from, from + sweep, style_.lineWidth, style_.lineCap});
  }

 protected:
  Size sizeFor(const Proposal& offer) const override { return offered(offer, 10); }

 private:
  CircleStyle style_;
  Color color_;
};

class DividerElement : public Element {
 public:
  void emit(const Placed& placed, DrawList& list) const override {
    list.items.emplace_back(placed.frame, Color::clear, DividerItem{});
  }

 protected:
  Size sizeFor(const Proposal& offer) const override {
    return {offered(offer, 10).width, dividerHeight};
  }
};

class SymbolNode : public Node {
 public:
  explicit SymbolNode(Symbol symbol) : symbol_(symbol) {}
  ElementPtr resolve(const Inherited& inherited) const override {
    return std::make_unique<SymbolElement>(symbol_, inherited);
  }

 private:
  Symbol symbol_;
};

class CircleNode : public Node {
 public:
  explicit CircleNode(CircleStyle style) : style_(style) {}
  ElementPtr resolve(const Inherited& inherited) const override {
    return std::make_unique<CircleElement>(style_, inherited.color);
  }

 private:
  CircleStyle style_;
};

class DividerNode : public Node {
 public:
  ElementPtr resolve(const Inherited&) const override { return std::make_unique<DividerElement>(); }
};

}  // namespace

View symbol(Symbol symbol) { return View(std::make_shared<SymbolNode>(symbol)); }

View circle(CircleStyle style) { return View(std::make_shared<CircleNode>(style)); }

View divider() { return View(std::make_shared<DividerNode>()); }

}  // namespace platform
