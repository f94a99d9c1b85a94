#!/usr/bin/python3
"""Serves notifications on the session bus, and writes each one to a file as a line of JSON.

notification_server.py FILE    the first line, which is empty, says that it is ready
"""

import json
import sys

from gi.repository import Gio, GLib

INTERFACE = """<node><interface name="org.freedesktop.Notifications">
<method name="GetCapabilities"><arg type="as" direction="out"/></method>
<method name="Notify"><arg type="s" direction="in"/><arg type="u" direction="in"/>
<arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
<arg type="as" direction="in"/><arg type="a{sv}" direction="in"/><arg type="i" direction="in"/>
<arg type="u" direction="out"/></method>
</interface></node>"""


def main():
    record = open(sys.argv[1], "a", encoding="utf-8", buffering=1)

    def called(_bus, _sender, _path, _interface, method, arguments, invocation):
        if method == "GetCapabilities":
            invocation.return_value(GLib.Variant("(as)", (["body"],)))
            return
        _, _, _, title, text, *_ = arguments.unpack()
        record.write(json.dumps({"title": title, "text": text}) + "\n")
        invocation.return_value(GLib.Variant("(u)", (1,)))

    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
    bus.register_object("/org/freedesktop/Notifications", interface, called, None, None)
    Gio.bus_own_name_on_connection(bus, "org.freedesktop.Notifications", Gio.BusNameOwnerFlags.NONE,
                                   lambda *_: record.write("\n"), None)
    GLib.MainLoop().run()


main()
