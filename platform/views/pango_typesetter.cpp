#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "platform/foundation/raii.hpp"
#include "platform/foundation/text.hpp"
#include "platform/views/typesetter.hpp"

namespace platform {

namespace {

template <class T>
using Object = Owned<T, g_object_unref>;
using Description = Owned<PangoFontDescription, pango_font_description_free>;
using Attributes = Owned<PangoAttrList, pango_attr_list_unref>;
using Metrics = Owned<PangoFontMetrics, pango_font_metrics_unref>;
using LineIterator = Owned<PangoLayoutIter, pango_layout_iter_free>;
using FontOptions = Owned<cairo_font_options_t, cairo_font_options_destroy>;

// No line of a widget shows more; shaping more would only take time.
constexpr std::size_t mostCharacters = 1000;

// Everything is shaped at one size and drawn scaled: each further size of a font would cost the
// library another search through the system's fonts.
constexpr double shapedSize = 16;

double points(int pangoUnits) { return static_cast<double>(pangoUnits) / PANGO_SCALE; }
int pangoUnits(double points) { return static_cast<int>(std::lround(points * PANGO_SCALE)); }

PangoWeight pangoWeight(FontWeight weight) {
  switch (weight) {
    case FontWeight::medium:
      return PANGO_WEIGHT_MEDIUM;
    case FontWeight::semibold:
      return PANGO_WEIGHT_SEMIBOLD;
    case FontWeight::bold:
      return PANGO_WEIGHT_BOLD;
    case FontWeight::regular:
      break;
  }
  return PANGO_WEIGHT_NORMAL;
}

/// A font that was looked up once, in the size that texts are shaped at.
struct FoundFont {
  Description description;
  double ascent = 0;
  double lineHeight = 0;
  const char* narrowSpace = "\u202f";  ///< what stands for the narrow no-break space
};

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

/// The text as it is drawn: well-formed, on one paragraph, and no longer than can be seen.
std::string drawnText(const std::string& content, const FoundFont& font) {
  std::string text = drawableUtf8(content);
  std::size_t characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool startsCharacter = (byte & 0xC0U) != 0x80U;
    if (startsCharacter && ++characters > mostCharacters) {
      text.resize(i);
      break;
    }
    if (byte < 0x20 || byte == 0x7F) text[i] = ' ';
  }
  for (const char* lineBreak : {"\u0085", "\u2028", "\u2029"})
    text = replaced(std::move(text), lineBreak, " ");
  return replaced(std::move(text), "\u202f", font.narrowSpace);
}

/// Fills a run's outlines, or shows its glyphs when they have none (colour emoji).
void paintOutlines(cairo_t* context, PangoGlyphItem* run, double x, double baseline) {
  PangoFont* font = run->item->analysis.font;
  cairo_new_path(context);
  cairo_move_to(context, x, baseline);
  pango_cairo_glyph_string_path(context, font, run->glyphs);
  double left = 0, top = 0, right = 0, bottom = 0;
  cairo_fill_extents(context, &left, &top, &right, &bottom);
  if (right > left) {
    cairo_fill(context);
  } else {
    cairo_move_to(context, x, baseline);
    pango_cairo_show_glyph_string(context, font, run->glyphs);
  }
  cairo_new_path(context);
}

/// Draws a line from left to right. On pixels Cairo puts each glyph on a whole one, which leaves
/// uneven gaps in small letters; outlines, which take longer, stand where they belong. The
/// baseline is put on a whole pixel.
void paintLine(cairo_t* context, PangoLayoutLine* line, double x, double baseline) {
  constexpr double largeEnough = 20;  // pixels
  double pixels = shapedSize;
  double unused = 0;
  cairo_user_to_device_distance(context, &pixels, &unused);
  const auto target = cairo_surface_get_type(cairo_get_target(context));
  if (target != CAIRO_SURFACE_TYPE_IMAGE || pixels > largeEnough - 0.01) {
    cairo_move_to(context, x, baseline);
    pango_cairo_show_layout_line(context, line);
    return;
  }
  cairo_user_to_device(context, &x, &baseline);
  baseline = std::round(baseline);
  cairo_device_to_user(context, &x, &baseline);
  for (GSList* node = line->runs; node != nullptr; node = node->next) {
    auto* run = static_cast<PangoGlyphItem*>(node->data);
    paintOutlines(context, run, x, baseline);
    x += points(pango_glyph_string_get_width(run->glyphs));
  }
}

class PangoText : public ShapedText {
 public:
  PangoText(PangoContext* context, const FoundFont& font, double size, const std::string& content)
      : layout_(pango_layout_new(context)),
        scale_(size / shapedSize),
        ascent_(font.ascent),
        lineHeight_(font.lineHeight) {
    const auto text = drawnText(content, font);
    pango_layout_set_text(layout_.get(), text.data(), static_cast<int>(text.size()));
    pango_layout_set_font_description(layout_.get(), font.description.get());
    const Attributes attributes(pango_attr_list_new());
    pango_attr_list_insert(attributes.get(), pango_attr_font_features_new("tnum=1"));
    pango_layout_set_attributes(layout_.get(), attributes.get());
    int width = 0;
    pango_layout_get_size(layout_.get(), &width, nullptr);
    width_ = points(width) * scale_;
  }

  double width() const override { return width_; }
  double lineHeight() const override { return lineHeight_ * scale_; }

  Wrapped wrapped(double width) const override {
    const auto layout = broken({.width = width, .wrapped = true});
    int longest = 0;
    const LineIterator line(pango_layout_get_iter(layout.get()));
    do {
      PangoRectangle extents;
      pango_layout_iter_get_line_extents(line.get(), nullptr, &extents);
      longest = std::max(longest, extents.width);
    } while (pango_layout_iter_next_line(line.get()));
    return {points(longest) * scale_, pango_layout_get_line_count(layout.get())};
  }

  void paint(cairo_t* context, const TextPlacement& placement) const override {
    const bool asShaped = !placement.truncated && !placement.wrapped;
    const auto changed = asShaped ? nullptr : broken(placement);
    PangoLayout* layout = asShaped ? layout_.get() : changed.get();
    cairo_scale(context, placement.scale * scale_, placement.scale * scale_);
    const LineIterator line(pango_layout_get_iter(layout));
    double baseline = ascent_;
    do {
      PangoRectangle extents;
      pango_layout_iter_get_line_extents(line.get(), nullptr, &extents);
      paintLine(context, pango_layout_iter_get_line_readonly(line.get()), points(extents.x),
                baseline);
      baseline += lineHeight_;
    } while (pango_layout_iter_next_line(line.get()));
  }

 private:
  /// A copy that is cut or wrapped.
  [[nodiscard]] Object<PangoLayout> broken(const TextPlacement& placement) const {
    Object<PangoLayout> copy(pango_layout_copy(layout_.get()));
    pango_layout_set_width(copy.get(), pangoUnits(placement.width / (placement.scale * scale_)));
    if (placement.truncated) {
      pango_layout_set_ellipsize(copy.get(), PANGO_ELLIPSIZE_END);
    } else {
      pango_layout_set_wrap(copy.get(), PANGO_WRAP_WORD_CHAR);
    }
    if (placement.alignment == HorizontalAlignment::center)
      pango_layout_set_alignment(copy.get(), PANGO_ALIGN_CENTER);
    return copy;
  }

  Object<PangoLayout> layout_;
  double scale_;  // own size over shaped size
  double ascent_;
  double lineHeight_;
  double width_ = 0;
};

class PangoTypesetter : public Typesetter {
 public:
  PangoTypesetter()
      : fonts_(pango_cairo_font_map_new()), context_(pango_font_map_create_context(fonts_.get())) {
    // Said explicitly, so that pictures are the same on every machine with the same fonts, and so
    // that widths scale linearly.
    const FontOptions options(cairo_font_options_create());
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(context_.get(), options.get());
    pango_context_set_round_glyph_positions(context_.get(), FALSE);
  }

  std::shared_ptr<const ShapedText> shape(const std::string& text,
                                          const Font& font) const override {
    return std::make_shared<PangoText>(context_.get(), found(font), font.size, text);
  }

 private:
  const FoundFont& found(const Font& font) const {
    const auto key = std::pair(font.weight, font.design);
    const auto known = found_.find(key);
    return known != found_.end() ? known->second : found_.emplace(key, find(font)).first->second;
  }

  [[nodiscard]] FoundFont find(const Font& font) const {
    FoundFont result;
    result.description.reset(pango_font_description_new());
    auto* description = result.description.get();
    // A missing family falls to the next, and in the end to the system's sans.
    pango_font_description_set_family_static(
        description, font.design == FontDesign::rounded ? "Quicksand,Inter,sans" : "Inter,sans");
    pango_font_description_set_weight(description, pangoWeight(font.weight));
    pango_font_description_set_absolute_size(description, pangoUnits(shapedSize));
    const Object<PangoFont> loaded(pango_context_load_font(context_.get(), description));
    if (!loaded) {
      result.lineHeight = shapedSize * 1.2;
      result.ascent = shapedSize;
      return result;
    }
    const Metrics metrics(pango_font_get_metrics(loaded.get(), nullptr));
    result.ascent = points(pango_font_metrics_get_ascent(metrics.get()));
    result.lineHeight = result.ascent + points(pango_font_metrics_get_descent(metrics.get()));
    // A font without the narrow space would bring in a whole fallback font for it.
    if (pango_font_has_char(loaded.get(), 0x202F) == 0)
      result.narrowSpace = pango_font_has_char(loaded.get(), 0x2009) != 0 ? "\u2009" : "\u00a0";
    return result;
  }

  Object<PangoFontMap> fonts_;
  Object<PangoContext> context_;
  mutable std::map<std::pair<FontWeight, FontDesign>, FoundFont> found_;
};

}  // namespace

std::unique_ptr<Typesetter> systemTypesetter() { return std::make_unique<PangoTypesetter>(); }

}  // namespace platform
