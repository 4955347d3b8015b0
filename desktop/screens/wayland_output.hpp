#pragma once

#include <functional>
#include <string>

#include "desktop/scale.hpp"
#include "desktop/screens/monitors.hpp"
#include "desktop/screens/wayland_handles.hpp"

namespace desktop {

/// One output of a Wayland compositor, as far as it has been told.
class WaylandOutput {
 public:
  /// Binds the global of that number. `changed` is called when all that belongs together has come.
  WaylandOutput(wl_registry* registry, std::uint32_t number, std::uint32_t version,
                std::function<void()> changed);
  WaylandOutput(const WaylandOutput&) = delete;
  WaylandOutput& operator=(const WaylandOutput&) = delete;

  /// Has its place and size in points told too.
  void askLogicalSize(zxdg_output_manager_v1* manager);

  [[nodiscard]] std::uint32_t number() const { return number_; }
  [[nodiscard]] wl_output* handle() const { return output_.get(); }
  /// Whether all there is to know has come.
  [[nodiscard]] bool isKnown() const { return isKnown_; }
  /// In points.
  [[nodiscard]] const Monitor& monitor() const { return monitor_; }
  /// Deduced, when the compositor can be given a picture of a scale that is no whole number.
  [[nodiscard]] Scale scale(bool fractional) const;

 private:
  static const wl_output_listener outputListener;
  static const zxdg_output_v1_listener logicalListener;

  std::uint32_t number_;
  std::function<void()> changed_;
  WaylandOwned<wl_output> output_;
  WaylandOwned<zxdg_output_v1> logical_;
  bool isKnown_ = false;
  Monitor monitor_;
  Extent mode_;  // device pixels
  std::int32_t transform_ = WL_OUTPUT_TRANSFORM_NORMAL;
  int wholeScale_ = 1;
};

}  // namespace desktop
