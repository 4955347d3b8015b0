#pragma once

#include <adwaita.h>

#include <functional>
#include <string>

#include "platform/foundation/glib.hpp"

namespace companion::window {

using platform::GText;
using platform::Reference;

/// Calls the handler at each emission, until the instance is gone. For signals that want no answer.
void connect(gpointer instance, const char* signal, std::function<void()> handler);

/// The same for an instance that outlives a widget: no call comes once the widget is gone.
void connectWhileAlive(gpointer instance, const char* signal, GtkWidget* widget,
                       std::function<void()> handler);

/// Escapes a text for the widgets that take Pango markup.
std::string escaped(const std::string& text);

/// A text as it reads, without the underscore of its mnemonic.
std::string withoutMnemonic(std::string label);

/// A button with a text whose mnemonic follows an underscore.
GtkWidget* textButton(const std::string& label, std::function<void()> clicked);

/// A row of a list; its texts are plain, the subtitle may be empty.
GtkWidget* actionRow(const std::string& title, const std::string& subtitle);

/// Changes a row's subtitle when it is another one.
void setSubtitle(GtkWidget* row, const std::string& subtitle);

/// A group of rows under a plain title.
AdwPreferencesGroup* preferencesGroup(const std::string& title, const std::string& description);

/// Screen readers would read the pages of a stack that are not shown as well.
void hideOthers(GtkWidget* stack, GtkWidget* shown);

/// What a screen reader says of a widget.
void setAccessibleLabel(GtkWidget* widget, const std::string& label);
void setAccessibleDescription(GtkWidget* widget, const std::string& description);

}  // namespace companion::window
