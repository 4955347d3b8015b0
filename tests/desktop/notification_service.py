#!/usr/bin/python3
"""A stand-in for the user's notification service. Arguments: a folder; how it behaves: well, hang,
refuse. It logs each call there, and does what is written to its fifo: click ID, flood ID, quit."""
import json
import os
import sys

import gi

gi.require_version('Gio', '2.0')
from gi.repository import Gio, GLib

INTERFACE = 'org.freedesktop.Notifications'
DESCRIPTION = f'''<node><interface name="{INTERFACE}">
<method name="GetCapabilities"><arg type="as" direction="out"/></method>
<method name="Notify"><arg type="s" direction="in"/><arg type="u" direction="in"/>
<arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
<arg type="as" direction="in"/><arg type="a{{sv}}" direction="in"/><arg type="i" direction="in"/>
<arg type="u" direction="out"/></method>
<method name="CloseNotification"><arg type="u" direction="in"/></method></interface></node>'''
folder, behaviour = sys.argv[1:]
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
loop = GLib.MainLoop()
last = 0


def called(_bus, _sender, _path, _interface, method, arguments, invocation):
    global last
    with open(folder + '/posted', 'a', encoding='utf-8') as log:
        log.write(json.dumps([method, *arguments.unpack()], ensure_ascii=False) + '\n')
    if behaviour == 'hang':
        return
    if behaviour == 'refuse' and method == 'Notify':
        return invocation.return_dbus_error(INTERFACE + '.Error', 'no')
    if method == 'GetCapabilities':
        return invocation.return_value(GLib.Variant('(as)', (['body', 'body-markup', 'actions'],)))
    if method == 'Notify':
        last += 1
        return invocation.return_value(GLib.Variant('(u)', (last,)))
    invocation.return_value(None)


def signal(name, kinds, *values):
    bus.emit_signal(None, '/org/freedesktop/Notifications', INTERFACE, name,
                    GLib.Variant(kinds, values))


def told(channel, _condition):
    words = os.read(channel, 100).decode().split()
    if words[:1] == ['click']:
        signal('ActivationToken', '(us)', int(words[1]), 'token-1')
        signal('ActionInvoked', '(us)', int(words[1]), 'default')
        signal('NotificationClosed', '(uu)', int(words[1]), 2)
    elif words[:1] == ['flood']:
        for number in range(20000):
            signal('ActionInvoked', '(us)', int(words[1]) if number % 2 else number, 'default')
    elif words[:1] == ['quit']:
        loop.quit()
    bus.flush_sync()
    return True


node = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION)
bus.register_object('/org/freedesktop/Notifications', node.interfaces[0], called)
Gio.bus_own_name_on_connection(bus, INTERFACE, Gio.BusNameOwnerFlags.NONE, None, None)
orders = os.open(folder + '/orders', os.O_RDWR)
GLib.io_add_watch(orders, GLib.PRIORITY_DEFAULT, GLib.IO_IN, told)
loop.run()
