#include "companion/window/shortcuts.hpp"

#include <vector>

#include "companion/window/widgets.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

namespace {

struct Shortcut {
  std::string title;
  const char* action;
  std::vector<const char*> keys;
};

std::vector<Shortcut> shortcuts() {
  return {{localizedString("Refresh the figures"), "win.refresh", {"F5", "<Control>r"}},
          {localizedString("Choose a client file"), "win.choose-file", {"<Control>o"}},
          {localizedString("Show the earnings"), "win.show-earnings", {"<Alt>1"}},
          {localizedString("Show the widget’s settings"), "win.show-widget", {"<Alt>2"}},
          {localizedString("Show the account"), "win.show-account", {"<Alt>3"}},
          {localizedString("Cancel the sign-in"), "win.cancel", {"Escape"}},
          {localizedString("Open the menu"), "win.menu", {"F10"}},
          {localizedString("Keyboard shortcuts"), "win.shortcuts", {"<Control>question"}},
          {localizedString("Close the window"), "window.close", {"<Control>w", "<Control>q"}}};
}

std::string keysOf(const Shortcut& shortcut) {
  std::string keys;
  for (const char* key : shortcut.keys) {
    if (!keys.empty()) keys += ' ';
    keys += key;
  }
  return keys;
}

/// GTK makes this window from its own markup only.
std::string markup() {
  std::string text =
      "<interface><object class='GtkShortcutsWindow' id='window'><property name='modal'>1"
      "</property><child><object class='GtkShortcutsSection'><property name='section-name'>all"
      "</property><child><object class='GtkShortcutsGroup'><property name='title'>" +
      escaped(localizedString("General")) + "</property>";
  for (const auto& shortcut : shortcuts())
    text += "<child><object class='GtkShortcutsShortcut'><property name='title'>" +
            escaped(shortcut.title) + "</property><property name='accelerator'>" +
            escaped(keysOf(shortcut)) + "</property></object></child>";
  return text + "</object></child></object></child></object></interface>";
}

}  // namespace

void bindShortcuts(GtkApplication* application) {
  for (auto& shortcut : shortcuts()) {
    shortcut.keys.push_back(nullptr);
    gtk_application_set_accels_for_action(application, shortcut.action, shortcut.keys.data());
  }
}

void showShortcuts(GtkWindow* parent) {
  const auto text = markup();
  const Reference<GtkBuilder> builder(gtk_builder_new_from_string(text.c_str(), -1));
  auto* window = GTK_WINDOW(gtk_builder_get_object(builder.get(), "window"));
  gtk_window_set_transient_for(window, parent);
  gtk_window_present(window);
}

}  // namespace companion::window
