#include "VelmoraWidget/RequestTimeout.hpp"

namespace velmora {

std::chrono::milliseconds requestTimeout() { return std::chrono::seconds{60}; }

}  // namespace velmora
