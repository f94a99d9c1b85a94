"""Holds what tests of the whole program on a real screen share: a home folder, keys, windows."""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

PATIENCE = 60  # after so many seconds something that should happen counts as missing
SKIPPED = 77  # ctest recognises a skipped test by this status


def is_soon(probe, patience=2):
    """Returns whether the probe is true within so many seconds, for callers that then try again."""
    deadline = time.monotonic() + patience
    while not probe() and time.monotonic() < deadline:
        time.sleep(0.02)
    return probe()


def eventually(what, probe):
    """Returns the first true answer of the probe. The test fails when none comes in time."""
    deadline = time.monotonic() + PATIENCE
    while True:
        answer = probe()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise AssertionError(f"never came: {what}")
        time.sleep(0.02)


def lacks(what):
    """Skips a test that lacks something, or fails it if QUILLON_REQUIRE_TOOLS is set."""
    if os.environ.get("QUILLON_REQUIRE_TOOLS"):
        raise AssertionError(f"missing here: {what}")
    raise unittest.SkipTest(f"missing here: {what}")


def needs(*tools):
    """Skips the test unless these programs are installed."""
    for tool in tools:
        if shutil.which(tool) is None:
            lacks(tool)


def output(*command):
    return subprocess.run(command, capture_output=True, check=False).stdout.decode(errors="replace")


def windows(window_class, title=None):
    """Returns the visible windows of the class, with the title if one is given."""
    found = output("xdotool", "search", "--onlyvisible", "--class", f"^{window_class}$").split()
    return [window for window in found
            if title in (None, output("xdotool", "getwindowname", window).rstrip("\n"))]


class Desktop(unittest.TestCase):
    """A home folder and a running quillon of its own for each test."""

    program = ""

    def setUp(self):
        needs("xdotool", "xprop", "xrandr", "xclip", "gdbus")
        # A program that was opened may write into the folder until it ends.
        folder = tempfile.TemporaryDirectory(prefix="quillon-e2e-", ignore_cleanup_errors=True)
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
                    XDG_CACHE_HOME=str(self.home / ".cache"),
                    LANGUAGE="", LC_ALL="C.UTF-8")

    def make_folders(self, *paths):
        for path in paths:
            os.makedirs(os.path.join(os.fsencode(self.tree), os.fsencode(path)))

    def write_settings(self, more=None):
        self.settings.parent.mkdir(parents=True)
        self.settings.write_text(json.dumps({
            "ShowQLNShortcut": "Ctrl+Alt+Space",
            "preemptive-apple-event-access": True,
            "qln-bookmarks": {str(self.tree): str(self.tree)},
            **(more or {}),
        }))

    def open_folders_with(self, desktop_file):
        self.config.mkdir(exist_ok=True)
        (self.config / "mimeapps.list").write_text(
            f"[Default Applications]\ninode/directory={desktop_file}\n")

    def add_application(self, name, entry):
        """Installs an application for this user. The entry holds these lines below its name."""
        applications = self.home / ".local/share/applications"
        applications.mkdir(parents=True, exist_ok=True)
        (applications / f"{name}.desktop").write_text(
            f"[Desktop Entry]\nType=Application\n{entry}\n")

    def recorder(self, name="recorder"):
        """Returns a program that writes its arguments to a file, null-terminated, and the file."""
        record = self.home / f"{name}.arguments"
        program = self.home / name
        program.write_text(f'#!/bin/sh\nprintf "%s\\0" "$@" > "{record}.new"\n'
                           f'mv "{record}.new" "{record}"\n')
        program.chmod(0o755)
        return program, record

    def open_folders_with_recorder(self):
        """Makes the file manager a program that writes its argument to a file. Returns the file."""
        program, record = self.recorder()
        self.add_application("recorder", f"Name=Recorder\nExec={program} %f\n"
                             "MimeType=inode/directory;\nCategories=FileManager;")
        self.open_folders_with("recorder.desktop")
        return record

    def start(self, **streams):
        child = subprocess.Popen([self.program], env=self.environment(), **streams)
        self.children.append(child)
        self.wait_for_panel()
        return child

    def screen(self):
        """Starts another screen and returns its process and its name."""
        # Without -noreset the screen would refuse whom it meets while it resets itself, which it
        # does whenever its last client leaves.
        screen = subprocess.Popen(["Xvfb", "-displayfd", "1", "-nolisten", "tcp", "-noreset"],
                                  stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.children.append(screen)
        self.addCleanup(screen.stdout.close)
        return screen, ":" + screen.stdout.readline().strip()

    def request(self, *options):
        return subprocess.run([self.program, *options], env=self.environment(), timeout=PATIENCE,
                              check=False).returncode

    def panel(self):
        return windows("quillon", "Quillon")

    def place(self):
        """Returns left, top, width and height of the panel."""
        lines = output("xdotool", "getwindowgeometry", "--shell", self.panel()[0]).splitlines()
        values = dict(line.split("=") for line in lines)
        return tuple(int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    def menus(self):
        return [window for window in windows("quillon") if window not in self.panel()]

    def open_menu(self, key):
        """Opens the panel's menu by a key pressed in its button."""
        self.press("F10")
        self.press(key)
        eventually("the menu", self.menus)

    def choose(self, item):
        """Chooses an item of the panel's menu, counted from 1."""
        self.open_menu("space")
        for _ in range(item - 1):
            self.press("Down")
        self.press("Return")

    def window(self, title):
        """Waits until the window has the keyboard, and returns it."""
        window = eventually(title, lambda: windows("quillon", title))[0]
        eventually(f"the keyboard in {title}",
                   lambda: output("xdotool", "getactivewindow").strip() == window)
        return window

    def wait_for_panel(self):
        panel = eventually("the panel", self.panel)[0]
        eventually("the keyboard in the panel",
                   lambda: output("xdotool", "getactivewindow").strip() == panel)

    def wait_for_no_panel(self):
        eventually("the panel's end", lambda: not self.panel())

    def type(self, text, *keys):
        """Types the text and presses the keys right after it."""
        subprocess.run(["xdotool", "type", "--delay", "5", "--args", "1", text,
                        *(word for key in keys for word in ("key", key))], check=True)

    def press(self, key):
        subprocess.run(["xdotool", "key", key], check=True)

    def press_until(self, key, what, probe):
        """Presses keys until the probe is true, since a new window may miss the first press."""
        def done():
            self.press(key)
            time.sleep(0.2)
            return probe()
        return eventually(what, done)

    def press_return_until_opened(self, key="Return"):
        """Presses Return until the panel closes, which it does not before there are rows."""
        def opened():
            if self.panel():
                self.press(key)
                time.sleep(0.2)
            return not self.panel()
        eventually("the opened row", opened)

    def recorded(self, record):
        """Waits until a recorder has run, returns its arguments and deletes its file."""
        eventually("the recorded arguments", record.exists)
        arguments = record.read_bytes().split(b"\0")[:-1]
        record.unlink()
        return arguments

    def stored(self):
        return json.loads(self.settings.read_text()) if self.settings.exists() else {}

    def start_notification_server(self):
        """Returns a function that reads the notifications so far, each with title and text."""
        record = self.home / "notifications"
        server = pathlib.Path(__file__).parent / "notification_server.py"
        self.children.append(subprocess.Popen(["/usr/bin/python3", server, record],
                                              env=self.environment()))
        eventually("the server for notifications", lambda: record.exists() and record.read_text())
        return lambda: [json.loads(line) for line in record.read_text().splitlines() if line]

    def dismiss_failure(self):
        """Closes the window that says what could not be opened, if notifications are not shown."""
        self.window("Quillon – Not Opened")
        self.press("Escape")
        eventually("the window's end", lambda: not windows("quillon", "Quillon – Not Opened"))

    def uses(self):
        return self.stored().get("recent-access-score-data", {})

    def wait_for_uses(self, counts):
        """Waits until the stored counts are these. The program stores them while it goes on."""
        eventually(f"the uses {counts}", lambda: sorted(self.uses().values()) == sorted(counts))


def main():
    """Runs the tests of the calling script; its first argument is the program."""
    Desktop.program = os.path.abspath(sys.argv.pop(1))
    finish(unittest.main(verbosity=2, exit=False).result)


def finish(result):
    """Ends the script. A test that was skipped shows in the exit status."""
    if not result.wasSuccessful():
        sys.exit(1)
    sys.exit(SKIPPED if result.skipped else 0)
