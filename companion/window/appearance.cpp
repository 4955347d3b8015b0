#include "companion/window/appearance.hpp"

#include <adwaita.h>

#include <filesystem>

#include "companion/window/widgets.hpp"
#include "platform/foundation/formatting.hpp"
#include "platform/foundation/languages.hpp"

namespace companion::window {

namespace {

constexpr const char* styles = R"(
.step-number {
  min-width: 28px; min-height: 28px; border-radius: 14px; font-weight: bold;
  background-color: alpha(currentColor, 0.1);
}
.refused .subtitle { color: @error_color; opacity: 1; }
row > box.header.folding { padding: 6px 0; }
.dropzone:drop(active) { box-shadow: inset 0 0 0 3px @accent_color; }
.ring { color: mix(@warning_color, #e5a50a, 0.6); }
.ring.reached { color: @success_color; }
.notice .sign { color: @warning_color; }
.details { padding: 2px 8px; margin-left: -8px; }
.details label { font-weight: normal; }
.tile { padding: 14px 16px; }
.footnote { margin: 8px 12px 0; }
.chart { border-radius: 12px; }
.chart:focus-visible { outline: 2px solid alpha(@accent_color, 0.5); outline-offset: -2px; }
.wallpaper { padding: 24px 12px; background-color: alpha(@accent_bg_color, 0.12); }
.earnings clamp > box, .welcome clamp > box { border-spacing: 18px; margin-top: 18px; }
flowboxchild { padding: 0; background: none; }
statuspage.compact > scrolledwindow > viewport > box { margin: 24px 12px; }
)";

/// Where the icons lie when the program is not installed for the system.
void findOwnIcons() {
  std::error_code ignored;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path();
  const auto icons = (folder / "../../share/icons").lexically_normal();
  gtk_icon_theme_add_search_path(gtk_icon_theme_get_for_display(gdk_display_get_default()),
                                 icons.c_str());
}

/// GTK takes the direction from the C library's locale, which may not be generated.
void followLanguage() {
  const auto languages = platform::stringTableLanguages();
  const bool mirrored = !languages.empty() && platform::isRightToLeft(languages.front());
  gtk_widget_set_default_direction(mirrored ? GTK_TEXT_DIR_RTL : GTK_TEXT_DIR_LTR);
}

}  // namespace

void prepareAppearance() {
  const Reference<GtkCssProvider> provider(gtk_css_provider_new());
  gtk_css_provider_load_from_data(provider.get(), styles, -1);
  gtk_style_context_add_provider_for_display(gdk_display_get_default(),
                                             GTK_STYLE_PROVIDER(provider.get()),
                                             GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  gtk_window_set_default_icon_name("com.brenvik.velmora");
  findOwnIcons();
  followLanguage();
}

}  // namespace companion::window
