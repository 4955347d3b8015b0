#pragma once

#include <memory>
#include <optional>

#include "companion/window/widgets.hpp"
#include "platform/processes/process.hpp"
#include "platform/widgets/widget_family.hpp"

namespace companion::window {

/// The widget as it looks, drawn by the widget program at the scale of the screen. Shows the last
/// good picture until there is a newer one.
class WidgetPicture {
 public:
  enum class Content {
    sample,  ///< made-up figures
    current  ///< what the widget shows now
  };

  explicit WidgetPicture(Content content);
  ~WidgetPicture();
  WidgetPicture(const WidgetPicture&) = delete;
  WidgetPicture& operator=(const WidgetPicture&) = delete;

  [[nodiscard]] GtkWidget* widget() const { return frame_.get(); }

  /// Draws a family anew; what is still being drawn is given up.
  void draw(platform::WidgetFamily family);

 private:
  struct Drawing;

  void start();
  void finish(const std::shared_ptr<Drawing>& drawing);

  Content content_;
  GtkWidget* picture_;
  Reference<GtkWidget> frame_;  ///< no wider than the picture, or it would ask for more height
  std::optional<platform::WidgetFamily> family_;
  int scale_ = 0;
  std::shared_ptr<Drawing> drawing_;
  platform::Process process_;
};

}  // namespace companion::window
