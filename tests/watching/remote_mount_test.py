#!/usr/bin/env python3
"""Tests a file system of another machine inside a watched folder. The program sees one in any mount
by FUSE: the kernel reports nothing of what happens behind it, and its server may stop answering.

remote_mount_test.py QUILLONCTL; ends with 77 if nothing can be mounted.
"""

import os
import shutil
import signal
import subprocess
import sys
import time
import unittest

from session import Session

PROGRAM = ""
PATIENCE = 60  # after so many seconds something that should happen counts as missing


class Server:
    """Shows one folder in another place, as a remote file system."""

    def __init__(self, shown, place):
        self.place = place
        # The kernel caches no answer, so the next look sees what is there.
        self.process = subprocess.Popen(
            ["bindfs", "-f", "-o", "attr_timeout=0,entry_timeout=0,negative_timeout=0", shown, place],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        end = time.monotonic() + PATIENCE
        while not os.path.ismount(place):
            if self.process.poll() is not None or time.monotonic() > end:
                raise unittest.SkipTest("no FUSE file system can be mounted here")
            time.sleep(0.02)

    def signal(self, number):
        self.process.send_signal(number)

    def end(self):
        self.signal(signal.SIGCONT)
        subprocess.run(["fusermount3", "-u", "-z", self.place], check=False,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.process.kill()
        self.process.wait()


class RemoteMount:
    """The tests, which run with watches and without any in the two classes below."""

    mode = ""

    def begin(self, isMounted):
        """Starts the program on a root with a local folder and a place for the mount."""
        def make(session):
            self.far = session.outside + b"/far"
            self.share = session.root + b"/box/share"
            os.makedirs(self.far + b"/old/deep")
            os.makedirs(session.root + b"/local")
            os.makedirs(self.share)
            if isMounted:
                self.mount()
        self.server = None
        self.addCleanup(lambda: self.server and self.server.end())
        self.session = Session(PROGRAM, self.mode, 0.02, None, None, make)
        self.addCleanup(self.close)
        self.session.ask()

    def close(self):
        # The session removes its folders, and with them whatever is still mounted there.
        if self.server:
            self.server.end()
            self.server = None
        self.assertEqual(self.session.close(), 0)

    def mount(self):
        self.server = Server(self.far, self.share)

    def unmount(self):
        self.server.end()
        self.server = None

    def check(self, what):
        self.assertEqual(self.session.differences_within(PATIENCE), [], what)

    def wait_for(self, path):
        end = time.monotonic() + PATIENCE
        while path not in self.session.ask():
            self.assertLess(time.monotonic(), end, f"never came: {path}")
            time.sleep(0.02)

    def change_everywhere(self, name):
        """Changes files behind the mount, through it, and beside it."""
        os.makedirs(self.far + b"/behind " + name + b"/deep")
        self.check("a folder made behind the mount")
        os.makedirs(self.share + b"/through " + name + b"/deep")
        self.check("a folder made through the mount")
        os.rename(self.far + b"/behind " + name, self.far + b"/old/moved " + name)
        self.check("a folder moved behind the mount")
        shutil.rmtree(self.far + b"/old/moved " + name)
        os.makedirs(self.session.root + b"/local/" + name)
        self.check("a folder removed behind the mount, and a local one made")

    def test_mounted_before_the_start_and_again(self):
        self.begin(isMounted=True)
        self.assertIn(self.share + b"/old/deep", self.session.ask())
        self.change_everywhere(b"one")
        self.unmount()
        self.check("the mount has gone")
        self.assertNotIn(self.share + b"/old", self.session.ask())
        os.makedirs(self.far + b"/while away/deep")
        self.mount()
        self.wait_for(self.share + b"/while away/deep")
        self.change_everywhere(b"two")

    def test_mounted_later(self):
        self.begin(isMounted=False)
        self.check("nothing is mounted")
        self.mount()
        self.wait_for(self.share + b"/old/deep")
        self.change_everywhere(b"one")
        self.unmount()
        self.check("the mount has gone")

    def test_a_server_that_stops_answering(self):
        self.begin(isMounted=True)
        self.check("the start")
        self.server.signal(signal.SIGSTOP)
        os.makedirs(self.session.root + b"/local/meanwhile/deep")
        os.makedirs(self.far + b"/meanwhile")
        self.wait_for(self.session.root + b"/local/meanwhile/deep")
        self.assertIn(self.share + b"/old/deep", self.session.ask(), "no answer is not gone")
        # The mount moves with the folder above it, which the kernel does not report.
        os.rename(self.session.root + b"/box", self.session.root + b"/crate")
        self.share = self.server.place = self.session.root + b"/crate/share"
        self.wait_for(self.session.root + b"/crate")
        for number in range(3):
            place = self.session.root + b"/local/beside a crate %d" % number
            os.mkdir(place)
            self.wait_for(place)
        self.server.signal(signal.SIGCONT)
        self.wait_for(self.share + b"/meanwhile")
        self.change_everywhere(b"afterwards")

    def test_a_server_that_dies(self):
        self.begin(isMounted=True)
        self.check("the start")
        self.server.process.kill()
        self.server.process.wait()
        os.makedirs(self.session.root + b"/local/meanwhile/deep")
        self.wait_for(self.session.root + b"/local/meanwhile/deep")
        self.assertIn(self.share + b"/old/deep", self.session.ask(), "broken is not gone")
        self.unmount()
        self.check("the mount has gone")


def main():
    global PROGRAM
    PROGRAM = os.path.abspath(sys.argv[1])
    if not shutil.which("bindfs"):
        print("bindfs is not installed", file=sys.stderr)
        sys.exit(1 if os.environ.get("QUILLON_REQUIRE_TOOLS") else 77)
    suite = unittest.TestSuite()
    for mode in ("plenty", "none"):
        case = type(mode, (RemoteMount, unittest.TestCase), {"mode": mode})
        suite.addTests(unittest.defaultTestLoader.loadTestsFromTestCase(case))
    result = unittest.TextTestRunner(verbosity=2).run(suite)
    if result.skipped and result.wasSuccessful():
        sys.exit(77)
    sys.exit(not result.wasSuccessful())


if __name__ == "__main__":
    main()
