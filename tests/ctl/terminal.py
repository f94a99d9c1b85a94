"""A terminal in memory, in which a program runs with a home folder of its own."""

import fcntl
import os
import pathlib
import pty
import select
import signal
import struct
import sys
import tempfile
import termios
import time
import unittest

from desktop import PATIENCE, lacks

try:
    import pyte
except ImportError:
    pyte = None


class Terminal:
    """A program on a terminal, whose screen is read as a person sees it."""

    def __init__(self, command, environment, rows=24, columns=80):
        self.screen = pyte.Screen(columns, rows)
        self.stream = pyte.ByteStream(self.screen)
        self.output = b""
        self.status = None
        self.pid, self.master = pty.fork()
        if self.pid == 0:
            try:
                os.execvpe(command[0], command, environment)
            finally:
                os._exit(127)
        self.resize(rows, columns)

    def resize(self, rows, columns):
        self.screen.resize(rows, columns)
        fcntl.ioctl(self.master, termios.TIOCSWINSZ, struct.pack("HHHH", rows, columns, 0, 0))

    def send(self, keys):
        os.write(self.master, keys if isinstance(keys, bytes) else keys.encode())

    def lines(self):
        return [line.rstrip() for line in self.screen.display]

    def text(self):
        return "\n".join(self.lines()).rstrip()

    def read(self):
        """Takes what the program has written since, for a moment at most. False at its end."""
        if not select.select([self.master], [], [], 0.05)[0]:
            return True
        try:
            written = os.read(self.master, 65536)
        except OSError:
            return False
        self.output += written
        self.stream.feed(written)
        return bool(written)

    def await_screen(self, what, shown):
        """Reads until the screen is as the function wants it."""
        deadline = time.monotonic() + PATIENCE
        while not shown():
            has_ended = not self.read()
            if (has_ended and not shown()) or time.monotonic() > deadline:
                raise AssertionError(f"never shown: {what}\n{self.text()}")

    def await_text(self, text):
        self.await_screen(text, lambda: text in self.text())

    def end(self):
        """Reads to the end of the program. Returns its status, negative for a signal."""
        deadline = time.monotonic() + PATIENCE
        while self.read():
            if time.monotonic() > deadline:
                raise AssertionError(f"does not end\n{self.text()}")
        return self.close()

    def close(self):
        if self.status is None:
            os.close(self.master)
            self.status = os.waitstatus_to_exitcode(os.waitpid(self.pid, 0)[1])
        return self.status


class TerminalTest(unittest.TestCase):
    """A home folder for each test, in which nothing runs and no index is kept."""

    ctl = ""

    def setUp(self):
        if pyte is None:
            lacks("python3-pyte")
        folder = tempfile.TemporaryDirectory(prefix="quillon-pick-")
        self.addCleanup(folder.cleanup)
        self.top = pathlib.Path(folder.name)
        self.home = self.top / "home"
        self.home.mkdir()
        self.environment = dict(
            os.environ, HOME=str(self.home), XDG_CONFIG_HOME=str(self.top / "config"),
            XDG_CACHE_HOME=str(self.top / "cache"), XDG_DATA_HOME=str(self.top / "data"),
            XDG_RUNTIME_DIR=str(self.top), TERM="xterm-256color", LC_ALL="C.UTF-8",
            DBUS_SESSION_BUS_ADDRESS=f"unix:path={self.top}/no-bus",
            PATH=f"{os.path.dirname(self.ctl)}:{os.environ['PATH']}")
        self.environment.pop("NO_COLOR", None)

    def make_folders(self, *names):
        for name in names:
            os.makedirs(os.path.join(os.fsencode(self.home), os.fsencode(name)))

    def start(self, *command, **size):
        terminal = Terminal(command, self.environment, **size)
        self.addCleanup(self.stop, terminal)
        return terminal

    @staticmethod
    def stop(terminal):
        if terminal.status is None:
            os.kill(terminal.pid, signal.SIGKILL)
            terminal.close()

    def shell(self, line, **size):
        """Starts a line of sh, with its working directory in the home folder."""
        return self.start("sh", "-c", f"cd; {line}", **size)

    def out(self):
        """What the program has written to the file "out" in the home folder."""
        return (self.home / "out").read_bytes()


def run_tests():
    from desktop import finish
    TerminalTest.ctl = os.path.abspath(sys.argv.pop(1))
    finish(unittest.main(verbosity=2, exit=False).result)
