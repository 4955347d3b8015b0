#include "platform/foundation/bundle.hpp"

// The name under which the program's resources, state and string tables are found.
const std::string_view platform::mainBundleName = "velmora-widget";
