#pragma once

#include <memory>
#include <string>

#include "companion/window/child.hpp"
#include "companion/window/widgets.hpp"

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

  [[nodiscard]] GtkWidget* widget() const { return picture_.get(); }

  /// Draws a family (small, medium, large) anew; what is still being drawn is given up.
  void draw(const std::string& family);

 private:
  struct Drawing;

  void start();
  void finish(const std::shared_ptr<Drawing>& drawing);

  Content content_;
  Reference<GtkWidget> picture_;
  std::string family_;
  int scale_ = 0;
  std::shared_ptr<Drawing> drawing_;
  std::unique_ptr<Child> child_;
};

}  // namespace companion::window
