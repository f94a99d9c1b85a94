#!/usr/bin/env python3
"""Tests that the program goes on while the desktop around it changes: folders, bus, windows, time.

Runs on a private desktop:
tools/private-desktop python3 tests/e2e/circumstances_test.py QUILLON QUILLONCTL
"""

import os
import shutil
import signal
import subprocess
import sys

from desktop import PATIENCE, Desktop, eventually, main, output


class CircumstancesTest(Desktop):
    def setUp(self):
        super().setUp()
        self.make_folders("harbour/plans", "gone")
        self.write_settings()

    def background(self, environment=None):
        """Starts the program as a login does, and waits for its index."""
        child = subprocess.Popen([self.program, "--background"], stdout=subprocess.DEVNULL,
                                 stderr=subprocess.PIPE, text=True,
                                 env=environment or self.environment())
        self.children.append(child)
        self.addCleanup(child.stderr.close)
        eventually("the index", lambda: self.find("harbour", environment=environment))
        return child

    def find(self, query, environment=None):
        """Returns what the running program finds; nothing while none answers."""
        found = subprocess.run([self.ctl, "find", "--stats", query], capture_output=True, text=True,
                               env=environment or self.environment(), check=False)
        return found.stdout.splitlines() if "the running program" in found.stderr else []

    def count_use(self, path):
        subprocess.run([self.ctl, "use", path], env=self.environment(), check=True)

    def end(self, child):
        """Ends the program and returns its lines on standard error."""
        child.terminate()
        said = child.communicate(timeout=PATIENCE)[1].splitlines()
        self.assertEqual(child.returncode, 0)
        return said

    def test_the_folder_of_the_settings_goes(self):
        harbour = str(self.tree / "harbour")
        child = self.background()
        shutil.rmtree(self.settings.parent)
        self.count_use(harbour)
        self.assertEqual(self.uses(), {harbour: 1})
        self.assertEqual(self.settings.parent.stat().st_mode & 0o777, 0o700)
        self.assertEqual(self.end(child), [])

    def test_the_folder_of_the_index_goes_and_becomes_a_file(self):
        cache = self.home / ".cache"
        kept = cache / "quillon/index"
        child = self.background()
        eventually("the kept index", kept.exists)
        shutil.rmtree(cache)
        self.assertEqual(self.request("--rebuild"), 0)
        eventually("the index", lambda: self.find("plans"))
        self.assertEqual(self.end(child), [])
        child = self.background()
        eventually("the index kept anew", kept.exists)
        self.end(child)

        shutil.rmtree(cache)
        cache.touch()
        child = self.background()
        self.assertTrue(self.find("plans"))
        self.assertLessEqual(len(self.end(child)), 1)
        self.assertEqual(cache.stat().st_size, 0, "what is not ours stays as it is")

    def test_it_is_stopped_while_the_disk_changes(self):
        child = self.background()
        child.send_signal(signal.SIGSTOP)
        for number in range(300):
            os.makedirs(self.tree / f"pier {number}/berth")
        os.rmdir(self.tree / "gone")
        child.send_signal(signal.SIGCONT)
        eventually("the new folders", lambda: self.find("pier 299/berth"))
        eventually("the end of the old one", lambda: not self.find("/gone"))
        self.assertEqual(self.end(child), [])

    def test_the_window_manager_is_replaced(self):
        child = self.background()
        supporting = "_NET_SUPPORTING_WM_CHECK"
        former = output("xprop", "-root", supporting)
        # The new one stays until the private desktop ends.
        subprocess.Popen(["openbox", "--sm-disable", "--replace"], stderr=subprocess.DEVNULL)
        eventually("the new window manager", lambda: "window id" in
                   output("xprop", "-root", supporting) != former)
        # It loses windows that ask to be shown before it is done starting.
        eventually("its first answer", lambda: not output("xdotool", "set_desktop", "1") and
                   output("xdotool", "get_desktop") == "1\n")
        for _ in range(2):
            self.press("ctrl+alt+space")
            self.wait_for_panel()
            self.press("ctrl+alt+space")
            self.wait_for_no_panel()
        self.assertEqual(self.end(child), [])

    def test_it_is_started_on_another_display_of_the_session(self):
        child = self.background()
        other = dict(self.environment(), DISPLAY=self.screen()[1])
        done = subprocess.run([self.program], env=other, timeout=PATIENCE, check=False)
        self.assertEqual(done.returncode, 0)
        self.wait_for_panel()
        self.assertEqual(self.end(child), [])

    def test_the_bus_ends(self):
        record = self.open_folders_with_recorder()
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address"],
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                               env=self.environment())
        self.children.append(bus)
        self.addCleanup(bus.stdout.close)
        child = self.background(dict(self.environment(),
                                     DBUS_SESSION_BUS_ADDRESS=bus.stdout.readline().strip()))
        bus.terminate()
        bus.wait(PATIENCE)
        self.press("ctrl+alt+space")
        self.wait_for_panel()
        self.type("harbour")
        self.press_return_until_opened()
        self.assertEqual(self.recorded(record), [os.fsencode(self.tree / "harbour")])
        eventually("the use", lambda: self.uses() == {str(self.tree / "harbour"): 1})

        # A start on another bus does not reach the first program, and takes its place.
        other = self.background()
        self.assertEqual(child.wait(PATIENCE), 0)
        self.press("ctrl+alt+space")
        self.wait_for_panel()
        self.assertEqual(self.end(other), [])


if __name__ == "__main__":
    CircumstancesTest.ctl = os.path.abspath(sys.argv.pop(2))
    main()
