#!/usr/bin/env python3
"""Tests a newcomer's way from an empty home folder to the first opened folder, by keys alone.

Runs on a private desktop: tools/private-desktop python3 tests/e2e/first_run_test.py QUILLON
"""

import os
import subprocess

from desktop import PATIENCE, Desktop, eventually, main, windows


class FirstRunTest(Desktop):
    def allow(self):
        self.children.append(subprocess.Popen([self.program], env=self.environment()))
        self.window("Quillon – Permissions")
        self.press("Return")

    def test_leads_from_an_empty_home_to_the_first_folder(self):
        record = self.open_folders_with_recorder()
        self.make_folders("first steps", "second steps")
        self.allow()
        self.window("Set Up Quillon")
        self.press_until("Return", "the end of the set-up",
                         lambda: not windows("quillon", "Set Up Quillon"))
        self.assertEqual(list(self.stored()["qln-bookmarks"]), [str(self.home)])
        self.assertEqual(self.stored()["ShowQLNShortcut"]["key"], "space")
        self.assertTrue((self.config / "autostart/org.quillon.Quillon.desktop").exists())

        # The panel is shown while the index is built.
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
