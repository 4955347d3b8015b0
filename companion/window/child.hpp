#pragma once

#include <gio/gio.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "companion/window/widgets.hpp"

namespace companion::window {

/// A program of ours that is to do one thing and end. It is killed at its deadline, when this
/// goes and when the program ends; its output is not read.
class Child {
 public:
  /// `done` is called from the main loop, once, with whether the program ended with status 0; not
  /// at all when this goes first.
  Child(const std::vector<std::string>& command, std::chrono::seconds deadline,
        std::function<void(bool)> done);
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

 private:
  struct Run;
  std::shared_ptr<Run> run_;
};

/// Starts a program that goes on when this one ends. `ended` is called from the main loop should
/// it end before, or not start at all.
void startDetached(const std::vector<std::string>& command, std::function<void()> ended);

}  // namespace companion::window
