#!/usr/bin/python3
"""A window in the top left corner of the screen from which a file can be dragged."""
import sys

import gi

gi.require_version('Gdk', '4.0')
gi.require_version('Gtk', '4.0')
from gi.repository import Gdk, Gio, GLib, GObject, Gtk  # noqa: E402

Gtk.init()
value = GObject.Value(Gio.File, Gio.File.new_for_path(sys.argv[1]))
source = Gtk.DragSource(content=Gdk.ContentProvider.new_for_value(value),
                        actions=Gdk.DragAction.COPY)
label = Gtk.Label(label='Drag me')
label.add_controller(source)
Gtk.Window(title='Source', child=label, default_width=120, default_height=120).present()
GLib.MainLoop().run()
