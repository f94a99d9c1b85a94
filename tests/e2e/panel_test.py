#!/usr/bin/env python3
"""The whole way a user goes: the panel on a real screen, keys, and the window that opens.

Runs on a private desktop: tools/private-desktop python3 tests/e2e/panel_test.py QUILLON
"""

import json
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import time
import unittest

PATIENCE = 60  # seconds until something that should happen counts as missing
QUILLON = ""


def eventually(what, probe):
    """The first true answer of the probe; the test fails when none comes in time."""
    deadline = time.monotonic() + PATIENCE
    while True:
        answer = probe()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise AssertionError(f"never came: {what}")
        time.sleep(0.05)


def output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False).stdout


def windows(window_class, title=None):
    """The visible windows of the class, with the title if one is given."""
    found = output("xdotool", "search", "--onlyvisible", "--class", f"^{window_class}$").split()
    return [window for window in found
            if title in (None, output("xdotool", "getwindowname", window).rstrip("\n"))]


class Desktop(unittest.TestCase):
    """A home folder and a running quillon of its own for each test."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="quillon-e2e-")
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name)
        self.config = self.home / ".config"
        self.settings = self.config / "quillon" / "quillon.json"
        self.tree = self.home / "tree"
        self.tree.mkdir()
        self.children = []
        self.addCleanup(self.end_children)

    def end_children(self):
        for child in self.children:
            child.kill()
            child.wait()

    def environment(self):
        return dict(os.environ, HOME=str(self.home), XDG_CONFIG_HOME=str(self.config),
                    XDG_DATA_HOME=str(self.home / ".local/share"),
                    XDG_CACHE_HOME=str(self.home / ".cache"))

    def make_folders(self, *paths):
        for path in paths:
            os.makedirs(os.path.join(os.fsencode(self.tree), os.fsencode(path)))

    def write_settings(self):
        self.settings.parent.mkdir(parents=True)
        self.settings.write_text(json.dumps({
            "ShowQLNShortcut": "Ctrl+Alt+Space",
            "preemptive-apple-event-access": True,
            "qln-bookmarks": {str(self.tree): str(self.tree)},
        }))

    def open_folders_with(self, desktop_file):
        self.config.mkdir(exist_ok=True)
        (self.config / "mimeapps.list").write_text(
            f"[Default Applications]\ninode/directory={desktop_file}\n")

    def open_folders_with_recorder(self):
        """The file manager is a program that writes its argument down; returns the file."""
        record = self.home / "opened"
        recorder = self.home / "recorder"
        recorder.write_text(f'#!/bin/sh\nprintf "%s" "$1" > "{record}.new"\n'
                            f'mv "{record}.new" "{record}"\n')
        recorder.chmod(0o755)
        applications = self.home / ".local/share/applications"
        applications.mkdir(parents=True)
        (applications / "recorder.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Recorder\nExec={recorder} %f\n"
            "MimeType=inode/directory;\nCategories=FileManager;\n")
        self.open_folders_with("recorder.desktop")
        return record

    def start(self):
        child = subprocess.Popen([QUILLON], env=self.environment())
        self.children.append(child)
        self.wait_for_panel()
        return child

    def request(self, *options):
        return subprocess.run([QUILLON, *options], env=self.environment(), timeout=PATIENCE,
                              check=False).returncode

    def panel(self):
        return windows("quillon")

    def wait_for_panel(self):
        panel = eventually("the panel", self.panel)[0]
        eventually("the keyboard in the panel",
                   lambda: output("xdotool", "getactivewindow").strip() == panel)

    def wait_for_no_panel(self):
        eventually("the panel's end", lambda: not self.panel())

    def type(self, text, *keys):
        """Types the text and right after it presses the keys."""
        subprocess.run(["xdotool", "type", "--delay", "5", "--args", "1", text,
                        *(word for key in keys for word in ("key", key))], check=True)

    def press(self, key):
        subprocess.run(["xdotool", "key", key], check=True)

    def press_return_until_opened(self):
        """Without rows, as long as the first crawl runs, Return leaves the panel open."""
        def opened():
            if self.panel():
                self.press("Return")
                time.sleep(0.2)
            return not self.panel()
        eventually("the opened row", opened)

    def uses(self):
        return json.loads(self.settings.read_text()).get("recent-access-score-data", {})


class PanelTest(Desktop):
    def test_opens_the_chosen_folder_in_the_file_manager(self):
        self.make_folders("Documents/harbour plans/2024", "Documents/holiday", "Music/Vinyl")
        self.write_settings()
        self.open_folders_with("pcmanfm-qt.desktop")
        quillon = self.start()

        self.type("harplan")
        self.press_return_until_opened()
        eventually("the file manager's window", lambda: windows("pcmanfm-qt", "harbour plans"))
        chosen = str(self.tree / "Documents/harbour plans")
        self.assertEqual(self.uses(), {chosen: 1})

        # By the bus, as a desktop's own key settings do it; the former text is replaced.
        subprocess.run(["gdbus", "call", "--session", "--dest", "org.quillon.Quillon",
                        "--object-path", "/org/quillon/Quillon", "--method",
                        "org.freedesktop.Application.ActivateAction", "toggle", "[]", "{}"],
                       check=True, stdout=subprocess.DEVNULL, timeout=PATIENCE)
        self.wait_for_panel()
        self.type("vinyl", "Tab")
        eventually("the second window",
                   lambda: windows("pcmanfm-qt", "Vinyl"))
        self.assertEqual(self.uses(), {chosen: 1, str(self.tree / "Music/Vinyl"): 1})

        file_manager = int(output("xdotool", "getwindowpid", windows("pcmanfm-qt")[0]))
        os.kill(file_manager, signal.SIGKILL)
        self.assertEqual(self.request("--quit"), 0)
        self.assertEqual(quillon.wait(PATIENCE), 0)

    def test_is_shown_and_hidden_by_requests_and_keys(self):
        self.write_settings()
        self.assertEqual(self.request("--quit"), 1, "nothing runs that could be ended")
        quillon = self.start()
        self.press("Escape")
        self.wait_for_no_panel()
        self.assertEqual(self.request("--toggle"), 0)
        self.wait_for_panel()
        self.assertEqual(self.request("--toggle"), 0)
        self.wait_for_no_panel()
        self.assertEqual(self.request("--show"), 0)
        self.wait_for_panel()
        self.assertEqual(self.request("--show"), 0)
        self.assertTrue(self.panel(), "asked for again it stays")

        # Another window takes the keyboard: the panel is out of the way.
        other = subprocess.Popen(["xmessage", "other"], env=self.environment())
        self.children.append(other)
        message = eventually("the other window", lambda: windows("Xmessage"))[0]
        subprocess.run(["xdotool", "windowactivate", message], check=True)
        self.wait_for_no_panel()
        self.assertEqual(self.request(), 0, "a second start")
        self.wait_for_panel()
        state = output("xprop", "-id", self.panel()[0], "_NET_WM_STATE")
        for atom in ("ABOVE", "SKIP_TASKBAR", "SKIP_PAGER"):
            self.assertIn(atom, state)

        quillon.send_signal(signal.SIGTERM)
        self.assertEqual(quillon.wait(PATIENCE), 0)

    def test_opens_the_first_row_of_the_answer_to_all_that_was_typed(self):
        record = self.open_folders_with_recorder()
        self.make_folders("aardvark", "aardvark zoo", "aarhus")
        self.write_settings()
        self.start()
        self.type("aard")
        self.press_return_until_opened()
        eventually("the first folder", record.exists)
        record.unlink()

        # The rows of "aard" are still shown when Return comes.
        self.request("--show")
        self.wait_for_panel()
        self.type("aarhus", "Return")
        self.wait_for_no_panel()
        self.assertEqual(eventually("the folder", lambda: record.exists() and record.read_text()),
                         str(self.tree / "aarhus"))

    def test_opens_names_that_are_no_text_and_paths_through_links(self):
        record = self.open_folders_with_recorder()
        self.make_folders(b"caf\xe9 \xff noir", "real")
        (self.tree / "link").symlink_to(self.tree / "real")
        self.write_settings()
        self.start()
        self.type("caf noir")
        self.press_return_until_opened()
        eventually("the folder", record.exists)
        self.assertEqual(record.read_bytes(), os.fsencode(self.tree) + b"/caf\xe9 \xff noir")
        record.unlink()

        self.request("--show")
        self.wait_for_panel()
        self.type(str(self.tree / "link"), "Return")
        self.wait_for_no_panel()
        self.assertEqual(eventually("the folder", lambda: record.exists() and record.read_text()),
                         str(self.tree / "real"))

    def test_starts_from_nothing(self):
        record = self.open_folders_with_recorder()
        self.make_folders("first steps")
        self.start()
        def chosen():
            self.press("Return")
            return self.settings.exists() and json.loads(self.settings.read_text())
        settings = eventually("the home folder as the one to search", chosen)
        self.assertEqual(list(settings["qln-bookmarks"]), [str(self.home)])
        self.type("firste")
        self.press_return_until_opened()
        self.assertEqual(eventually("the folder", lambda: record.exists() and record.read_text()),
                         str(self.tree / "first steps"))

    def test_runs_without_a_session_bus(self):
        self.write_settings()
        environment = dict(self.environment(),
                           DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent/bus")
        child = subprocess.Popen([QUILLON], env=environment, stderr=subprocess.PIPE, text=True)
        self.children.append(child)
        self.wait_for_panel()
        child.send_signal(signal.SIGINT)
        _, diagnostics = child.communicate(timeout=PATIENCE)
        self.assertEqual(child.returncode, 0)
        self.assertEqual(len(diagnostics.splitlines()), 1, diagnostics)
        self.assertIn("no session bus", diagnostics)


if __name__ == "__main__":
    QUILLON = os.path.abspath(sys.argv.pop(1))
    unittest.main(verbosity=2)
