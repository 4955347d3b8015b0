#pragma once

#include <optional>
#include <string>
#include <vector>

#include "VelmoraWidget/VelmoraSnapshot.hpp"

namespace companion::window {

enum class Trend { up, level, down };

/// One figure, in the user's language.
struct Figure {
  std::string title;
  std::string value;
  std::string note;                   ///< what it is compared with, or a date; may be empty
  std::optional<std::string> change;  ///< "+23%"
  Trend trend = Trend::level;
  std::string spokenChange;  ///< "up 23 %"
};

struct FigureGroup {
  std::string title;
  std::vector<Figure> figures;
};

/// Everything that the widget knows beside today, in reading order. The groups and their figures
/// are always the same ones; what is not known is a dash.
std::vector<FigureGroup> figureGroups(const velmora::VelmoraSnapshot& snapshot);

}  // namespace companion::window
