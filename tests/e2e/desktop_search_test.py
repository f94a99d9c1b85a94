#!/usr/bin/env python3
"""Tests the answers to the desktops' own searches, with the calls as GNOME's overview and KRunner
make them, and what the terminal has the running program open.

Runs on a private desktop:
tools/private-desktop /usr/bin/python3 tests/e2e/desktop_search_test.py QUILLON QUILLONCTL
"""

import json
import os
import statistics
import subprocess
import sys
import time
import urllib.parse

from desktop import PATIENCE, Desktop, eventually, lacks, main, output, windows

try:
    from gi.repository import Gio, GLib
except ImportError:
    Gio = None

NAME = "org.quillon.Quillon"
SHELL = "org.gnome.Shell.SearchProvider2"
RUNNER = "org.kde.krunner1"
# Each method with the types that it is called with and that the caller expects back.
TYPES = {
    "GetInitialResultSet": ("(as)", "(as)"), "GetSubsearchResultSet": ("(asas)", "(as)"),
    "GetResultMetas": ("(as)", "(aa{sv})"), "ActivateResult": ("(sasu)", "()"),
    "LaunchSearch": ("(asu)", "()"),
    "Actions": ("()", "(a(sss))"), "Match": ("(s)", "(a(sssida{sv}))"), "Run": ("(ss)", "()"),
    "Teardown": ("()", "()"), "Find": ("(ayayusb)", "(a(ayda(xx)))"),
}
FOLDERS = 5_000
LONGEST_DELAY = 0.030  # seconds that an answer may take longer than the search


class DesktopSearchTest(Desktop):
    ctl = ""

    def setUp(self):
        if Gio is None:
            lacks("python3-gi")
        super().setUp()
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)

    def call(self, interface, method, *arguments):
        takes, returns = TYPES[method]
        answer = self.bus.call_sync(
            NAME, "/org/quillon/Quillon", interface, method, GLib.Variant(takes, arguments),
            GLib.VariantType(returns), Gio.DBusCallFlags.NO_AUTO_START, PATIENCE * 1000)
        return answer.unpack()[0] if returns != "()" else None

    def start_hidden(self):
        """Starts the program, of which the first question may be asked as soon as it is there."""
        self.children.append(subprocess.Popen([self.program, "--background"],
                                              stdout=subprocess.DEVNULL, env=self.environment()))
        owner = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                 "NameHasOwner", GLib.Variant("(s)", (NAME,)), GLib.VariantType("(b)"),
                 Gio.DBusCallFlags.NONE, -1)
        eventually("the program", lambda: self.bus.call_sync(*owner).unpack()[0])

    def uri(self, path):
        return "file://" + urllib.parse.quote(os.fsencode(self.tree) + b"/" + path)

    def test_the_overview(self):
        self.make_folders("Documents/harbour", "Documents/harbour plans", b"caf\xe9\n harbour")
        self.write_settings()
        record = self.open_folders_with_recorder()
        self.start_hidden()
        paths = [b"Documents/harbour", b"Documents/harbour plans", b"caf\xe9\n harbour"]
        found = self.call(SHELL, "GetInitialResultSet", ["harb"])
        self.assertEqual(found, [self.uri(path) for path in paths], "the first answer has all")
        ctl = subprocess.run([self.ctl, "find", "-0", "harb"], env=self.environment(), check=True,
                             capture_output=True).stdout.split(b"\0")[:-1]
        self.assertEqual([os.fsencode(self.tree) + b"/" + path for path in paths], ctl)
        self.assertEqual(windows("quillon"), [])

        self.assertEqual(self.call(SHELL, "GetSubsearchResultSet", found[2:], ["plans", "harb"]),
                         [self.uri(paths[1])], "the words in any order, as the panel has them")
        self.assertEqual(self.call(SHELL, "GetInitialResultSet", ["h"]), [])

        metas = self.call(SHELL, "GetResultMetas", found)
        self.assertEqual([(meta["id"], meta["name"], meta["description"]) for meta in metas],
                         [(found[0], "harbour", "~/tree/Documents"),
                          (found[1], "harbour plans", "~/tree/Documents"),
                          (found[2], "caf\ufffd\ufffd harbour", "~/tree")])
        icon = Gio.Icon.deserialize(GLib.Variant("(sv)", metas[0]["icon"][:1] + (
            GLib.Variant("as", metas[0]["icon"][1]),)))
        self.assertEqual(icon.get_names()[0], "folder")
        self.assertEqual(self.call(SHELL, "GetResultMetas", ["no id", "file:relative"]), [])

        self.call(SHELL, "ActivateResult", found[2], ["harb"], 0)
        self.assertEqual(self.recorded(record), [os.fsencode(self.tree) + b"/" + paths[2]])
        self.wait_for_uses([1])
        self.assertEqual(windows("quillon"), [])

        # The whole search goes on in the panel.
        self.call(SHELL, "LaunchSearch", ["harb", "plans"], 0)
        self.wait_for_panel()
        self.wait_for_text("harb plans")
        self.press_return_until_opened()
        self.assertEqual(self.recorded(record), [os.fsencode(self.tree) + b"/" + paths[1]])
        for terms in ["music"], ["docu", "harb"]:
            self.call(SHELL, "LaunchSearch", terms, 0)
            self.wait_for_panel()
            self.wait_for_text(" ".join(terms))

    def wait_for_text(self, text):
        """Waits until the panel's field holds the text, which it also selects and copies."""
        def copied():
            self.press("ctrl+a")
            self.press("ctrl+c")
            return output("xclip", "-selection", "clipboard", "-o")
        eventually(f"{text} in the panel", lambda: copied() == text)

    def test_krunner(self):
        self.make_folders("Documents/Harbour", "Harbour/a", "Harbour/b", "harbour master",
                          b"harbour \xff")
        self.write_settings()
        record = self.open_folders_with_recorder()
        self.start_hidden()
        actions = self.call(RUNNER, "Actions")
        self.assertEqual([action[:2] for action in actions],
                         [("show-parent", "Show parent"), ("copy-path", "Copy path")])
        matches = self.call(RUNNER, "Match", "harbour")
        self.assertEqual(len(matches), 6)
        for identity, text, icon, kind, relevance, more in matches:
            self.assertEqual(kind, 100 if text == "Harbour" else 30, text)
            self.assertTrue(0 < relevance <= 1, relevance)
            self.assertEqual(icon, "folder")
            self.assertEqual(more["urls"], [identity])
            self.assertEqual(identity == self.uri(b"harbour \xff"), text == "harbour \ufffd")
        ranked = sorted(matches, key=lambda match: -match[4])
        self.assertEqual([match[1] for match in ranked[:2]], ["Harbour", "Harbour"])
        for kind in (100, 30):
            alike = [match[0] for match in matches if match[3] == kind]
            self.assertEqual([match[0] for match in ranked if match[3] == kind], alike)
        harbour = next(match for match in matches if match[0] == self.uri(b"Documents/Harbour"))
        self.assertEqual(harbour[5]["subtext"], "~/tree/Documents")

        self.call(RUNNER, "Run", self.uri(b"harbour \xff"), "")
        self.assertEqual(self.recorded(record), [os.fsencode(self.tree) + b"/harbour \xff"])
        self.call(RUNNER, "Run", harbour[0], "copy-path")
        eventually("the path in the clipboard", lambda: output(
            "xclip", "-selection", "clipboard", "-o") == f"{self.tree}/Documents/Harbour")
        self.call(RUNNER, "Run", harbour[0], "show-parent")
        self.assertIn(os.fsencode(self.tree / "Documents"), self.recorded(record)[0])
        self.call(RUNNER, "Run", "file:relative", "")
        self.call(RUNNER, "Teardown")
        self.wait_for_uses([1, 2])
        self.assertEqual(windows("quillon"), [])

    def test_the_terminal_opens_what_the_panel_would(self):
        self.make_folders(b"caf\xe9\n \"harbour\"", "gone", "tree.xcodeproj")
        self.write_settings()
        record = self.open_folders_with_recorder()
        self.start_hidden()

        def opened(*paths, status=0):
            done = subprocess.run([self.ctl, "open", *paths], env=self.environment(), check=False,
                                  capture_output=True, cwd=self.tree)
            self.assertEqual((done.returncode, done.stdout), (status, b""), done.stderr)
            return done.stderr.decode(errors="replace")

        self.assertEqual(opened(b"caf\xe9\n \"harbour\"/."), "")
        path = os.fsencode(self.tree) + b"/caf\xe9\n \"harbour\""
        self.assertEqual(self.recorded(record), [path])
        self.wait_for_uses([1])
        self.assertEqual(opened("nowhere", "gone", status=1), "quillonctl: nowhere: is not there\n")
        self.assertEqual(self.recorded(record), [os.fsencode(self.tree / "gone")])
        self.wait_for_uses([1, 1])
        # What fails counts no use, and says why.
        settings = json.loads(self.settings.read_text())
        settings["qln-actions-list"] = json.dumps([{
            "actionTarget": {"key": "/no/program"},
            "actionType": {"requiresTarget": True, "key": "Execute Shell Command"},
            "flags": {"option": False, "shift": False, "command": False}}])
        self.settings.write_text(json.dumps(settings))
        self.assertEqual(opened("tree.xcodeproj", status=1), "quillonctl: tree.xcodeproj: the program "
                         '"/no/program" does not exist or may not be run\n')
        self.wait_for_uses([1, 1])
        other = dict(self.environment(), XDG_CONFIG_HOME=str(self.home / "other"))
        done = subprocess.run([self.ctl, "open", self.tree], env=other, check=False,
                              capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stderr), (1, f"quillonctl: {self.tree}: the running "
                                                          "Quillon has other settings\n"))

    def test_can_be_switched_off(self):
        self.make_folders("harbour")
        self.write_settings()
        self.start_hidden()
        self.assertEqual(len(self.call(RUNNER, "Match", "harbour")), 1)
        text = self.settings.read_text()
        self.settings.write_text(text[:-1] + ', "hide-from-desktop-search": true}')
        self.assertEqual(self.call(RUNNER, "Match", "harbour"), [])
        self.assertEqual(self.call(SHELL, "GetInitialResultSet", ["harbour"]), [])
        self.settings.write_text(text)
        self.assertEqual(len(self.call(SHELL, "GetInitialResultSet", ["harbour"])), 1)

    def test_answers_in_time(self):
        for number in range(FOLDERS):
            os.makedirs(self.tree / f"{number // 1000}/{number // 10 % 100}/folder {number}")
        self.write_settings()
        self.start_hidden()
        last = f"folder {FOLDERS - 1}"
        eventually("the whole index",
                   lambda: self.call(RUNNER, "Match", last) and "ready" in output(
                       "gdbus", "call", "--session", "--dest", NAME, "--object-path",
                       "/org/quillon/Quillon", "--method", NAME + ".Search.Status"))

        asked = {
            "the command line": lambda text: self.call(
                NAME + ".Search", "Find", os.fsencode(self.settings), text.encode(), 25, "", True),
            "the overview": lambda text: self.call(SHELL, "GetInitialResultSet", text.split()),
            "KRunner": lambda text: self.call(RUNNER, "Match", text),
        }
        # They take turns, so that what else the machine does delays all of them.
        times = {who: [] for who in asked}
        for length in range(2, len(last) + 1):
            for who, ask in asked.items():
                begin = time.monotonic()
                self.assertNotEqual(ask(last[:length]), [])
                times[who].append(time.monotonic() - begin)
        median = {who: statistics.median(taken) for who, taken in times.items()}
        for who, taken in times.items():
            print(f"{who}: {1000 * median[who]:.1f} ms, at most {1000 * max(taken):.1f} ms")
        # The search itself takes as long as the build of the program makes it.
        for who, time_taken in median.items():
            self.assertLess(time_taken, 1.5 * median["the command line"] + LONGEST_DELAY, who)


if __name__ == "__main__":
    DesktopSearchTest.ctl = os.path.abspath(sys.argv.pop(2))
    main()
