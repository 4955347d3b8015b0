#pragma once

#include <optional>

#include "companion/window/choice_row.hpp"
#include "companion/window/desktop_host.hpp"
#include "companion/window/folding_row.hpp"
#include "companion/window/switch_row.hpp"
#include "companion/window/widget_picture.hpp"

namespace companion::window {

/// The widget on the desktop: whether, in which size, and where, with its picture.
class WidgetView {
 public:
  explicit WidgetView(DesktopHost& host);
  WidgetView(const WidgetView&) = delete;
  WidgetView& operator=(const WidgetView&) = delete;

  [[nodiscard]] GtkWidget* widget() const { return page_; }
  void update(const State& state);
  /// After the host or its choices have changed.
  void updateHost();
  /// Draws the picture anew, after the figures or the goals have changed.
  void redraw();

 private:
  using Take = void (*)(desktop::Placement&, const std::string&);

  void choose(Take take, const std::string& value);
  void hideAmounts(bool hidden);
  AdwPreferencesGroup* makeSwitches();
  AdwPreferencesGroup* makePlace();
  AdwPreferencesGroup* makePicture();
  void offerSizes();
  void offerCorners();
  void offerMonitors();

  DesktopHost& host_;
  GtkWidget* page_;
  SwitchRow shown_;
  SwitchRow atLogin_;
  FoldingRow problem_;
  ChoiceRow size_;
  ChoiceRow corner_;
  ChoiceRow monitor_;
  SwitchRow amounts_;
  WidgetPicture picture_{WidgetPicture::Content::current};
  GtkWidget* caption_ = nullptr;
  std::optional<platform::WidgetFamily> drawnFamily_;
};

}  // namespace companion::window
