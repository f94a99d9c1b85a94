"""Runs `quillonctl watch` on a tree of its own, and compares the index with a crawl."""

import os
import select
import shutil
import subprocess
import tempfile
import time

MODES = {
    "plenty": [],
    "thirty": ["--budget", "30"],
    "none": ["--budget", "0"],
}

PATIENCE = 60  # seconds

# The program indexes these besides folders unless its settings say otherwise.
EXTENSIONS = ["xcodeproj", "xcworkspace", "sublime-project", "sublime-workspace"]


class Session:
    """The program, running on DISK/above/mid/root. close() ends it and removes the tree. The
    program is QUILLONCTL or, if that is given, the command of the one without windows."""

    def __init__(self, program, mode, latency, disk=None, environment=None, make=None,
                 hidden=False, windowless=None):
        self.program = program
        self.hidden = ["--hidden"] if hidden else []
        self.disk = tempfile.mkdtemp(prefix="quillon-watch-", dir=disk).encode()
        self.home = tempfile.mkdtemp(prefix="quillon-home-")
        self.root = self.disk + b"/above/mid/root"
        self.outside = self.disk + b"/outside"
        os.makedirs(self.root)
        os.makedirs(self.outside)
        if make:
            make(self)
        self.environment = dict(os.environ, HOME=self.home, XDG_CONFIG_HOME=self.home + "/config",
                                XDG_CACHE_HOME=self.home + "/cache", XDG_RUNTIME_DIR=self.home,
                                DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent",
                                LC_ALL="C.UTF-8")
        self.complaints = open(self.home + "/complaints", "w+b")
        self.start(windowless or
                   [program, "watch", "-0", "--latency", str(latency), "--window", "0.003",
                    "--sweep", "0.2", *self.hidden, *MODES[mode], self.root], environment or {})

    def start(self, command, environment):
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=self.complaints,
                                        env=dict(self.environment, **environment))

    def close(self):
        self.process.stdin.close()
        try:
            status = self.process.wait(20)
        except subprocess.TimeoutExpired:
            self.process.kill()
            status = "killed, since it did not end"
        self.process.stdout.close()
        self.complaints.close()
        shutil.rmtree(self.disk, ignore_errors=True)
        shutil.rmtree(self.home, ignore_errors=True)
        return status

    def ask(self, line=b""):
        """Returns the indexed paths now or, with the line `settle`, after all changes so far."""
        self.process.stdin.write(line + b"\n")
        self.process.stdin.flush()
        output = b""
        while not (output == b".\0" or output.endswith(b"\0.\0")):
            if not select.select([self.process.stdout], [], [], PATIENCE)[0]:
                self.process.kill()
                raise RuntimeError("the program does not answer: %s" % line)
            piece = self.process.stdout.read1(1 << 20)
            if not piece:
                raise RuntimeError("the program has ended: %s" % self.process.wait())
            output += piece
        return set(output[:-2].split(b"\0")) - {b""}

    def crawled(self):
        files = [part for extension in EXTENSIONS for part in ("--ext", extension)]
        found = subprocess.run([self.program, "crawl", "-0", *self.hidden, *files, self.root],
                               env=self.environment,
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
        return set(found.stdout.split(b"\0")) - {b""}

    def differences(self, held):
        """Returns what the index lacks, with a plus, and what it holds wrongly, with a minus."""
        wanted = self.crawled()
        strip = len(self.root)
        return ([b"+" + path[strip:] for path in sorted(wanted - held)] +
                [b"-" + path[strip:] for path in sorted(held - wanted)])

    def differences_within(self, seconds):
        """Waits for some time until there are no differences, and returns those that are left."""
        end = time.monotonic() + seconds
        while True:
            found = self.differences(self.ask())
            if not found or time.monotonic() > end:
                return found
            time.sleep(0.02)
