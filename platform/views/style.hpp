#pragma once

namespace platform {

/// An sRGB colour; components and opacity from 0 to 1.
struct Color {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;

  /// The same colour with its opacity multiplied.
  [[nodiscard]] constexpr Color opacity(double factor) const {
    return {red, green, blue, alpha * factor};
  }
  bool operator==(const Color&) const = default;

  static const Color white;
  static const Color clear;
  /// The standard green and red for good and bad news on a dark ground.
  static const Color systemGreen;
  static const Color systemRed;
};

inline constexpr Color Color::white{1, 1, 1, 1};
inline constexpr Color Color::clear{0, 0, 0, 0};
inline constexpr Color Color::systemGreen{50 / 255.0, 215 / 255.0, 75 / 255.0, 1};
inline constexpr Color Color::systemRed{255 / 255.0, 69 / 255.0, 58 / 255.0, 1};

enum class FontWeight { regular, medium, semibold, bold };
enum class FontDesign { standard, rounded };

/// A font by its looks; which family is found for it is the typesetter's business.
struct Font {
  double size = 13;  ///< points
  FontWeight weight = FontWeight::regular;
  FontDesign design = FontDesign::standard;

  bool operator==(const Font&) const = default;

  static constexpr Font system(double size, FontWeight weight = FontWeight::regular,
                               FontDesign design = FontDesign::standard) {
    return {size, weight, design};
  }
  /// The text styles.
  static constexpr Font body() { return {13, FontWeight::regular, FontDesign::standard}; }
  static constexpr Font caption() { return {10, FontWeight::regular, FontDesign::standard}; }
  static constexpr Font caption2() { return {10, FontWeight::medium, FontDesign::standard}; }

  [[nodiscard]] constexpr Font withWeight(FontWeight other) const { return {size, other, design}; }
};

enum class HorizontalAlignment { leading, center, trailing };
enum class VerticalAlignment { top, center, bottom };

struct Alignment {
  HorizontalAlignment horizontal = HorizontalAlignment::center;
  VerticalAlignment vertical = VerticalAlignment::center;

  static const Alignment center;
  static const Alignment leading;
  static const Alignment topLeading;
  static const Alignment trailing;
};

inline constexpr Alignment Alignment::center{};
inline constexpr Alignment Alignment::leading{HorizontalAlignment::leading,
                                              VerticalAlignment::center};
inline constexpr Alignment Alignment::topLeading{HorizontalAlignment::leading,
                                                 VerticalAlignment::top};
inline constexpr Alignment Alignment::trailing{HorizontalAlignment::trailing,
                                               VerticalAlignment::center};

enum class LineCap { butt, round };

}  // namespace platform
