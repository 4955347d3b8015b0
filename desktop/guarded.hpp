#pragma once

#include <glib.h>

#include <exception>

namespace desktop {

/// Runs what a C library called us for: no exception may cross its frames.
template <class Work>
void guarded(const Work& work) {
  try {
    work();
  } catch (const std::exception& error) {
    g_printerr("velmora-desktop: %s\n", error.what());
  }
}

}  // namespace desktop
