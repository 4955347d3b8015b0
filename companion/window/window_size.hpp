#pragma once

namespace companion::window {

/// The size that the user gave the window, in points.
struct WindowSize {
  int width = 600;
  int height = 760;
  bool isMaximized = false;
};

/// The one kept last; the default without one. Reads one small file of the user's.
WindowSize loadWindowSize();
void saveWindowSize(const WindowSize& size);

}  // namespace companion::window
