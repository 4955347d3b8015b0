#pragma once

#include <gio/gio.h>

#include "platform/foundation/raii.hpp"

namespace platform {

// GLib's handles, one name each. Whoever includes this links GLib.

/// One reference to an object.
template <class Object>
using Reference = Owned<Object, g_object_unref>;

using GText = Owned<char, g_free>;
using GWords = Owned<char*, g_strfreev>;
using GFailure = Owned<GError, g_error_free>;
using GValueTree = Owned<GVariant, g_variant_unref>;
using GLoop = Owned<GMainLoop, g_main_loop_unref>;

}  // namespace platform
