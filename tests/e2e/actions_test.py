#!/usr/bin/env python3
"""Tests what Return does together with other keys: each kind of action, with real programs.

Runs on a private desktop: tools/private-desktop python3 tests/e2e/actions_test.py QUILLON
"""

import json
import os
import pathlib
import shutil
import signal
import subprocess

from desktop import Desktop, eventually, is_soon, main, output, windows

# This holds everything that a shell, a URI or a list of settings might misread.
AWKWARD = b'it\'s a "b"  50%25\n#\xff'
KEYS = {"Return": (False, False, False), "ctrl+Return": (False, False, True),
        "alt+Return": (True, False, False), "shift+Return": (False, True, False),
        "alt+shift+KP_Enter": (True, True, False)}
# Every start of a build without a feed of releases prints this to standard output.
AT_THE_START = """Start background update polling...
Checking for updates in background...
Should check for betas? false
Did not find an update
"""


def actions(*rows):
    """Returns settings with a list of (key, kind, target), as a person writes them."""
    return {"qln-actions-list": json.dumps([{
        "actionTarget": {"key": str(target)},
        "actionType": {"requiresTarget": True, "key": kind},
        "flags": dict(zip(("option", "shift", "command"), KEYS[key])),
    } for key, kind, target in rows], indent=2)}


class ActionsTest(Desktop):
    def script(self, name, text):
        program = self.home / name
        program.write_text("#!/bin/sh\n" + text)
        program.chmod(0o755)
        return program

    def start_with_streams(self):
        """Starts quillon and returns the files for its output and its diagnostics."""
        streams = [self.home / "output", self.home / "diagnostics"]
        with open(streams[0], "wb") as out, open(streams[1], "wb") as err:
            self.start(stdout=out, stderr=err)
        eventually("the check for updates", lambda: streams[0].read_text() == AT_THE_START)
        return streams

    def choose(self, query, key):
        """Presses the key on the first row for the query."""
        if not self.panel():
            self.request("--show")
            self.wait_for_panel()
        self.type(query)
        self.wait_for_row()
        self.choose_now(key)

    def choose_now(self, key):
        self.press(key)
        self.wait_for_no_panel()

    def wait_for_row(self):
        """Waits for a row, since the first crawl may still run. Keys without an action count."""
        before = self.uses()
        def counted():
            self.press("ctrl+shift+Return")
            return is_soon(lambda: self.uses() != before)
        eventually("the row", counted)
        self.assertTrue(self.panel(), "nothing was opened")

    def test_opens_a_terminal_in_the_folder(self):
        self.make_folders(AWKWARD)
        self.write_settings()
        self.add_application("a-terminal", "Name=Terminal\nExec=xterm\nIcon=utilities-terminal")
        self.start()
        self.choose("itsab50", "alt+shift+KP_Enter")
        window = eventually("the terminal", lambda: windows("XTerm"))[0]
        terminal = output("xdotool", "getwindowpid", window).strip()
        folder = os.fsencode(self.tree) + b"/" + AWKWARD
        self.assertEqual(os.readlink(f"/proc/{terminal}/cwd".encode()), folder)
        environment = pathlib.Path(f"/proc/{terminal}/environ").read_bytes().split(b"\0")
        path = next(entry for entry in environment if entry.startswith(b"PATH="))
        self.assertEqual(path, b"PATH=" + os.fsencode(os.environ["PATH"]),
                         "the program that opened it is out of the way")
        self.assertNotEqual(os.getsid(int(terminal)), os.getsid(self.children[0].pid))
        status = pathlib.Path(f"/proc/{terminal}/status").read_text()
        self.assertIn("SigBlk:\t0000000000000000\n", status, "signals end it as any other")
        subprocess.run(["xdotool", "windowclose", window], check=True)

    def test_opens_an_application_by_its_name(self):
        program, record = self.recorder("editor")
        self.add_application("org.example.Sketch", f'Name=Sketch Pad\nExec={program} %F')
        self.make_folders(AWKWARD, "sum $SUM `echo`", "sum 5 ")
        self.write_settings(actions(("Return", "Open Application", "sketch pad"),
                                    ("ctrl+Return", "Open Application", "no such program")))
        os.environ["SUM"] = "5"
        self.addCleanup(os.environ.pop, "SUM")
        streams = self.start_with_streams()
        self.choose("itsab50", "Return")
        self.assertEqual(self.recorded(record), [os.fsencode(self.tree) + b"/" + AWKWARD])
        # The shell interprets what is in the name of the folder.
        self.choose("sum$SUM", "Return")
        self.assertEqual(self.recorded(record), [os.fsencode(self.tree / "sum 5 ")])
        self.choose("sum$SUM", "ctrl+Return")
        self.dismiss_failure()
        self.choose("itsab50", "Return")
        self.recorded(record)
        self.assertEqual([stream.read_text() for stream in streams], [AT_THE_START, ""],
                         "what goes wrong stays between open and the shell")

    def test_says_what_could_not_be_opened(self):
        notifications = self.start_notification_server()
        self.make_folders("harbour plans/2024", "Music")
        self.write_settings(actions(("Return", "Open in Default App", "the selected row"),
                                    ("ctrl+Return", "Open Application", "no such program")))
        self.start()
        self.type("music")
        self.wait_for_row()
        before = self.uses()
        self.choose_now("ctrl+Return")
        eventually("a word about the application", notifications)
        self.assertIn("no such program", notifications()[0]["title"])
        eventually("no use that is counted", lambda: self.uses() == before)

        self.request("--show")
        self.wait_for_panel()
        self.type("harplan")
        self.wait_for_row()
        before = self.uses()
        shutil.rmtree(self.tree / "harbour plans")
        self.choose_now("Return")
        eventually("a word about the folder", lambda: len(notifications()) == 2)
        said = notifications()[1]
        self.assertEqual(said["title"], "“harbour plans” is gone")
        self.assertIn(str(self.tree / "harbour plans"), said["text"])
        eventually("no use that is counted", lambda: self.uses() == before)

    def test_keeps_the_rows_of_a_disk_that_is_away(self):
        notifications = self.start_notification_server()
        stick = self.home / "stick"
        (stick / "photos").mkdir(parents=True)
        self.write_settings({"qln-bookmarks": {str(self.tree): str(self.tree),
                                               str(stick): str(stick)}})
        first = self.start()
        self.type("stickphotos")
        self.wait_for_row()
        eventually("the kept index", (self.home / ".cache/quillon/index").exists)
        self.request("--quit")
        first.wait()
        stick.rename(self.home / "drawer")
        self.start()
        self.type("stickphotos")
        self.wait_for_row()
        before = self.uses()
        self.choose_now("Return")
        eventually("a word about the disk", notifications)
        self.assertEqual(notifications()[0]["title"], "“photos” is not there now")
        self.assertIn("Connect “stick”", notifications()[0]["text"])
        eventually("no use that is counted", lambda: self.uses() == before)

    def test_runs_an_executable_and_tells_what_it_said(self):
        program, record = self.recorder("arguments")
        script = self.script("my script", "blocked=$(grep SigBlk /proc/$$/status)\n"
                             f"'{program}' \"$PATH\" \"$blocked\" \"$@\"\n"
                             "printf 'a \"b\" \\\\ \\tc\\r\\n\\377'\nprintf 'oh' >&2\n")
        self.make_folders(AWKWARD, "plain")
        self.write_settings(actions(("Return", "Execute Shell Command", script),
                                    ("ctrl+Return", "Execute Shell Command", self.tree / "none"),
                                    ("alt+Return", "Execute Shell Command", self.settings)))
        out, err = self.start_with_streams()
        self.choose("itsab50", "Return")
        self.assertEqual(self.recorded(record), [os.fsencode(os.environ["PATH"]),
                                                 b"SigBlk:\t0000000000000000",
                                                 os.fsencode(self.tree) + b"/" + AWKWARD])
        line = 'Shell script result: ("a \\"b\\" \\\\ \\tc\\r\\n\ufffd", "oh")\n'
        eventually("the line", lambda: out.read_text() == AT_THE_START + line)

        for key in ("ctrl+Return", "alt+Return"):
            self.choose("plain", key)
            self.dismiss_failure()
        eventually("two complaints", lambda: err.read_text().count("\n") == 2)
        for target, complaint in zip((self.tree / "none", self.settings),
                                     err.read_text().splitlines()):
            self.assertTrue(complaint.startswith("quillon: "), complaint)
            self.assertIn(str(target), complaint)
        self.choose("plain", "Return")
        eventually("the second line", lambda: out.read_text() == AT_THE_START + 2 * line)

    def test_starts_programs_in_the_environment_that_it_was_started_in(self):
        record = self.home / "environment"
        program = self.script("program", f'env -0 > "{record}.new"\nmv "{record}.new" "{record}"\n')
        self.add_application("sketch", f"Name=Sketch\nExec={program} %F\nMimeType=inode/directory;")
        self.open_folders_with("sketch.desktop")
        self.make_folders("plain")
        self.write_settings(actions(("Return", "Execute Shell Command", program),
                                    ("ctrl+Return", "Open Application", "sketch"),
                                    ("shift+Return", "Open in Default App", "the selected row")))
        self.start()
        # Shells and GIO write these lines by themselves.
        changing = ("PWD", "OLDPWD", "SHLVL", "_", "GIO_LAUNCHED_DESKTOP_FILE",
                    "GIO_LAUNCHED_DESKTOP_FILE_PID")
        expected = {name: value for name, value in self.environment().items()
                    if name not in changing}
        for key in ("Return", "ctrl+Return", "shift+Return"):
            self.choose("plain", key)
            seen = dict(os.fsdecode(entry).split("=", 1) for entry in self.recorded(record))
            self.assertEqual({name: value for name, value in seen.items() if name not in changing},
                             expected, key)

    def test_goes_on_while_an_executable_runs(self):
        os.mkfifo(self.home / "gate")
        script = self.script("waits", f"read answer <'{self.home}/gate'\necho \"$answer\"\n")
        program, record = self.recorder("other")
        self.make_folders("plain")
        self.write_settings(actions(("Return", "Execute Shell Command", script),
                                    ("ctrl+Return", "Execute Shell Command", program)))
        out, _ = self.start_with_streams()
        self.choose("plain", "Return")
        self.choose("plain", "ctrl+Return")
        self.assertEqual(self.recorded(record), [os.fsencode(self.tree / "plain")])
        self.assertNotIn("free", out.read_text())
        (self.home / "gate").write_text("free\n")
        eventually("its line", lambda: 'Shell script result: ("free\\n", "")\n' in out.read_text())

    def test_copies_the_path(self):
        self.make_folders(AWKWARD, "plain")
        self.write_settings()
        self.start()
        for query, name in (("plain", b"plain"), ("itsab50", AWKWARD)):
            self.choose(query, "alt+Return")
            copied = subprocess.run(["xclip", "-selection", "clipboard", "-o", "-t", "UTF8_STRING"],
                                    capture_output=True, check=True).stdout
            self.assertEqual(copied, os.fsencode(self.tree) + b"/" + name)
        kinds = output("xclip", "-selection", "clipboard", "-o", "-t", "TARGETS").split()
        self.assertNotIn("text/uri-list", kinds)

    def test_opens_a_file_with_its_default_application(self):
        program, record = self.recorder("reader")
        self.add_application("reader", f"Name=Reader\nExec={program} %f\nMimeType=text/plain;")
        self.config.mkdir()
        (self.config / "mimeapps.list").write_text(
            "[Default Applications]\ntext/plain=reader.desktop\n")
        self.make_folders("letters")
        (self.tree / "letters" / "to anna.txt").write_text("Dear Anna")
        self.write_settings({"include-file-patterns": ["txt"]})
        self.start()
        self.choose("toannatxt", "Return")
        self.assertEqual(self.recorded(record), [os.fsencode(self.tree / "letters/to anna.txt")])
        recent = self.home / ".local/share/recently-used.xbel"
        eventually("the desktop's list of recent files", recent.exists)
        self.assertIn("/tree/letters/to%20anna.txt", recent.read_text())

    def test_shows_folders_in_the_file_manager(self):
        self.make_folders("Documents/harbour plans", "Music")
        self.write_settings(actions(("ctrl+Return", "Show Parent in Finder", "the selected row"),
                                    ("shift+Return", "Show in Finder", "the selected row")))
        self.open_folders_with("thunar.desktop")
        self.start()
        self.choose("harplan", "ctrl+Return")
        window = eventually("the parent", lambda: windows("Thunar", "Documents - Thunar"))[0]
        manager = int(output("xdotool", "getwindowpid", window))
        self.addCleanup(os.kill, manager, signal.SIGKILL)
        # A window that took the keyboard later would take it from the panel.
        eventually("the parent in front",
                   lambda: output("xdotool", "getactivewindow").strip() == window)
        self.choose("music", "shift+Return")
        eventually("the folder", lambda: windows("Thunar", "Music - Thunar"))


if __name__ == "__main__":
    main()
