#pragma once

#include <string>
#include <vector>

#include "companion/history/chart_model.hpp"

namespace companion {

/// A chart as rows of texts, for who reads instead of looking.
struct ChartTable {
  std::vector<std::string> columns;
  std::vector<std::vector<std::string>> rows;  ///< newest first, as wide as the columns
};

ChartTable chartTable(const ChartModel& model);

}  // namespace companion
