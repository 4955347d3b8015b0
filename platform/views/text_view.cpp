#include <algorithm>
#include <cmath>

#include "platform/foundation/localized_strings.hpp"
#include "platform/views/element.hpp"

// Texts: on one line, shrunk or cut when the room is short; or wrapped.

namespace platform {

namespace {

// Lengths that differ by less are the same: sums of shares are never quite exact.
constexpr double tolerance = 1e-6;

class TextElement : public Element {
 public:
  TextElement(std::string content, const Inherited& inherited)
      : content_(std::move(content)),
        font_(inherited.font),
        color_(inherited.color),
        wraps_(!inherited.lineLimit || *inherited.lineLimit > 1),
        minimumScale_(std::clamp(inherited.minimumScale, 0.01, 1.0)),
        alignment_(inherited.textAlignment),
        deviceScale_(inherited.deviceScale),
        shaped_(inherited.typesetter->shape(content_, font_)),
        ownWidth_(roundedUp(shaped_->width())) {}

  void emit(const Placed& placed, DrawList& list) const override {
    if (content_.empty()) return;
    const TextItem item{content_, font_, placement(placed.frame.width), shaped_};
    list.items.emplace_back(placed.frame, color_, item);
    list.accessibility.push_back(content_);
  }

 protected:
  Size sizeFor(const Proposal& offer) const override {
    const double room = offer.width.value_or(unbounded);
    const auto how = placement(room);
    // Stacks ask for the least width to learn how flexible a text is; no need to break it for that.
    if (how.wrapped && room <= 0) return {0, roundedUp(shaped_->lineHeight())};
    if (how.wrapped) {
      const auto wrapped = shaped_->wrapped(room);
      return {std::min(room, roundedUp(wrapped.width)),
              roundedUp(shaped_->lineHeight() * wrapped.lines)};
    }
    return {std::min(room, ownWidth_ * how.scale), roundedUp(shaped_->lineHeight() * how.scale)};
  }

 private:
  /// What becomes of the text in that room; depends on nothing else.
  [[nodiscard]] TextPlacement placement(double room) const {
    TextPlacement how{.width = room, .alignment = alignment_};
    if (ownWidth_ <= room + tolerance) return how;
    if (wraps_) {
      how.wrapped = true;
      return how;
    }
    how.scale = std::max(minimumScale_, room / ownWidth_);
    how.truncated = ownWidth_ * how.scale > room + tolerance;
    return how;
  }

  [[nodiscard]] double roundedUp(double length) const {
    return std::ceil(length * deviceScale_ - tolerance) / deviceScale_;
  }

  std::string content_;
  Font font_;
  Color color_;
  bool wraps_;
  double minimumScale_;
  HorizontalAlignment alignment_;
  double deviceScale_;
  std::shared_ptr<const ShapedText> shaped_;
  double ownWidth_;
};

class TextNode : public Node {
 public:
  explicit TextNode(std::string content) : content_(std::move(content)) {}
  ElementPtr resolve(const Inherited& inherited) const override {
    return std::make_unique<TextElement>(content_, inherited);
  }

 private:
  std::string content_;
};

class LocalizedTextNode : public Node {
 public:
  explicit LocalizedTextNode(const char* key) : key_(key) {}
  ElementPtr resolve(const Inherited& inherited) const override {
    return std::make_unique<TextElement>(localizedString(key_), inherited);
  }

 private:
  const char* key_;
};

}  // namespace

View text(std::string content) { return View(std::make_shared<TextNode>(std::move(content))); }

View localizedText(const char* key) { return View(std::make_shared<LocalizedTextNode>(key)); }

}  // namespace platform
