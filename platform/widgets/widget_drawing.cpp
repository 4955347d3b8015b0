#include "platform/widgets/widget_drawing.hpp"

#include <nlohmann/json.hpp>

#include <filesystem>

#include "platform/foundation/formatting.hpp"
#include "platform/foundation/languages.hpp"
#include "platform/views/layout.hpp"
#include "platform/views/painter.hpp"

namespace platform {

namespace fs = std::filesystem;

namespace {

constexpr double contentInset = 16;
constexpr double cornerRadius = 20;

bool readsRightToLeft() {
  const auto languages = preferredLanguages();
  return isRightToLeft(languages.empty() ? currentLocaleIdentifier() : languages.front());
}

}  // namespace

DrawList drawWidget(const WidgetView& view, WidgetFamily family, double scale) {
  Canvas canvas;
  canvas.size = familySize(family);
  canvas.inset = contentInset;
  canvas.cornerRadius = cornerRadius;
  canvas.scale = scale;
  canvas.rightToLeft = readsRightToLeft();
  canvas.background = view.containerBackground;
  canvas.environment.set(family);
  auto list = layOut(view.content, canvas, *systemTypesetter());
  list.family = familyName(family);
  return list;
}

std::optional<PictureFormat> pictureFormat(const std::string& fileName) {
  const auto ending = fs::path(fileName).extension();
  if (ending == ".png") return PictureFormat::png;
  if (ending == ".svg") return PictureFormat::svg;
  if (ending == ".pdf") return PictureFormat::pdf;
  if (ending == ".json") return PictureFormat::json;
  return std::nullopt;
}

std::string picture(const DrawList& list, PictureFormat format) {
  switch (format) {
    case PictureFormat::svg:
      return paintSvg(list);
    case PictureFormat::pdf:
      return paintPdf(list);
    case PictureFormat::json:
      return printJson(jsonForm(list)) + "\n";
    case PictureFormat::png:
      break;
  }
  return paintPng(list);
}

}  // namespace platform
