#!/usr/bin/env python3
"""Tests how the program ends, whatever it is busy with and whatever hangs, and prints the times.

Runs on a private desktop: tools/private-desktop python3 tests/e2e/ending_test.py QUILLON
"""

import contextlib
import json
import os
import pathlib
import select
import signal
import subprocess
import sys
import time

from desktop import PATIENCE, Desktop, eventually, lacks, main, needs, output, windows
from session_manager import SessionManager

# Far above what an end takes on a busy machine, below all time-outs of what it waits for.
LONGEST = 2.5  # seconds
RESTART_NEVER = b"\3\0\0\0"


class EndingTest(Desktop):
    def launch(self, *options, environment=None, **streams):
        """Starts the program without waiting for anything."""
        streams.setdefault("stdout", subprocess.DEVNULL)
        child = subprocess.Popen([self.program, *options],
                                 env=environment or self.environment(), **streams)
        self.children.append(child)
        return child

    def background(self, **streams):
        """Starts the program as a login does, and waits until it is reachable."""
        child = self.launch("--background", **streams)
        self.wait_until_reachable(child)
        return child

    def background_on_a_screen_of_its_own(self):
        screen, display = self.screen()
        return screen, self.background(environment=dict(self.environment(), DISPLAY=display))

    def wait_until_reachable(self, child):
        def answers():
            self.assertIsNone(child.poll(), "it ended at its start")
            return output("gdbus", "call", "--session", "--dest", "org.quillon.Quillon",
                          "--object-path", "/org/quillon/Quillon", "--method",
                          "org.freedesktop.DBus.Peer.Ping") != ""
        eventually("the instance on the bus", answers)

    def ends(self, child, what, number=signal.SIGTERM):
        """Checks that a signal ends the program in time and with success."""
        self.ends_after(lambda: child.send_signal(number), child, what)

    def ends_after(self, request, child, what):
        process = os.pidfd_open(child.pid)
        self.addCleanup(os.close, process)
        end = select.poll()
        end.register(process, select.POLLIN)
        began = time.monotonic()
        request()
        self.assertTrue(end.poll(PATIENCE * 1000), f"{what}: it never ended")
        took = time.monotonic() - began
        self.assertEqual(child.wait(), 0, what)
        print(f"{what}: {took * 1000:.0f} ms", file=sys.stderr)
        self.assertLess(took, LONGEST, what)

    def make_big_tree(self, folder):
        """Makes a tree that takes longer to crawl than the program may take to end."""
        for number in range(20_000):
            os.makedirs(folder / f"{number // 200}/folder {number}")

    def wait_for_window(self, title):
        """Waits until the window with the title has the keyboard."""
        eventually(title, lambda: output("xdotool", "getactivewindow").strip() in
                   windows("quillon", title))

    def wait_for_rows(self, query):
        """Waits for rows, since the first crawl may still run. Keys without an action count."""
        before = self.uses()
        self.type(query)
        def counted():
            self.press("ctrl+shift+Return")
            return self.uses() != before
        eventually("the row", counted)

    @contextlib.contextmanager
    def stopped(self, process):
        os.kill(process, signal.SIGSTOP)
        try:
            yield
        finally:
            os.kill(process, signal.SIGCONT)

    @contextlib.contextmanager
    def hanging(self, disk):
        """Stops the disk's process while all its threads wait. A request that the process had begun
        could not be given up, even by a kill."""
        def waits():
            try:
                return all(state.read_text().rpartition(")")[2].split()[0] == "S"
                           for state in pathlib.Path(f"/proc/{disk.pid}/task").glob("*/stat"))
            except OSError:  # a thread has just ended
                return False
        eventually("the disk without work", waits)
        with self.stopped(disk.pid):
            yield

    def test_with_nothing_to_do(self):
        self.make_folders("Documents/harbour")
        self.write_settings()
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            self.ends(self.background(), f"hidden, {number.name}", number)
        self.ends(self.start(), "with the panel shown")

    def test_in_the_middle_of_a_build(self):
        self.make_big_tree(self.tree)
        self.write_settings()
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            self.ends(self.background(), f"building, {number.name}", number)

    def test_with_the_session(self):
        self.make_big_tree(self.tree)
        self.write_settings()
        manager = SessionManager()
        environment = dict(self.environment(), SESSION_MANAGER=manager.address)
        def log_out():
            manager.log_out()
            eventually("the end of the program's part in the session", lambda:
                       manager.step() or not manager.joined)
        def has_saved():
            manager.step()
            return manager.saved
        for options in ((), ("--background",)):
            child = self.launch(*options, environment=environment)
            eventually("the program in the session", has_saved)
            if not options:
                self.wait_for_panel()
            self.ends_after(log_out, child, " ".join(["logged out", *options]))
            manager.saved = 0
        self.assertEqual(manager.properties["RestartStyleHint"], [RESTART_NEVER],
                         "what is started at login is a setting")

    def test_in_the_middle_of_searches(self):
        self.make_big_tree(self.tree)
        self.write_settings()
        child = self.start()
        self.wait_for_rows("folder 19999")
        find = ["dbus-send", "--session", "--dest=org.quillon.Quillon", "/org/quillon/Quillon",
                "org.quillon.Quillon.Search.Find",
                "array:byte:" + ",".join(map(str, os.fsencode(self.settings))),
                "array:byte:" + ",".join(map(str, b"o/e/9")), "uint32:25", "string:path"]
        for _ in range(60):
            subprocess.run(find, env=self.environment(), check=True)
        self.ends(child, "searching")

    def test_in_the_middle_of_an_update(self):
        self.make_big_tree(self.home / "elsewhere")
        self.write_settings({"debug-log-fs-events": True})
        child = self.background(stdout=subprocess.PIPE)
        self.addCleanup(child.stdout.close)
        while b"Did not find an update" not in child.stdout.readline():
            pass
        self.wait_for_index()
        (self.home / "elsewhere").rename(self.tree / "here")
        while b"sbl_change: " not in child.stdout.readline():
            pass
        self.ends(child, "updating")

    def wait_for_index(self):
        eventually("the index", lambda: subprocess.run(
            [self.program, "--show"], env=self.environment(), check=True) and self.panel())
        self.wait_for_rows("tree")

    def test_while_another_window_is_shown(self):
        self.make_folders("Documents")
        self.write_settings()
        child = self.start()
        self.choose(3)
        eventually("the keys", lambda: windows("quillon", "Quillon – Keys"))
        self.ends(child, "with the page of keys shown")

    def test_while_the_file_manager_does_not_answer(self):
        self.make_folders("Documents/harbour")
        self.write_settings()
        needs("thunar")
        self.open_folders_with("thunar.desktop")
        manager = subprocess.Popen(["thunar", "--daemon"], env=self.environment(),
                                   stderr=subprocess.DEVNULL)
        self.children.append(manager)
        eventually("the file manager", lambda: "true" in output(
            "gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path",
            "/org/freedesktop/DBus", "--method", "org.freedesktop.DBus.NameHasOwner",
            "org.xfce.FileManager"))
        child = self.start()
        self.wait_for_rows("harb")
        with self.stopped(manager.pid):
            self.press("ctrl+Return")
            self.wait_for_no_panel()
            self.ends(child, "calling a file manager that hangs")

    def test_while_a_program_of_the_users_runs(self):
        os.mkfifo(self.home / "gate")
        script = self.home / "waits"
        script.write_text(f"#!/bin/sh\necho >'{self.home}/begun'\nread answer <'{self.home}/gate'\n")
        script.chmod(0o755)
        self.make_folders("Documents/harbour")
        self.write_settings({"qln-actions-list": json.dumps([{
            "actionTarget": {"key": str(script)},
            "actionType": {"requiresTarget": True, "key": "Execute Shell Command"},
            "flags": {"option": False, "shift": False, "command": False}}])})
        child = self.start()
        self.wait_for_rows("harb")
        self.press("Return")
        eventually("the program", (self.home / "begun").exists)
        self.ends(child, "while a program of the user's runs")
        (self.home / "gate").write_text("go on\n")

    def test_while_the_screen_hangs(self):
        self.write_settings()
        screen, child = self.background_on_a_screen_of_its_own()
        with self.stopped(screen.pid):
            self.assertEqual(self.request("--show"), 0)
            self.ends(child, "in front of a screen that hangs")

    def test_with_its_screen(self):
        self.write_settings()
        screen, child = self.background_on_a_screen_of_its_own()
        screen.kill()
        self.assertEqual(child.wait(PATIENCE), 0)

    def test_while_the_disk_hangs(self):
        needs("bindfs", "fusermount3")
        self.make_folders("source/Documents/harbour")
        mounted = self.tree / "mounted"
        mounted.mkdir()
        disk = subprocess.Popen(["bindfs", "-f", self.tree / "source", mounted],
                                stderr=subprocess.DEVNULL)
        self.children.append(disk)
        eventually("the disk", lambda: os.path.ismount(mounted) or disk.poll() is not None)
        if disk.poll() is not None:
            lacks("the right to mount")
        self.addCleanup(subprocess.run, ["fusermount3", "-uz", mounted], check=True)
        self.write_settings()
        with self.hanging(disk):
            self.ends(self.background(), "building on a disk that hangs")
        child = self.start()
        self.press("ctrl+comma")
        self.wait_for_window("Preferences")
        self.press("alt+v")
        self.press("alt+t")
        self.wait_for_window("Dump File Location")
        self.type(str(mounted / "dump.txt"))
        with self.hanging(disk):
            self.press("Return")
            self.ends(child, "saving the index on a disk that hangs")

    def test_although_nobody_reads_what_it_says(self):
        self.make_folders("Documents")
        self.write_settings({"debug-log-fs-events": True})
        reader, writer = os.pipe()
        self.addCleanup(os.close, reader)
        os.set_blocking(writer, False)
        try:
            while True:
                os.write(writer, b"x" * 4096)
        except BlockingIOError:
            os.set_blocking(writer, True)
        child = self.background(stdout=writer)
        os.close(writer)
        self.ends(child, "when nobody reads its output")


if __name__ == "__main__":
    main()
