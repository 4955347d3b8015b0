#pragma once

#include <glib.h>

#include <exception>

namespace platform {

/// Runs what a C library called us for: no exception may cross its frames.
template <class Work>
void guarded(const Work& work) {
  try {
    work();
  } catch (const std::exception& error) {
    g_printerr("%s: %s\n", g_get_prgname() == nullptr ? "velmora" : g_get_prgname(), error.what());
  }
}

}  // namespace platform
