#pragma once

#include <string>
#include <vector>

#include "companion/window/desktop_host.hpp"
#include "companion/window/widget_picture.hpp"
#include "companion/window/widgets.hpp"

namespace companion::window {

/// The widget on the desktop: whether, in which size, and where, with its picture.
class DesktopGroup {
 public:
  explicit DesktopGroup(DesktopHost& host);
  DesktopGroup(const DesktopGroup&) = delete;
  DesktopGroup& operator=(const DesktopGroup&) = delete;

  [[nodiscard]] AdwPreferencesGroup* group() const { return group_; }
  void update();
  /// Draws the picture anew, after the figures or the goals have changed.
  void redraw();

 private:
  /// A list to choose from: what is kept, and what is shown for it.
  struct Choice {
    GtkWidget* row = nullptr;
    std::vector<std::string> values;
    std::vector<std::string> names;
  };

  void makeChoice(Choice& choice, const std::string& title, std::string Placement::* field);
  void makeSwitch();
  void makePicture();
  void chosen(const Choice& choice, std::string Placement::* field);
  static void offer(Choice& choice, const std::vector<std::string>& values,
                    const std::vector<std::string>& names, const std::string& selected);
  void offerMonitors();

  DesktopHost& host_;
  AdwPreferencesGroup* group_;
  GtkWidget* switchRow_ = nullptr;
  GtkWidget* switch_ = nullptr;
  Choice size_;
  Choice corner_;
  Choice monitor_;
  WidgetPicture picture_{WidgetPicture::Content::current};
  std::string drawnFamily_;
  bool isShowing_ = false;
};

}  // namespace companion::window
