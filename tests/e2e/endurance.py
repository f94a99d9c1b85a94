#!/usr/bin/env python3
"""Uses the program for a long time: types into the panel, opens rows, opens and closes the windows,
changes the disk, the settings and the desktop's colours, and asks it over the bus. At the end the
program is at rest on the disk as it was, and must hold as many open files, watches and child
processes as after the first minute, and hardly more memory and threads.

Runs on a private desktop:
tools/private-desktop /usr/bin/python3 tests/e2e/endurance.py QUILLON QUILLONCTL
                      [--minutes N | --hours N] [--seed N]
"""

import argparse
import collections
import json
import os
import pathlib
import random
import shutil
import subprocess
import sys
import time
import types
import unittest

from desktop import Desktop, eventually, finish, lacks, output, windows

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "watching"))
from random_rounds import User

try:
    from gi.repository import Gio, GLib
except ImportError:
    Gio = None

WARM_UP_SECONDS = 60
REPORTS = 10
# A pool starts a thread when it first needs one more, and keeps it. A leak grows with the time.
THREAD_SLACK = 2
# The heap keeps some of what the busiest moment took.
MEMORY_SLACK = 4.0  # megabytes
WORDS = ("harbour", "invoice", "lantern", "meadow", "orchard", "quarry", "vector", "journal")
PORTAL = ("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
          "org.freedesktop.portal.Settings")
# Values that the settings get by hand, as keys and texts. The first one is that of a new user.
CHOICES = {"match-order": ("path", "names"), "match-words-in-order": (False, True),
           "open-finder-behavior": ("new", "existing"), "kept-on-top": ([], ["/usr", "/etc"]),
           "hide-from-desktop-search": (False, True), "finder-quick-search": (False, True),
           "exclude-folder-patterns": (["/Library/"], ["/Library/", "/group 7/"])}


class EnduranceTest(Desktop):
    ctl = ""
    seconds = 0.0
    seed = 0

    def setUp(self):
        if Gio is None:
            lacks("python3-gi")
        super().setUp()
        self.random = random.Random(self.seed)
        self.counts = collections.Counter()
        self.last = collections.deque(maxlen=6)
        self.is_dark = False
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                           "RequestName", GLib.Variant("(su)", (PORTAL[0], 0)), None,
                           Gio.DBusCallFlags.NONE, -1)
        self.make_folders(*(f"group {number}/{word}/{other}" for number in range(20)
                            for word in WORDS for other in WORDS))
        disk = os.fsencode(self.tree) + b"/disk"
        self.session = types.SimpleNamespace(disk=disk, root=disk + b"/above/mid/root",
                                             outside=disk + b"/outside")
        self.user = User(self.session, self.seed)
        self.record = self.open_folders_with_recorder()
        self.write_settings({key: values[0] for key, values in CHOICES.items()})
        self.log = self.home / "complaints"
        self.process = self.start(stdout=subprocess.DEVNULL, stderr=self.log.open("wb")).pid
        self.press("Escape")
        self.wait_for_no_panel()

    # The following is what a user and the other programs do.

    def show(self):
        self.press("ctrl+alt+space")
        self.wait_for_panel()

    def close(self, key="Escape"):
        self.press(key)
        self.wait_for_no_panel()

    def type_and_leave(self):
        self.show()
        self.type(self.random.choice(WORDS))
        for key in self.random.choices(("BackSpace", "Down", "Up", "Page_Down", "a", "slash"), k=6):
            self.press(key)
        self.close(self.random.choice(("Escape", "ctrl+alt+space")))

    def open_a_row(self):
        self.show()
        self.type(f"{self.random.choice(WORDS)}/{self.random.choice(WORDS)}", "Down")
        self.press_return_until_opened()
        self.recorded(self.record)

    def look_at_the_windows(self):
        self.assertEqual(self.request("--preferences"), 0)
        self.window("Preferences")
        for key in ("alt+s", "alt+c", "alt+v", "alt+g"):
            self.press(key)
        self.press("alt+F4")
        eventually("the preferences' end", lambda: not windows("quillon", "Preferences"))
        self.show()
        self.press("F1")
        self.window("Quillon – Keys")
        self.press("Escape")
        self.wait_for_panel()
        self.close()

    def rebuild(self):
        self.assertEqual(self.request("--rebuild"), 0)
        self.wait_for_panel()
        self.close()

    def ask_over_the_bus(self):
        word = self.random.choice(WORDS)
        for arguments in (["find", word], ["find", "--order", "names", word], ["status"],
                          ["use", str(self.tree / "group 1" / word)]):
            subprocess.run([self.ctl, *arguments], env=self.environment(), check=False,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        for interface, method, text in (
                ("org.gnome.Shell.SearchProvider2", "GetInitialResultSet",
                 GLib.Variant("(as)", ([word],))),
                ("org.kde.krunner1", "Match", GLib.Variant("(s)", (word,)))):
            self.bus.call_sync("org.quillon.Quillon", "/org/quillon/Quillon", interface, method, text,
                               None, Gio.DBusCallFlags.NO_AUTO_START, -1)

    def change_the_disk(self):
        self.reset_the_disk()
        for _ in range(60):
            self.user.act()
        self.user.done.clear()
        # No name comes twice, so that nothing which is kept by names can be used again.
        for number in range(100):
            os.makedirs(self.session.disk + b"/new/%d-%d" % (time.time_ns(), number))

    def reset_the_disk(self):
        shutil.rmtree(self.session.disk, ignore_errors=True)
        for folder in (self.session.root, self.session.outside):
            os.makedirs(folder, exist_ok=True)

    def change_the_settings(self):
        self.store({key: self.random.choice(values) for key, values in CHOICES.items()})

    def store(self, choices):
        """Writes the file in place, as an editor does."""
        self.settings.write_text(json.dumps({**self.stored(), **choices}))

    def change_the_colours(self):
        self.is_dark = not self.is_dark
        scheme = GLib.Variant("(ssv)", ("org.freedesktop.appearance", "color-scheme",
                                        GLib.Variant("u", 1 if self.is_dark else 2)))
        self.bus.emit_signal(None, *PORTAL[1:], "SettingChanged", scheme)

    # The following is measured.

    def status(self):
        told = subprocess.run([self.ctl, "status", "--json"], env=self.environment(), check=False,
                              capture_output=True).stdout
        return json.loads(told or "{}")

    def held(self):
        """Returns what the program holds now. Memory is in megabytes."""
        process = pathlib.Path("/proc") / str(self.process)
        lines = dict(line.split(":\t", 1) for line in
                     (process / "status").read_text().splitlines())
        watches = 0
        for file in (process / "fdinfo").iterdir():
            try:
                watches += file.read_text().count("inotify wd:")
            except FileNotFoundError:
                pass  # was just closed
        return {"memory": int(lines["VmRSS"].split()[0]) / 1024,
                "open files": len(os.listdir(process / "fd")),
                "threads": int(lines["Threads"]), "watches": watches,
                "children": len((process / "task" / str(self.process) / "children")
                                .read_text().split()),
                "files of its own": sum(len(list(folder.iterdir())) for folder in
                                        (self.settings.parent, self.home / ".cache/quillon"))}

    def held_at_rest(self):
        """Puts disk, settings and colours back, waits for the program and returns what it holds."""
        if self.is_dark:
            self.change_the_colours()
        self.reset_the_disk()
        self.store({key: values[0] for key, values in CHOICES.items()})
        self.rebuild()
        folders = sum(1 for _ in os.walk(os.fsencode(self.tree)))

        def is_settled():
            status = self.status()
            time.sleep(1)
            return (status.get("state") == "ready" and
                    status.get("folders") == status.get("watched") == folders)
        eventually("the index of the disk", is_settled)
        last = {}

        def rests():
            nonlocal last
            former, last = last, self.held()
            time.sleep(3)
            return former == last
        eventually("rest", rests)
        return last

    def tell(self, when, held):
        print(f"{when:14} {held['memory']:7.1f} MB" +
              "".join(f" {value:6} {what}" for what, value in held.items() if what != "memory"),
              flush=True)

    def titles(self):
        return [output("xdotool", "getwindowname", window).strip() for window in windows("quillon")]

    def work(self, seconds):
        """Does everything, in a random order, again and again for this time, once at least."""
        end = time.monotonic() + seconds
        acts = [self.type_and_leave, self.type_and_leave, self.open_a_row,
                self.look_at_the_windows, self.rebuild, self.ask_over_the_bus,
                self.change_the_disk, self.change_the_settings, self.change_the_colours]
        while True:
            for act in self.random.sample(acts, len(acts)):
                self.last.append(act.__name__)
                try:
                    act()
                except AssertionError as error:
                    raise AssertionError(f"{error}, in the last of {list(self.last)}; "
                                         f"there are {self.titles()}, {self.status()}") from None
                self.counts[act.__name__] += 1
            if time.monotonic() > end:
                return

    def test_holds_no_more_in_the_end(self):
        # Copies of a folder into itself are deeper than the interpreter's own limit.
        sys.setrecursionlimit(100_000)
        began = time.monotonic()
        self.work(WARM_UP_SECONDS)
        before = self.held_at_rest()
        self.tell("a minute, rest", before)
        for number in range(REPORTS):
            left = self.seconds - (time.monotonic() - began)
            self.work(left / (REPORTS - number))
            self.tell(f"{(time.monotonic() - began) / 60:.1f} min", self.held())
        after = self.held_at_rest()
        self.tell("the end, rest", after)
        print(", ".join(f"{act} {count}" for act, count in self.counts.most_common()))
        for what, slack in (("memory", MEMORY_SLACK), ("threads", THREAD_SLACK)):
            self.assertLessEqual(after.pop(what) - before.pop(what), slack, what)
        self.assertEqual(after, before)
        self.assertEqual(self.log.read_text(), "")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program", type=os.path.abspath)
    parser.add_argument("ctl", type=os.path.abspath)
    length = parser.add_mutually_exclusive_group()
    length.add_argument("--minutes", type=float, default=10)
    length.add_argument("--hours", type=float)
    parser.add_argument("--seed", type=int, default=random.randrange(1 << 30))
    arguments = parser.parse_args()
    Desktop.program = arguments.program
    EnduranceTest.ctl = arguments.ctl
    EnduranceTest.seed = arguments.seed
    EnduranceTest.seconds = 60 * (60 * arguments.hours if arguments.hours else arguments.minutes)
    print(f"seed {arguments.seed}", flush=True)
    suite = unittest.defaultTestLoader.loadTestsFromTestCase(EnduranceTest)
    finish(unittest.TextTestRunner(verbosity=2).run(suite))


if __name__ == "__main__":
    main()
