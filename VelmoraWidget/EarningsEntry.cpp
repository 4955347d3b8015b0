#include "VelmoraWidget/EarningsEntry.hpp"

#include <nlohmann/json.hpp>

namespace velmora {

platform::Json jsonForm(const EarningsEntry& entry) {
  return {{"isConnected", entry.isConnected},
          {"objectives", jsonForm(entry.objectives)},
          {"snapshot", jsonForm(entry.snapshot)}};
}

}  // namespace velmora
