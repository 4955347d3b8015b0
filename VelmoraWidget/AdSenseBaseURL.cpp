#include "VelmoraWidget/AdSenseBaseURL.hpp"

namespace velmora {

std::string adSenseBaseURL() { return VELMORA_ADSENSE_BASE_URL; }

}  // namespace velmora
