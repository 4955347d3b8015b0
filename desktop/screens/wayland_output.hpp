#pragma once

#include <cstdint>

#include "desktop/scale.hpp"
#include "desktop/screens/monitors.hpp"
#include "desktop/screens/wayland_handles.hpp"

namespace desktop {

/// What is told of an output's size.
struct OutputShape {
  Extent mode;  ///< device pixels
  std::int32_t transform = WL_OUTPUT_TRANSFORM_NORMAL;
  int wholeScale = 1;
  Area area;  ///< points

  bool operator==(const OutputShape&) const = default;
};

/// One output of a Wayland compositor, as far as it has been told.
class WaylandOutput {
 public:
  /// Binds the global of that number.
  WaylandOutput(wl_registry* registry, std::uint32_t number, std::uint32_t version);
  WaylandOutput(const WaylandOutput&) = delete;
  WaylandOutput& operator=(const WaylandOutput&) = delete;

  /// Has its place and size in points told too.
  void askLogicalSize(zxdg_output_manager_v1* manager);

  [[nodiscard]] std::uint32_t number() const { return number_; }
  [[nodiscard]] wl_output* handle() const { return output_.get(); }
  /// Whether all there is to know has come.
  [[nodiscard]] bool isKnown() const { return isKnown_; }
  /// In points.
  [[nodiscard]] Monitor monitor() const { return {name_, false, shape_.area}; }
  [[nodiscard]] const OutputShape& shape() const { return shape_; }
  /// Deduced, when the compositor can be given a picture of a scale that is no whole number.
  [[nodiscard]] Scale scale(bool fractional) const;

 private:
  static const wl_output_listener outputListener;
  static const zxdg_output_v1_listener logicalListener;

  std::uint32_t number_;
  WaylandOwned<wl_output> output_;
  WaylandOwned<zxdg_output_v1> logical_;
  bool isKnown_ = false;
  std::string name_;
  OutputShape shape_;
};

}  // namespace desktop
