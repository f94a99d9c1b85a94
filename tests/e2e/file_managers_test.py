#!/usr/bin/env python3
"""Tests real file managers on a real screen, which are asked through the program's own service.

The effect of a call is seen from outside: by the windows' titles and states, and by the folders that
the file manager's process watches.

    tools/private-desktop --home DIR python3 tests/e2e/file_managers_test.py DRIVER [--table FILE]
        [MANAGER...]

With --table, writes a page with what was seen and how long it took.
"""

import argparse
import json
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.parse

from desktop import PATIENCE, eventually, finish, is_soon, needs, output

DRIVER = ""
# Each file manager has a window class and a desktop id.
MANAGERS = {
    "nautilus": ("org.gnome.Nautilus", "org.gnome.Nautilus"),
    "nemo": ("Nemo", "nemo"),
    "caja": ("Caja", "caja-folder-handler"),
    "thunar": ("Thunar", "thunar"),
    "dolphin": ("dolphin", "org.kde.dolphin"),
    "pcmanfm-qt": ("pcmanfm-qt", "pcmanfm-qt"),
}
# The names are bytes. Qt's file managers show no name that is not valid UTF-8.
NAMES = {
    "blanks": b"two  words", "quotes": b"it's \"so\"", "umlauts": "Übergrößen".encode(),
    "percent": b"100%25 sure", "line feed": b"one\ntwo", "not UTF-8": b"caf\xe9",
}
CANNOT = {("dolphin", "not UTF-8"), ("pcmanfm-qt", "not UTF-8")}
# This name cannot be written into the entry, so the front window stays as it is.
OPENED_ANEW = {("thunar", "not UTF-8")}
LIMIT = 3000 + 700  # the milliseconds for one call, and what a busy machine adds
SEEN = {}  # the milliseconds or a remark for each manager and operation


def active_window():
    return output("xdotool", "getactivewindow").strip()


def is_minimised(window):
    return "_NET_WM_STATE_HIDDEN" in output("xprop", "-id", window, "_NET_WM_STATE")


def watched_inodes(process):
    """Returns the inode numbers of the folders that a process watches, as the kernel gives them."""
    inodes = set()
    for path in pathlib.Path(f"/proc/{process}/fdinfo").iterdir():
        try:
            text = path.read_text()
        except OSError:
            continue
        inodes.update(int(word[4:], 16) for line in text.splitlines() if line.startswith("inotify")
                      for word in line.split() if word.startswith("ino:"))
    return inodes


class FileManager:
    """The tests for every file manager. The end of the file makes a class of it for each one."""

    manager = ""

    def setUp(self):
        needs(self.manager, "xdotool", "xprop")
        self.window_class, self.desktop_id = MANAGERS[self.manager]
        folder = tempfile.TemporaryDirectory(prefix="fm-", dir=os.environ["HOME"])
        self.addCleanup(folder.cleanup)
        self.addCleanup(self.end_manager)
        self.tree = os.fsencode(folder.name)
        self.other = None

    def folder(self, *names):
        path = os.path.join(self.tree, *(os.fsencode(name) for name in names))
        os.makedirs(path, exist_ok=True)
        return path

    def ask(self, *arguments):
        run = subprocess.run([DRIVER, "--application", self.desktop_id, *arguments],
                             capture_output=True, timeout=PATIENCE, check=True)
        return json.loads(run.stdout)

    def do(self, operation, *arguments, seen=None):
        answer = self.ask(operation, *arguments)
        self.assertTrue(answer["isDone"], (operation, arguments))
        self.note(seen, answer["milliseconds"])
        self.last_request = (operation, *arguments)

    def leads_windows(self):
        """Returns false for nautilus from release 47 on, whose windows cannot be led elsewhere."""
        return self.manager != "nautilus" or int(version("nautilus").partition(".")[0]) < 47

    def note(self, operation, milliseconds):
        if operation:
            SEEN.setdefault(self.manager, {})[operation] = f"{milliseconds:.0f} ms"

    def windows(self):
        """Returns all of its windows except dialogues and the desktop, by number."""
        listed = output("xprop", "-root", "_NET_CLIENT_LIST").partition("# ")[2]
        windows = [str(int(number, 16)) for number in listed.split(", ") if number.strip()]
        return [window for window in windows if self.is_own(window)]

    def is_own(self, window):
        told = output("xprop", "-id", window, "WM_CLASS", "_NET_WM_WINDOW_TYPE")
        return f'"{self.window_class}"' in told and "TYPE_NORMAL" in told

    def shows(self, window, path):
        """Returns whether the title names the folder and the process watches or reports it."""
        name = os.path.basename(path).decode(errors="replace").partition("\n")[0]
        title = output("xdotool", "getwindowname", window)
        process = output("xdotool", "getwindowpid", window).strip()
        if not process or not title.startswith(name.partition("\ufffd")[0]):
            return False
        if self.manager == "nautilus":
            told = output("gdbus", "call", "--session", "--dest", "org.gnome.Nautilus",
                          "--object-path", "/org/freedesktop/FileManager1", "--method",
                          "org.freedesktop.DBus.Properties.Get", "org.freedesktop.FileManager1",
                          "OpenWindowsWithLocations")
            return path in urllib.parse.unquote_to_bytes(told)
        return os.stat(path).st_ino in watched_inodes(process)

    def wait_for(self, path, count):
        """Waits for this many windows, of which the active one shows the folder, and returns it."""
        def found():
            windows = self.windows()
            active = active_window()
            return len(windows) == count and active in windows and self.shows(active, path) and active
        # On a busy machine pcmanfm-qt loses a request for a window now and then: its launcher waits
        # for ever for a job that ended before the waiting began.
        if self.manager == "pcmanfm-qt" and not is_soon(found, PATIENCE / 3):
            self.ask(*self.last_request)
        try:
            return eventually(path, found)
        except AssertionError as missing:
            windows = {window: (output("xdotool", "getwindowname", window).rstrip("\n"),
                                self.shows(window, path)) for window in self.windows()}
            raise AssertionError(f"{missing}; active {active_window()} of {windows}") from missing

    def end_manager(self):
        """Ends every process whose windows this test has opened."""
        for window in self.windows():
            process = output("xdotool", "getwindowpid", window).strip()
            if process:
                os.kill(int(process), signal.SIGKILL)
                eventually("the end of the window", lambda: window not in self.windows())

    def open_other_window(self):
        other = subprocess.Popen(["xmessage", "other"])
        self.addCleanup(other.wait)
        self.addCleanup(other.kill)
        window = eventually("the other window",
                            lambda: output("xdotool", "search", "--class", "^Xmessage$").split())[0]
        eventually("the other window in front", lambda: active_window() == window)

    def open_foreign_window(self):
        """Opens a window of another program that has the file manager's window class."""
        foreign = subprocess.Popen(["xterm", "-class", self.window_class, "-title", "foreign",
                                    "-e", "sleep", "1000"])
        self.addCleanup(foreign.wait)
        self.addCleanup(foreign.kill)
        window = eventually("the foreign window",
                            lambda: output("xdotool", "search", "--name", "^foreign$").split())[0]
        eventually("the foreign window in front", lambda: active_window() == window)
        return foreign

    def test_opens_folders_in_windows(self):
        one, two, three = (self.folder(name) for name in ("first", "second", "third"))
        self.do("existing", one, seen="front window, none open")
        first = self.wait_for(one, 1)
        self.do("new", two, seen="new window")
        second = self.wait_for(two, 2)

        self.open_other_window()
        self.do("existing", three, seen="front window")
        if not self.leads_windows():
            self.assertNotIn(self.wait_for(three, 3), (first, second))
            return
        self.assertEqual(self.wait_for(three, 2), second)
        self.do("existing", three)
        self.assertEqual(self.wait_for(three, 2), second, "shown already")

        for window in (first, second):
            output("xdotool", "windowminimize", window)
            eventually("a minimised window", lambda: is_minimised(window))
        self.do("existing", one, seen="front window, all minimised")
        third = self.wait_for(one, 3)
        self.assertNotIn(third, (first, second))
        self.assertTrue(is_minimised(second))

    def test_passes_over_windows_of_other_programs(self):
        here, there = self.folder("here"), self.folder("there")
        self.do("new", here)
        window = self.wait_for(here, 1)
        foreign = self.open_foreign_window()
        self.do("existing", there)
        if self.leads_windows():
            self.assertEqual(self.wait_for(there, 1), window)
        else:
            self.assertNotEqual(self.wait_for(there, 2), window)
        self.assertIsNone(foreign.poll())

    def test_selects_items(self):
        foreign = self.open_foreign_window()
        wanted = self.folder("items", "m wanted")
        for name in ("a", "z"):
            self.folder("items", name)
        for seen in ("select, not running", "select"):
            before = set(self.windows())
            self.do("select", wanted, os.path.dirname(wanted), seen=seen)
            self.wait_for(os.path.dirname(wanted), len(before) + 1)
            # Return opens what is selected, and does nothing when nothing is selected.
            def opened():
                output("xdotool", "key", "Return")
                time.sleep(0.2)
                return any(self.shows(window, wanted) for window in set(self.windows()) - before)
            eventually("the selected folder, opened", opened)
        self.assertIsNone(foreign.poll(), "only windows that were opened are closed")

    def test_tells_the_front_window(self):
        shown = self.folder("shown folder")
        self.folder("shown folder", "inside")
        self.folder("shown folder", ".hidden")
        pathlib.Path(os.fsdecode(shown), "file").touch()
        self.do("new", shown)
        self.wait_for(shown, 1)
        # The window is there before the file manager has its controls ready.
        answer = eventually("the folder", lambda: (found := self.ask("front"))["folder"] and found)
        path = pathlib.Path(os.fsdecode(shown))
        self.assertEqual(answer["folder"], path.as_uri())
        self.assertTrue(answer["isFrontmost"])
        self.assertEqual(sorted(answer["items"]),
                         [(path / "file").as_uri(), (path / "inside").as_uri() + "/"])
        self.note("folder of the front window", answer["milliseconds"])

        self.open_other_window()
        answer = self.ask("front")
        self.assertEqual((answer["isFrontmost"], answer["folder"], answer["items"]), (False, "", []))

    def test_knows_folders_by_titles_that_are_no_names(self):
        """Some name the home folder "Home", in the user's language, and the root "File System"."""
        self.do("new", self.folder("here"))
        self.wait_for(self.folder("here"), 1)
        for place in (os.environ["HOME"], "/"):
            windows = self.windows()
            self.do("existing", place)
            if self.leads_windows():
                self.assertEqual(self.windows(), windows, place)
            uri = pathlib.Path(place).as_uri()
            answer = eventually(place, lambda uri=uri: (found := self.ask("front"))["folder"] == uri
                                and found)
            windows = self.windows()
            self.do("existing", place)
            self.assertEqual(self.windows(), windows, f"{place}, shown already")
            names = {name for name in os.listdir(place) if not name.startswith(".")}
            self.assertEqual({urllib.parse.unquote(os.path.basename(item.rstrip("/")))
                              for item in answer["items"]}, names)

    def test_opens_names_exactly(self):
        self.do("new", self.folder("plain"))
        self.wait_for(self.folder("plain"), 1)
        seen = []
        for what, name in NAMES.items():
            if (self.manager, what) in CANNOT:
                continue
            path = os.path.join(self.tree, name)
            os.mkdir(path)
            for operation in ("existing", "new"):
                isNew = (operation == "new" or (self.manager, what) in OPENED_ANEW or
                         not self.leads_windows())
                self.do(operation, path)
                self.wait_for(path, 2 if isNew else 1)
                if isNew:
                    self.ask("close", active_window())
                    eventually("one window", lambda: len(self.windows()) == 1)
            seen.append(what)
        SEEN.setdefault(self.manager, {})["names"] = ", ".join(seen)

    def test_leaves_alone_what_is_gone(self):
        here = self.folder("here")
        self.do("new", here)
        self.wait_for(here, 1)
        before = output("xprop", "-root", "_NET_CLIENT_LIST")
        gone = os.path.join(self.tree, b"gone")
        for call in (("new", gone), ("existing", gone), ("select", gone, self.tree)):
            self.assertFalse(self.ask(*call)["isDone"], call)
        self.assertEqual(output("xprop", "-root", "_NET_CLIENT_LIST"), before)

    def test_is_not_waited_for_when_it_hangs(self):
        here, there = self.folder("here"), self.folder("there")
        self.do("new", here)
        window = self.wait_for(here, 1)
        process = int(output("xdotool", "getwindowpid", window))
        os.kill(process, signal.SIGSTOP)
        try:
            answers = {call: self.ask(*call) for call in (("front",), ("existing", there))}
            is_asked = output("pgrep", "--full",
                              f"^pcmanfm-qt --new-window file://{os.fsdecode(there)}$")
        finally:
            os.kill(process, signal.SIGCONT)
        for call, answer in answers.items():
            times = [answer[name] for name in ("milliseconds", "itemsAfter") if name in answer]
            self.assertLess(max(times), LIMIT, call)
        # If the front window could not be asked, a new one was requested. A pcmanfm-qt that was
        # stopped on a busy machine may lose the request that waits for it.
        if not is_asked:
            eventually("the new window", lambda: len(self.windows()) == 2)


class PathBar:
    """A file manager that shows the path as buttons if the user wants that."""

    def test_leads_windows_without_an_entry(self):
        bar = ["xfconf-query", "--channel", "thunar", "--property", "/last-location-bar"]
        subprocess.run([*bar, "--create", "--type", "string", "--set", "ThunarLocationButtons"],
                       check=True)
        self.addCleanup(subprocess.run, [*bar, "--reset"], check=True)
        one, two = self.folder("first"), self.folder("second")
        self.do("new", one)
        window = self.wait_for(one, 1)
        self.open_other_window()
        self.do("existing", two)
        self.assertEqual(self.wait_for(two, 1), window)
        answer = eventually("the folder", lambda: (found := self.ask("front"))["folder"] and found)
        self.assertEqual(answer["folder"], pathlib.Path(os.fsdecode(two)).as_uri())


def page():
    operations = ["new window", "front window", "front window, none open",
                  "front window, all minimised", "select", "select, not running",
                  "folder of the front window", "names"]
    managers = [manager for manager in MANAGERS if manager in SEEN]
    lines = ["# File managers", "",
             "This is what the tests of `./dev check --desktop` saw on a private X11 desktop with openbox. After each",
             "call they checked the windows and the folders that the file manager watches. The times are how long",
             "a call took until its effect was there; programs that were not running had to start. \"Not seen\"",
             "means that the test failed in that run, for example on a busy machine.", "",
             "| | " + " | ".join(f"{manager} {version(manager)}" for manager in managers) + " |",
             "|---" * (len(managers) + 1) + "|"]
    for operation in operations:
        cells = [SEEN[manager].get(operation, "not seen") for manager in managers]
        lines.append(f"| {operation} | " + " | ".join(cells) + " |")
    return "\n".join(lines) + "\n" + NOTES


def version(manager):
    told = output("dpkg-query", "-W", "-f=${Version}", manager)
    return told.partition(":")[2].partition("-")[0] if ":" in told else told.partition("-")[0]


NOTES = """
- "front window" has the topmost window of the file manager that is not minimised show the folder; its
  other windows stay as they are. dolphin and, where it cannot be asked otherwise, nemo open a tab of it.
- A window of another program that calls itself by the file manager's class, as a file manager that runs for
  another user does, is passed over.
- "select" with nothing running starts the file manager first. caja shows a window of its own then,
  which is closed once the selection is there.
- From release 47 on, nautilus offers no way to have a window show another folder: it opens a new one.
- dolphin and pcmanfm-qt show no names that are not valid UTF-8.
- The items of the front window are searched and chosen in the panel with each of the six as well.
- The folder of the front window: nautilus tells it on the bus, the other GTK file managers by their
  location bar through the accessibility bus. Where neither helps, as with Qt's, which join that bus only
  when assistive technology is switched on, the folders below the home folder and then all others are
  searched, for at most 0.7 s, for one with the title's name that the file manager's process watches.
- thunar is led by its entry, or by its path bar where the user wants that one; the key Control-L, pressed
  while no other key is held, then has it show the entry.
- A file manager that is not one of these six opens a new window, and selects an item if it answers to
  the name on the bus that all file managers share; otherwise it opens the folder around it.
"""


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("driver")
    parser.add_argument("--table")
    parser.add_argument("managers", nargs="*", default=list(MANAGERS))
    options = parser.parse_args()
    DRIVER = os.path.abspath(options.driver)
    suite = unittest.TestSuite()
    for name in options.managers or MANAGERS:
        more = (PathBar,) if name == "thunar" else ()
        case = type(name, (*more, FileManager, unittest.TestCase), {"manager": name})
        suite.addTests(unittest.defaultTestLoader.loadTestsFromTestCase(case))
    result = unittest.TextTestRunner(verbosity=2).run(suite)
    if options.table:
        pathlib.Path(options.table).write_text(page())
    finish(result)
