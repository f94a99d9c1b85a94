#!/usr/bin/env python3
"""Tests the preferences window by keys alone: its panes, their sheets, and the stored settings.

Runs on a private desktop: tools/private-desktop /usr/bin/python3 tests/e2e/preferences_test.py QUILLON
"""

import json
import subprocess

from desktop import eventually, main, windows
from screen_reader import Atspi, ReadDesktop

PREFERENCES = "Preferences"
CHOOSER = "Choose the folders to search"


def names_of(control):
    """Returns its own name and those of its labels; a menu's own name is what it is set to."""
    labels = [relation.get_target(index) for relation in control.get_relation_set()
              if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY
              for index in range(relation.get_n_targets())]
    return [named.get_name() for named in (control, *labels)]


class PreferencesTest(ReadDesktop):
    def open_pane(self, key, name):
        """Starts the program with its preferences and goes to the pane."""
        self.children.append(subprocess.Popen([self.program, "--preferences"],
                                              env=self.environment(), stdout=subprocess.DEVNULL))
        self.window(PREFERENCES)
        self.press_until(key, f"the pane {name}", lambda: self.names("page tab list") == [name])

    def has_keyboard(self, name, role=None):
        return any(name in names_of(control) for control in self.controls(role)
                   if control.get_state_set().contains(Atspi.StateType.FOCUSED))

    def reads(self, text):
        """Waits until a window says so."""
        def probe():
            return any(text in control.get_name() for control in self.controls())
        try:
            eventually(text, probe)
        except AssertionError as error:
            said = [control.get_name() for control in self.controls() if control.get_name()]
            raise AssertionError(f"{error}; only {said}") from None

    def focus(self, key, name):
        """Goes to a control by its key."""
        self.press_until(key, f"the keyboard in {name}", lambda: self.has_keyboard(name))

    def comes_to_store(self, key, value):
        eventually(f"{key}: {value!r}", lambda: self.stored().get(key) == value)

    def actions(self):
        """The stored actions as (keys, kind, target)."""
        text = self.stored().get("qln-actions-list", "[]")
        return [("+".join(key for key, held in action["flags"].items() if held),
                 action["actionType"]["key"], action["actionTarget"]["key"])
                for action in json.loads(text)]

    def open_sheet(self, title, key):
        self.press(key)
        self.window(title)

    def add(self, title, *keys):
        """Opens a sheet from the menu of what can be added to the search locations."""
        before = windows("quillon")
        self.press("alt+d")
        eventually("the menu", lambda: len(windows("quillon")) > len(before))
        for key in (*keys, "Return"):
            self.press(key)
        self.window(title)

    def wait_for_sheets_end(self, title):
        eventually(f"the end of {title}", lambda: not windows("quillon", title))
        self.window(PREFERENCES)

    def remove_first_row(self, table):
        self.press_until("Tab", f"the keyboard in {table}",
                         lambda: self.has_keyboard(table, "table"))
        self.press("Home")
        self.press("Delete")

    def clear_and_type(self, text):
        self.press("ctrl+a")
        self.press("BackSpace")
        if text:
            self.type(text)

    def test_general(self):
        self.make_folders("plain")
        self.write_settings()
        program, _ = self.recorder()
        self.add_application("zz-recorder", f"Name=Zz Recorder\nExec={program} %f\n"
                             "MimeType=inode/directory;\nCategories=FileManager;")
        self.open_pane("alt+g", "General")
        self.focus("alt+f", "File manager:")
        self.type("zz")
        self.comes_to_store("file-manager", "zz-recorder.desktop")
        self.focus("alt+o", "Open folders in:")
        self.press("Down")
        self.comes_to_store("open-finder-behavior", "existing")
        self.press("alt+i")
        self.comes_to_store("finder-quick-search", True)
        self.focus("alt+t", "Choosing one of them:")
        self.press("Down")
        self.comes_to_store("quick-search-behavior", "select")
        self.press("alt+l")
        entry = self.config / "autostart" / "org.quillon.Quillon.desktop"
        eventually("the start at login", entry.exists)

        # A key alone is no shortcut; the next one is.
        self.press("alt+r")
        self.reads("Escape keeps the shortcut as it is")
        self.press("b")
        self.reads("Ctrl, Alt or Super")
        self.assertEqual(self.stored()["ShowQLNShortcut"], "Ctrl+Alt+Space")
        self.press("ctrl+alt+b")
        self.comes_to_store("ShowQLNShortcut", {"key": "b", "modifiers": ["Ctrl", "Alt"]})

        self.press("Escape")
        eventually("the end of the window", lambda: not windows("quillon", PREFERENCES))
        self.press("ctrl+alt+b")
        self.wait_for_panel()

    def test_actions(self):
        self.write_settings()
        script = self.home / "my script"
        script.write_text("#!/bin/sh\n")
        self.open_pane("alt+a", "Actions")
        self.reads("Alt+Shift+Return will Open Application with Terminal")
        self.assertEqual(self.actions(), [], "looking stores nothing")

        self.open_sheet("Add Action", "alt+d")
        eventually("the keyboard in the first menu", lambda: self.has_keyboard("Keys:"))
        self.focus("alt+a", "Action:")
        self.type("exe")
        self.focus("alt+w", "With:")
        self.press("Return")
        self.reads("Which program is to be run?")
        for typed, message in (("script", "The path of a program begins with “/”."),
                               (str(self.home / "gone"), "There is no such file."),
                               (str(self.home), "This is a folder, not a program."),
                               (str(script), "This file may not be run.")):
            self.clear_and_type(typed)
            self.reads(message)
        self.press("Return")
        self.wait_for_sheets_end("Add Action")
        self.reads(f"Shift+Return will Execute Shell Command with {script}")
        self.assertEqual(len(self.actions()), 5, "the built-in ones are written with it")
        self.assertEqual(self.actions()[-1], ("shift", "Execute Shell Command", str(script)))

        self.open_sheet("Add Action", "alt+d")
        self.press("Escape")
        self.wait_for_sheets_end("Add Action")
        self.remove_first_row("Actions")
        eventually("four actions", lambda: len(self.actions()) == 4)
        self.assertNotIn("Open in Default App", [kind for _, kind, _ in self.actions()])

    def test_search(self):
        self.make_folders("harvest", "other/part", "other/within")
        gone = str(self.home / "stick")
        self.write_settings({"qln-bookmarks": {str(self.tree / "other"): str(self.tree / "other"),
                                               gone: gone}})
        self.open_pane("alt+s", "Search")
        self.reads(f"{gone} – Include Folder, Recursive – not there now")
        self.reads("3 folders indexed")

        exclude = "Exclude Folders Matching Pattern"
        self.add(exclude, "Down", "Down")
        self.focus("alt+p", "Pattern:")
        self.press("Return")
        self.reads("Which text is to keep folders out?")
        self.type("_extras")
        self.reads("“_extras” is listed already.")
        self.press("Return")
        self.clear_and_type("within")
        self.reads("Leaves out 1 of 3 indexed folders")
        self.press("Return")
        self.wait_for_sheets_end(exclude)
        self.assertEqual(self.stored()["exclude-folder-patterns"][-1], "within")
        self.reads("Takes effect after a rebuild")

        extension = "Include Files with Extension"
        self.add(extension, "Up")
        self.focus("alt+e", "Extension:")
        self.type("tar.gz")
        self.reads("Only what follows the last dot counts: “gz”.")
        self.press("Return")
        self.clear_and_type("blend")
        self.press("Return")
        self.wait_for_sheets_end(extension)
        self.assertEqual(self.stored()["include-file-patterns"][-1], "blend")

        for folder, message in (("harvest", "harvest – Include Folder, Recursive"),
                                ("other/part", "is searched already, as a part of")):
            self.add(CHOOSER, "Down")
            self.clear_and_type(str(self.tree / folder))
            self.press("Return")
            self.wait_for_sheets_end(CHOOSER)
            self.reads(message)
        self.assertEqual(sorted(self.stored()["qln-bookmarks"]),
                         [gone, str(self.tree / "harvest"), str(self.tree / "other")])

        self.remove_first_row("Search locations")
        eventually("the end of the lost folder", lambda: gone not in self.stored()["qln-bookmarks"])
        self.press("alt+b")
        self.reads("3 folders indexed")

    def test_advanced(self):
        self.make_folders("harbour plans")
        uses = {str(self.tree / "harbour plans"): 3}
        self.write_settings({"recent-access-score-data": uses})
        self.open_pane("alt+v", "Advanced")
        self.press("alt+b")
        self.comes_to_store("enable-beta-updates", True)

        dump = self.home / "dump.txt"
        self.open_sheet("Dump File Location", "alt+t")
        self.reads("Choose where you want to save the file tree dump file")
        self.clear_and_type(str(dump))
        self.press("Return")
        self.reads(f"Written to {dump}")
        self.assertIn("\n\nFile Tree:\n\n", dump.read_text())
        self.assertIn("harbour plans", dump.read_text())
        self.window(PREFERENCES)

        self.open_sheet("Forget Folders", "alt+f")
        self.reads("harbour plans – 3")
        self.press("alt+a")
        eventually("the end of the uses", lambda: not self.uses())
        self.press("Escape")
        self.wait_for_sheets_end("Forget Folders")

        # What cannot be taken back is not done by a Return too many.
        self.open_sheet("Set Up Again", "alt+u")
        self.press("Return")
        self.wait_for_sheets_end("Set Up Again")
        self.assertIn("ShowQLNShortcut", self.stored())
        self.open_sheet("Set Up Again", "alt+u")
        self.press("alt+f")
        self.window("Set Up Quillon")
        for key in ("ShowQLNShortcut", "qln-bookmarks"):
            self.assertNotIn(key, self.stored())
        self.assertTrue(self.stored()["enable-beta-updates"], "the rest is kept")


if __name__ == "__main__":
    main()
