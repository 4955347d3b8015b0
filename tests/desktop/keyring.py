"""A Secret Service with a default collection that is locked until SIGUSR1 comes, and no item."""
import signal

from gi.repository import Gio, GLib

INTERFACE = Gio.DBusNodeInfo.new_for_xml("""
<node><interface name="org.freedesktop.Secret.Collection">
  <property name="Locked" type="b" access="read"/>
</interface></node>""").interfaces[0]
PATH = "/org/freedesktop/secrets/aliases/default"
locked = True


def read(*_):
    return GLib.Variant("b", locked)


def unlock():
    global locked
    locked = False
    bus.emit_signal(None, PATH, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                    GLib.Variant("(sa{sv}as)", (INTERFACE.name, {"Locked": read()}, [])))
    return False


bus = Gio.bus_get_sync(Gio.BusType.SESSION)
bus.register_object(PATH, INTERFACE, None, read, None)
Gio.bus_own_name_on_connection(bus, "org.freedesktop.secrets", Gio.BusNameOwnerFlags.NONE,
                               lambda *_: print("ready", flush=True), None)
GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGUSR1, unlock)
GLib.MainLoop().run()
