#include "platform/views/draw_list.hpp"

#include <nlohmann/json.hpp>

#include "platform/views/symbols.hpp"

namespace platform {

namespace {

Json numbers(std::initializer_list<double> values) {
  Json list = Json::array();
  for (const double value : values) list.push_back(jsonNumber(value));
  return list;
}

Json jsonForm(const Rect& rect) { return numbers({rect.x, rect.y, rect.width, rect.height}); }

Json jsonForm(const Color& color) {
  return numbers({color.red, color.green, color.blue, color.alpha});
}

const char* name(FontWeight weight) {
  switch (weight) {
    case FontWeight::medium:
      return "medium";
    case FontWeight::semibold:
      return "semibold";
    case FontWeight::bold:
      return "bold";
    case FontWeight::regular:
      break;
  }
  return "regular";
}

const char* name(Fill fill) {
  switch (fill) {
    case Fill::hatched:
      return "hatched";
    case Fill::outlined:
      return "outlined";
    case Fill::solid:
      break;
  }
  return "solid";
}

/// Adds what is particular to a kind of item.
struct AddContent {
  Json& json;
  const DrawItem& item;

  void operator()(const TextItem& text) const {
    const auto& font = text.font;
    json["kind"] = "text";
    json["text"] = text.text;
    json["size"] = jsonNumber(font.size * text.placement.scale);
    json["scale"] = jsonNumber(text.placement.scale);
    json["weight"] = name(font.weight);
    json["design"] = font.design == FontDesign::rounded ? "rounded" : "default";
    json["truncated"] = text.placement.truncated;
  }
  void operator()(const SymbolItem& symbol) const {
    json["kind"] = "symbol";
    json["name"] = symbolName(symbol.symbol);
  }
  void operator()(const ArcItem& arc) const {
    const auto& frame = item.frame;
    json["kind"] = "arc";
    json["center"] = numbers({frame.x + frame.width / 2, frame.y + frame.height / 2});
    json["radius"] = jsonNumber(frame.width / 2);
    json["from"] = jsonNumber(arc.from);
    json["to"] = jsonNumber(arc.to);
    json["width"] = jsonNumber(arc.width);
    json["cap"] = arc.cap == LineCap::round ? "round" : "butt";
  }
  void operator()(const DividerItem&) const { json["kind"] = "divider"; }
  void operator()(const RectangleItem& rectangle) const {
    json["kind"] = "rectangle";
    json["fill"] = name(rectangle.style.fill);
    json["radii"] = numbers({rectangle.style.topRadius, rectangle.style.bottomRadius});
  }
  void operator()(const RuleItem& rule) const {
    json["kind"] = "rule";
    json["dash"] = jsonNumber(rule.dash);
  }
  void operator()(const GradientItem& gradient) const {
    json["kind"] = "gradient";
    json.erase("color");
    json["from"] = jsonForm(gradient.colors.top);
    json["to"] = jsonForm(gradient.colors.bottom);
  }
};

}  // namespace

Json jsonForm(const DrawList& list) {
  Json items = Json::array();
  for (const auto& item : list.items) {
    Json json{{"kind", ""}, {"frame", jsonForm(item.frame)}, {"color", jsonForm(item.color)}};
    std::visit(AddContent{json, item}, item.content);
    items.push_back(json);
  }
  return {{"family", list.family},
          {"scale", jsonNumber(list.scale)},
          {"size", numbers({list.size.width, list.size.height})},
          {"content", jsonForm(list.content)},
          {"items", items}};
}

}  // namespace platform
