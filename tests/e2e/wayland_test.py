#!/usr/bin/env python3
"""Tests the panel of Wayland's own on a compositor without a screen.

Runs on a private desktop, whose X display must remain unused:
    tools/private-desktop python3 tests/e2e/wayland_test.py QUILLON native
"""

import json
import os
import subprocess
import sys
import unittest

from desktop import Desktop, eventually, main, needs, output, windows

OUTPUTS = ["HEADLESS-1", "HEADLESS-2"]
PANEL_PIXELS = 20000  # the panel has more light pixels than this, even without rows
ONE_ROW_PIXELS = 100000  # with one row it has fewer


class WaylandTest(Desktop):
    is_built = False

    def setUp(self):
        if not self.is_built:
            # The system's release may lack it, so this is no fault of the machine's.
            raise unittest.SkipTest("missing here: LayerShellQt for Qt 6")
        super().setUp()
        needs("sway", "wtype", "grim")
        self.write_settings({"ShowQLNShortcut": "desktop"})
        self.make_folders("alpha/documents", "beta/downloads")
        self.start_compositor()

    def start_compositor(self):
        told = self.home / "compositor"
        config = self.home / "sway.conf"
        config.write_text(
            "xwayland disable\n"
            + "".join(f"output {name} resolution 1280x{800 + 200 * i} position {1280 * i} 0\n"
                      for i, name in enumerate(OUTPUTS))
            # The file has its name only when it is complete.
            + f"exec env >{told}.new && mv {told}.new {told}\n")
        self.spawn("sway", "--config", config, WLR_BACKENDS="headless", WLR_RENDERER="pixman",
                   WLR_LIBINPUT_NO_DEVICES="1", WLR_HEADLESS_OUTPUTS=str(len(OUTPUTS)))
        eventually("the compositor", told.exists)
        for line in told.read_text().splitlines():
            name, _, value = line.partition("=")
            if name in ("WAYLAND_DISPLAY", "SWAYSOCK"):
                os.environ[name] = value
                self.addCleanup(os.environ.pop, name)
        # Otherwise the only keyboard would come and go with every key.
        self.spawn("wtype", "-s", "3600000")

    def spawn(self, *command, **variables):
        self.children.append(subprocess.Popen(command, env=dict(self.environment(), **variables),
                                              stderr=subprocess.DEVNULL))

    @staticmethod
    def focused():
        """Returns the title of the window with the keyboard, and None while a panel has it."""
        def find(node):
            if node["focused"]:
                return node["name"]
            return next(filter(None, map(find, node["nodes"] + node["floating_nodes"])), None)
        return find(json.loads(output("swaymsg", "--type", "get_tree", "--raw")))

    @staticmethod
    def light_pixels(name):
        picture = subprocess.run(["grim", "-o", name, "-t", "ppm", "-"], capture_output=True,
                                 check=True).stdout
        return picture.count(b"\xfc\xfc\xfd")

    def panel(self):
        """Returns the outputs that show a panel."""
        return [name for name in OUTPUTS if self.light_pixels(name) > PANEL_PIXELS]

    def wait_for_panel(self):
        eventually("the panel", self.panel)
        eventually("the keyboard in the panel", lambda: self.focused() is None)

    def type(self, text, *keys):
        subprocess.run(["wtype", text, *(word for key in keys for word in ("-k", key))], check=True)

    def press(self, key):
        # The keyboard stays, since the program may still ask about it while it handles the key.
        self.spawn("wtype", "-k", key, "-s", "3600000")

    def test_opens_a_folder_and_passes_the_keyboard_on(self):
        record = self.home / "token"
        program = self.home / "manager"
        program.write_text(f'#!/bin/sh\nprintf "%s %s" "$1" "$XDG_ACTIVATION_TOKEN" >"{record}.new"\n'
                           f'mv "{record}.new" "{record}"\n')
        program.chmod(0o755)
        self.add_application("manager", f"Name=Manager\nExec={program} %f\n"
                             "MimeType=inode/directory;\nCategories=FileManager;")
        self.open_folders_with("manager.desktop")
        output("swaymsg", "focus", "output", OUTPUTS[1])
        self.start()
        self.assertEqual(self.panel(), [OUTPUTS[1]])
        self.assertEqual(windows("quillon"), [], "it uses no X11")
        self.type("docum")
        self.press_return_until_opened()
        eventually("the opened folder", record.exists)
        folder, _, token = record.read_text().rpartition(" ")
        self.assertEqual(folder, str(self.tree / "alpha/documents"))
        self.assertNotEqual(token, "")

    def test_is_as_high_as_its_rows(self):
        output("swaymsg", "focus", "output", OUTPUTS[0])
        self.start()
        self.type("docum")
        def has_one_row():
            return PANEL_PIXELS < self.light_pixels(OUTPUTS[0]) < ONE_ROW_PIXELS
        eventually("the row", has_one_row)
        # The panel is hidden meanwhile, and has a text instead of rows for a moment.
        for _ in range(5):
            self.assertEqual(self.request("--rebuild"), 0)
            self.wait_for_panel()
            eventually("the row alone", has_one_row)

    def test_comes_where_the_user_is_and_gives_the_keyboard_back(self):
        self.addCleanup(os.environ.__setitem__, "DISPLAY", os.environ.pop("DISPLAY"))
        output("swaymsg", "focus", "output", OUTPUTS[0])
        self.start()
        self.assertEqual(self.panel(), OUTPUTS[:1])
        self.press("Escape")
        self.wait_for_no_panel()
        self.assertEqual(self.request("--preferences"), 0)
        eventually("the preferences", lambda: self.focused() == "Preferences")
        output("swaymsg", "focus", "output", OUTPUTS[1])
        self.assertEqual(self.request("--toggle"), 0)
        eventually("the panel on the other screen", lambda: OUTPUTS[1] in self.panel())
        self.press("Escape")
        eventually("the panel's end", lambda: OUTPUTS[1] not in self.panel())
        output("swaymsg", "focus", "output", OUTPUTS[0])
        eventually("the preferences again", lambda: self.focused() == "Preferences")
        self.assertEqual(self.request("--toggle"), 0)
        eventually("the keyboard in the panel", lambda: self.focused() is None)
        self.press("Escape")
        eventually("the keyboard back", lambda: self.focused() == "Preferences")


if __name__ == "__main__":
    WaylandTest.is_built = sys.argv.pop() == "native"
    main()
