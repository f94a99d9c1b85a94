#!/usr/bin/env python3
"""A newcomer's way: from an empty home folder to the first folder that is opened, by keys alone.

Runs on a private desktop: tools/private-desktop python3 tests/e2e/first_run_test.py QUILLON
"""

import os
import subprocess
import time

from desktop import PATIENCE, Desktop, eventually, main, windows


class FirstRunTest(Desktop):
    def allow(self):
        self.children.append(subprocess.Popen([self.program], env=self.environment()))
        self.window("Quillon – Permissions")
        self.press("Return")

    def record_shortcut(self):
        """The recorder has the keyboard when the window comes up."""
        def recorded():
            if "ShowQLNShortcut" not in self.stored():
                self.press("space")
                time.sleep(0.2)
                self.press("ctrl+alt+space")
                time.sleep(0.2)
            return "ShowQLNShortcut" in self.stored()
        eventually("the shortcut", recorded)

    def choose_home(self):
        self.press("Tab")
        self.press("space")
        eventually("the home folder among those to search",
                   lambda: "qln-bookmarks" in self.stored())
        self.assertEqual(list(self.stored()["qln-bookmarks"]), [str(self.home)])

    def test_leads_from_an_empty_home_to_the_first_folder(self):
        record = self.open_folders_with_recorder()
        self.make_folders("first steps", "second steps")
        self.allow()
        self.window("Set Up Quillon")
        self.press("alt+d")
        self.assertTrue(windows("quillon", "Set Up Quillon"), "not done yet")
        self.record_shortcut()
        self.choose_home()
        self.press_until("alt+d", "the end of the set-up",
                         lambda: not windows("quillon", "Set Up Quillon"))

        # The build shows itself and hands over to the panel.
        self.wait_for_panel()
        self.assertFalse(windows("quillon", "Rebuild Quillon Search"))
        self.type("firste")
        self.press_return_until_opened()
        self.assertEqual(self.recorded(record), [os.fsencode(self.tree / "first steps")])

        self.press("ctrl+alt+space")
        self.wait_for_panel()
        self.type("seconds")
        self.press_return_until_opened()
        self.assertEqual(self.recorded(record), [os.fsencode(self.tree / "second steps")])

        # The next start goes straight to the panel.
        self.assertEqual(self.request("--quit"), 0)
        eventually("the end", lambda: self.children[0].poll() is not None)
        self.start()
        self.assertFalse(windows("quillon", "Set Up Quillon"))
        self.request("--quit")
        self.children[1].wait(PATIENCE)


if __name__ == "__main__":
    main()
