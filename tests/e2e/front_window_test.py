#!/usr/bin/env python3
"""Tests searching and choosing the items of the file manager window in front, on a real screen.

Runs on a private desktop, a new one for each file manager:
    tools/private-desktop python3 tests/e2e/front_window_test.py QUILLON MANAGER
"""

import os
import subprocess
import sys
import time

from desktop import Desktop, eventually, main, needs, output, windows

# Each file manager has a command for a window, a window class and a desktop id.
MANAGERS = {
    "nautilus": (["nautilus", "--new-window"], "org.gnome.Nautilus", "org.gnome.Nautilus"),
    "nemo": (["nemo"], "Nemo", "nemo"),
    "caja": (["caja", "--no-desktop"], "Caja", "caja-folder-handler"),
    "thunar": (["thunar"], "Thunar", "thunar"),
    "dolphin": (["dolphin", "--new-window"], "dolphin", "org.kde.dolphin"),
    "pcmanfm-qt": (["pcmanfm-qt"], "pcmanfm-qt", "pcmanfm-qt"),
}


class FrontWindowTest(Desktop):
    manager = ""

    def setUp(self):
        super().setUp()
        # It is not below the folders to search, so only the window can provide what is found here.
        self.shown = self.home / "shown"
        self.shown.mkdir()
        program, self.record = self.recorder()
        self.add_application("reader", f"Name=Reader\nExec={program} %f\nMimeType=text/plain;")
        self.command, self.window_class, desktop_id = MANAGERS[self.manager]
        needs(self.command[0])
        self.open_folders_with(f"{desktop_id}.desktop")
        with open(self.config / "mimeapps.list", "a", encoding="utf-8") as file:
            file.write("text/plain=reader.desktop\n")

    def show_in_front(self):
        manager = subprocess.Popen([*self.command, str(self.shown)], env=self.environment())
        self.children.append(manager)
        self.window = eventually("the file manager", lambda: windows(self.window_class))[0]
        eventually("its folder", lambda: output("xdotool", "getwindowname", self.window)
                   .startswith("shown"))
        subprocess.run(["xdotool", "windowactivate", self.window], check=True)
        eventually("the file manager in front", lambda: self.active() == self.window)

    @staticmethod
    def active():
        return output("xdotool", "getactivewindow").strip()

    def choose(self, text):
        """Asks repeatedly, since the window exists before the file manager can tell its folder."""
        def chosen():
            self.assertEqual(self.request("--toggle"), 0)
            self.wait_for_panel()
            self.type(text)
            for _ in range(10):
                self.press("Return")
                time.sleep(0.2)
                if not self.panel():
                    return True
            self.press("Escape")
            self.wait_for_no_panel()
            return False
        eventually("the chosen row", chosen)

    def test_opens_an_item_with_its_default_application(self):
        item = os.fsencode(self.shown) + b"/zebra \"quoted\" 100% \xc3\xa4.txt"
        # There is no application for the type of an empty file, so the file gets a text.
        with open(item, "w", encoding="utf-8") as file:
            file.write("text")
        self.write_settings({"finder-quick-search": True})
        self.start()
        self.press("Escape")
        self.wait_for_no_panel()
        self.show_in_front()
        self.choose("zequo")
        self.assertEqual(self.recorded(self.record), [item])

        # Over another window the same text finds nothing, so that Return leaves the panel open.
        other = subprocess.Popen(["xmessage", "other"], env=self.environment())
        self.children.append(other)
        message = eventually("the other window", lambda: windows("Xmessage"))[0]
        eventually("the other window in front", lambda: self.active() == message)
        self.assertEqual(self.request("--toggle"), 0)
        self.wait_for_panel()
        self.type("zequo", "Return")
        self.press("Return")
        self.assertTrue(self.panel())
        self.assertFalse(self.record.exists())

    def test_selects_an_item_where_the_user_wants_that(self):
        (self.shown / "aardvark.txt").touch()
        (self.shown / "zebra.txt").write_text("text", encoding="utf-8")
        self.write_settings({"finder-quick-search": True, "quick-search-behavior": "select"})
        self.start()
        self.press("Escape")
        self.wait_for_no_panel()
        self.show_in_front()
        self.choose("zebra")
        # It comes in a window of its own, except in nautilus, where Return opens the selected item.
        old = set() if self.manager == "nautilus" else {self.window}
        def opened():
            if self.active() in set(windows(self.window_class)) - old:
                self.press("Return")
            return self.record.exists()
        eventually("the selection", opened)
        self.assertEqual(self.recorded(self.record), [os.fsencode(self.shown / "zebra.txt")])


if __name__ == "__main__":
    FrontWindowTest.manager = sys.argv.pop()
    main()
