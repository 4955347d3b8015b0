#!/usr/bin/python3
"""Stands in for velmora-desktop: takes its calls, keeps its choices, owns its name on the bus."""
import json
import os
import signal
import sys

from gi.repository import Gio, GLib

work = os.environ['WORK']
with open(work + '/host_calls', 'a') as calls:
    print(*sys.argv[1:], file=calls)
options = dict(option[2:].split('=', 1) for option in sys.argv[1:] if '=' in option)
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
name = 'com.brenvik.velmora.Desktop'


def ask_bus(method):
    answer = bus.call_sync('org.freedesktop.DBus', '/', 'org.freedesktop.DBus', method,
                           GLib.Variant('(s)', (name,)), None, 0, -1, None)
    return answer.unpack()[0]


runs = ask_bus('NameHasOwner')
if '--quit' in sys.argv and runs:
    os.kill(ask_bus('GetConnectionUnixProcessID'), signal.SIGTERM)
elif options:
    file = os.environ['XDG_CONFIG_HOME'] + '/velmora-desktop/placement.json'
    os.makedirs(os.path.dirname(file), exist_ok=True)
    kept = json.load(open(file)) if os.path.exists(file) else {'margin': 24}
    with open(file + '.new', 'w') as stream:
        json.dump(kept | options, stream)
    os.rename(file + '.new', file)
if runs or '--quit' in sys.argv or '--refresh' in sys.argv:
    sys.exit(0 if runs or '--refresh' not in sys.argv else 1)
Gio.bus_own_name_on_connection(bus, name, 0, None, None)
GLib.MainLoop().run()
