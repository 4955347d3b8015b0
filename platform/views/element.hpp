#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "platform/views/draw_list.hpp"
#include "platform/views/geometry.hpp"
#include "platform/views/style.hpp"
#include "platform/views/typesetter.hpp"
#include "platform/views/views.hpp"

// The inner workings of the catalogue. A view is drawn in four passes, each a pure function of the
// one before: nodes are resolved into elements, elements are measured, placed, and emitted into
// the draw list.

namespace platform {

class Element;

/// An element in its place. Children stand where the element put them.
struct Placed {
  const Element* element = nullptr;
  Rect frame;
  std::vector<Placed> children;
};

/// A view with its fonts, colours and strings decided. Knows nothing of its place.
class Element {
 public:
  Element() = default;
  virtual ~Element() = default;
  Element(const Element&) = delete;
  Element& operator=(const Element&) = delete;

  /// The size it takes when offered that room. Asked again, it answers from memory.
  [[nodiscard]] Size measure(const Proposal& proposal) const;

  /// Puts itself and what it holds into a frame that it asked for.
  [[nodiscard]] virtual Placed place(const Rect& frame) const { return {this, frame, {}}; }

  /// Adds what it draws and says.
  virtual void emit(const Placed& placed, DrawList& list) const;

  /// The least length of a spacer; absent for everything else.
  [[nodiscard]] virtual std::optional<double> spacerMinimum() const { return std::nullopt; }

 protected:
  [[nodiscard]] virtual Size sizeFor(const Proposal& proposal) const = 0;

 private:
  mutable std::vector<std::pair<Proposal, Size>> known_;
};

using ElementPtr = std::unique_ptr<const Element>;

/// What nodes inherit from the nodes around them while they are resolved.
struct Inherited {
  Font font = Font::body();
  Color color = Color::white;
  std::optional<int> lineLimit;
  double minimumScale = 1;
  HorizontalAlignment textAlignment = HorizontalAlignment::leading;
  double deviceScale = 1;
  const Typesetter* typesetter = nullptr;
  const ViewEnvironment* environment = nullptr;
};

class Node {
 public:
  Node() = default;
  virtual ~Node() = default;
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;

  [[nodiscard]] virtual ElementPtr resolve(const Inherited& inherited) const = 0;
};

/// A child of the given size in a frame, at an alignment.
Rect aligned(const Size& size, const Rect& frame, Alignment alignment);

}  // namespace platform
