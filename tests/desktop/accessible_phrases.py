"""Prints what a screen reader finds of velmora-desktop: role and name of each element."""
import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi

desktop = Atspi.get_desktop(0)
for i in range(desktop.get_child_count()):
    application = desktop.get_child_at_index(i)
    if application is None or application.get_name() != "velmora-desktop":
        continue
    frame = application.get_child_at_index(0)
    for j in range(frame.get_child_count()):
        label = frame.get_child_at_index(j)
        print(f"{label.get_role_name()}: {label.get_name()}")
