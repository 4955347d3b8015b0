#pragma once

#include <memory>
#include <string>

#include "platform/views/style.hpp"

typedef struct _cairo cairo_t;  // NOLINT(bugprone-reserved-identifier): as Cairo declares it

namespace platform {

/// How a text is put into its place.
struct TextPlacement {
  double scale = 1;        ///< drawn size over own size
  double width = 0;        ///< of its place, in points
  bool truncated = false;  ///< cut at its end to that width
  bool wrapped = false;    ///< broken into lines of at most that width
  HorizontalAlignment alignment = HorizontalAlignment::leading;  ///< of lines that are shorter
};

/// A text shaped once, at its own size. Sizes scale linearly.
class ShapedText {
 public:
  ShapedText() = default;
  virtual ~ShapedText() = default;
  ShapedText(const ShapedText&) = delete;
  ShapedText& operator=(const ShapedText&) = delete;

  /// Of the text on one line.
  [[nodiscard]] virtual double width() const = 0;
  /// Of one line. Characters taken from other fonts do not change it.
  [[nodiscard]] virtual double lineHeight() const = 0;

  struct Wrapped {
    double width = 0;  ///< of the longest line
    int lines = 1;
  };
  /// Broken at words into lines of at most that width.
  [[nodiscard]] virtual Wrapped wrapped(double width) const = 0;

  /// Draws in the context's colour, the place's top left corner at the origin.
  virtual void paint(cairo_t* context, const TextPlacement& placement) const = 0;
};

/// Shapes texts.
class Typesetter {
 public:
  Typesetter() = default;
  virtual ~Typesetter() = default;
  Typesetter(const Typesetter&) = delete;
  Typesetter& operator=(const Typesetter&) = delete;

  [[nodiscard]] virtual std::shared_ptr<const ShapedText> shape(const std::string& text,
                                                                const Font& font) const = 0;
};

/// The system's fonts: Inter for the standard design, Quicksand for the rounded one, with figures
/// of equal width where the font has them, and the system's sans where a font is missing.
std::unique_ptr<Typesetter> systemTypesetter();

}  // namespace platform
