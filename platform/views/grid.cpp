#include <algorithm>

#include "platform/views/element.hpp"

// Grids of flexible columns.

namespace platform {

namespace {

constexpr double narrowestColumn = 10;

class GridElement : public Element {
 public:
  GridElement(GridStyle style, std::vector<ElementPtr> cells)
      : style_(style), cells_(std::move(cells)) {}

  Placed place(const Rect& frame) const override {
    Placed placed{this, frame, {}};
    const double width = columnWidth(frame.width);
    double y = frame.y;
    for (std::size_t first = 0; first < cells_.size(); first += columns()) {
      const double height = rowHeight(first, width);
      double x = frame.x;
      for (std::size_t i = first; i < rowEnd(first); ++i) {
        const auto size = cells_[i]->measure({width, std::nullopt});
        const Alignment alignment{style_.cellAlignment, VerticalAlignment::center};
        placed.children.push_back(
            cells_[i]->place(aligned(size, {x, y, width, height}, alignment)));
        x += width + style_.columnSpacing;
      }
      y += height + style_.rowSpacing;
    }
    return placed;
  }

 protected:
  Size sizeFor(const Proposal& offer) const override {
    const double width = offer.width.value_or(idealWidth());
    double height = 0;
    for (std::size_t first = 0; first < cells_.size(); first += columns())
      height += rowHeight(first, columnWidth(width)) + (first > 0 ? style_.rowSpacing : 0);
    return {std::max(width, spacings() + narrowestColumn * static_cast<double>(columns())), height};
  }

 private:
  [[nodiscard]] std::size_t columns() const {
    return static_cast<std::size_t>(std::max(1, style_.columns));
  }
  [[nodiscard]] double spacings() const {
    return style_.columnSpacing * static_cast<double>(columns() - 1);
  }
  [[nodiscard]] std::size_t rowEnd(std::size_t first) const {
    return std::min(first + columns(), cells_.size());
  }
  [[nodiscard]] double columnWidth(double width) const {
    return std::max(narrowestColumn, (width - spacings()) / static_cast<double>(columns()));
  }
  [[nodiscard]] double idealWidth() const {
    double widest = narrowestColumn;
    for (const auto& cell : cells_) widest = std::max(widest, cell->measure({}).width);
    return widest * static_cast<double>(columns()) + spacings();
  }
  [[nodiscard]] double rowHeight(std::size_t first, double width) const {
    double height = 0;
    for (std::size_t i = first; i < rowEnd(first); ++i)
      height = std::max(height, cells_[i]->measure({width, std::nullopt}).height);
    return height;
  }

  GridStyle style_;
  std::vector<ElementPtr> cells_;
};

class GridNode : public Node {
 public:
  GridNode(GridStyle style, Views cells) : style_(style), cells_(std::move(cells)) {}

  ElementPtr resolve(const Inherited& inherited) const override {
    std::vector<ElementPtr> elements;
    for (const auto& cell : cells_) elements.push_back(cell.node().resolve(inherited));
    return std::make_unique<GridElement>(style_, std::move(elements));
  }

 private:
  GridStyle style_;
  Views cells_;
};

}  // namespace

View grid(GridStyle style, Views cells) {
  return View(std::make_shared<GridNode>(style, std::move(cells)));
}

}  // namespace platform
