#!/usr/bin/env python3
"""Makes bursts of random changes while `quillonctl watch` runs, and compares index and disk.

random_rounds.py QUILLONCTL [--rounds N] [--seed N] [--jobs N]
"""

import argparse
import ctypes
import os
import random
import shutil
import sys
import tempfile
import time
from concurrent.futures import ProcessPoolExecutor

from session import MODES, Session

LIBC = ctypes.CDLL(None, use_errno=True)
AT_FDCWD = -100
RENAME_EXCHANGE = 2
NAMES = [b"a", b"b", b"c", b"-rf", b"tab\there", b"line\nfeed", "\u202eback".encode(),
         b"odd\xff\xfe bytes", b"n" * 255, b"node_modules", b".hidden", b"d.xcodeproj",
         b"f.sublime-project"]
FILES = [b"w.sublime-project", b"node_modules.sublime-project", b"-.sublime-project",
         b"\n.sublime-project", b"plain.txt"]
ROUNDS_OF_A_SESSION = 12
# Copies of a folder into itself are thousands of folders deep, and each look at one of those takes
# long on a busy machine.
PATIENCE = 120


class User:
    """Changes a tree in all ways in which a user's programs may change it."""

    def __init__(self, session, seed):
        self.session = session
        self.random = random.Random(seed)
        self.done = []
        self.actions = [self.make] * 4 + [self.remove] * 2 + [self.move] * 4 + [
            self.move_out, self.move_in, self.exchange, self.back_and_forth, self.copy,
            self.make_file, self.make_file, self.remove_file, self.replace_by_file, self.hide,
            self.unhide, self.link, self.other_root, self.rename_above, self.swap_up]

    def act(self):
        action = self.random.choice(self.actions)
        try:
            action()
        except (OSError, shutil.Error):
            pass

    def note(self, *what):
        self.done.append(what)

    def path(self):
        names = NAMES[:3] if self.random.random() < 0.6 else NAMES
        return b"/".join([self.session.root] +
                         [self.random.choice(names) for _ in range(self.random.randint(1, 4))])

    def make(self):
        path = self.path()
        self.note("mkdir -p", path)
        os.makedirs(path)

    def remove(self):
        path = self.path()
        self.note("rm -rf", path)
        if os.path.isdir(path) and not os.path.islink(path):
            shutil.rmtree(path)
        else:
            os.unlink(path)

    def move(self):
        one, other = self.path(), self.path()
        self.note("mv", one, other)
        os.rename(one, other)

    def move_out(self):
        one, other = self.path(), b"%s/%d" % (self.session.outside, self.random.randrange(4))
        self.note("mv", one, other)
        os.rename(one, other)

    def move_in(self):
        one, other = b"%s/%d" % (self.session.outside, self.random.randrange(4)), self.path()
        self.note("mv", one, other)
        os.rename(one, other)

    def exchange(self):
        one, other = self.path(), self.path()
        self.note("exchange", one, other)
        LIBC.renameat2(AT_FDCWD, one, AT_FDCWD, other, RENAME_EXCHANGE)

    def back_and_forth(self):
        one, away = self.path(), self.random.choice([self.path(), self.session.outside + b"/away"])
        stays = self.random.random() * 0.03
        self.note("mv", one, away, "and back after", stays)
        os.rename(one, away)
        if self.random.random() < 0.5:
            os.makedirs(one + b"/" + self.random.choice(NAMES[:3]))
            self.pause(stays)
            shutil.rmtree(one)
        else:
            self.pause(stays)
        os.rename(away, one)

    def copy(self):
        one, other = self.path(), self.path()
        if not other.startswith(one + b"/"):
            self.note("cp -r", one, other)
            shutil.copytree(one, other, symlinks=True)

    def make_file(self):
        path = os.path.dirname(self.path()) + b"/" + self.random.choice(FILES)
        self.note("touch", path)
        os.close(os.open(path, os.O_WRONLY | os.O_CREAT, 0o600))

    def remove_file(self):
        path = os.path.dirname(self.path()) + b"/" + self.random.choice(FILES)
        self.note("unlink", path)
        os.unlink(path)

    def replace_by_file(self):
        path = self.path()
        self.note("file instead of", path)
        shutil.rmtree(path)
        os.close(os.open(path, os.O_WRONLY | os.O_CREAT, 0o600))

    def hide(self):
        path = self.path()
        self.note("hide", path)
        os.rename(path, os.path.dirname(path) + b"/." + os.path.basename(path)[:254])

    def unhide(self):
        path = self.path()
        self.note("unhide", path)
        os.rename(os.path.dirname(path) + b"/." + os.path.basename(path)[:254], path)

    def link(self):
        one, other = self.path(), self.path()
        self.note("ln -s", one, other)
        os.symlink(one, other)

    def other_root(self):
        root, away = self.session.root, self.session.disk + b"/replaced"
        stays = self.random.random() * 0.03
        self.note("another root for", stays)
        os.rename(root, away)
        try:
            if self.random.random() < 0.8:
                os.makedirs(root + b"/fresh/" + self.random.choice(NAMES[:3]))
                self.pause(stays)
                if self.random.random() < 0.2:
                    shutil.rmtree(away)
                    return
                shutil.rmtree(root)
            else:
                self.pause(stays)
        finally:
            if os.path.isdir(away):
                shutil.rmtree(root, ignore_errors=True)
                os.rename(away, root)

    def rename_above(self):
        above = self.random.choice([b"/above", b"/above/mid"])
        one, other = self.session.disk + above, self.session.disk + b"/elsewhere"
        self.note("away and back", one)
        os.rename(one, other)
        self.pause(self.random.random() * 0.03)
        os.rename(other, one)

    def swap_up(self):
        """Puts a folder in the place of the one above it."""
        path = self.path()
        above, aside = os.path.dirname(path), self.session.outside + b"/aside"
        if above != self.session.root and os.path.isdir(path):
            self.note("up", path)
            os.rename(path, aside)
            shutil.rmtree(above)
            os.rename(aside, above)

    def pause(self, seconds):
        time.sleep(seconds)


def run_session(program, seed, rounds):
    """Returns how many rounds were run, and a text for the one that went wrong, if any."""
    # A folder copied into itself again and again is deeper than the interpreter's own limit.
    sys.setrecursionlimit(100_000)
    choice = random.Random(seed)
    mode = choice.choice(list(MODES))
    disk = choice.choice([None, "/dev/shm" if os.path.isdir("/dev/shm") else None])
    latency = choice.choice([0.001, 0.005, 0.02, 0.05])
    hidden = choice.random() < 0.5
    session = Session(program, mode, latency, disk, hidden=hidden)
    user = User(session, seed)
    try:
        session.ask()
        for number in range(rounds):
            user.done.clear()
            for _ in range(choice.randint(5, 70)):
                user.act()
                if choice.random() < 0.25:
                    user.pause(choice.random() * 0.015)
            if choice.random() < 0.4:
                wrong, how = session.differences_within(PATIENCE), "without settle"
            else:
                wrong, how = session.differences(session.ask(b"settle")), "after settle"
            if wrong:
                later = session.differences(session.ask(b"settle"))
                return number + 1, "\n".join(
                    ["seed %d, round %d, %s, latency %s, %s, %s, %s" %
                     (seed, number, mode, latency, disk or tempfile.gettempdir(),
                      "hidden folders too" if hidden else "no hidden folders", how),
                     "  differs:     %s" % wrong[:12], "  after settle: %s" % later[:12]] +
                    ["    %s" % (what,) for what in user.done])
        return rounds, ""
    except RuntimeError as error:
        return 1, "seed %d: %s" % (seed, error)
    finally:
        status = session.close()
        if status != 0:
            print("seed %d: ended with %s" % (seed, status), flush=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--rounds", type=int, default=10000)
    parser.add_argument("--seed", type=int, default=None)
    parser.add_argument("--jobs", type=int, default=2 * (os.cpu_count() or 1))
    arguments = parser.parse_args()
    seed = arguments.seed if arguments.seed is not None else random.randrange(1 << 30)
    per_session = min(ROUNDS_OF_A_SESSION, arguments.rounds)
    sessions = -(-arguments.rounds // per_session)
    run = wrong = 0
    with ProcessPoolExecutor(arguments.jobs) as pool:
        jobs = [pool.submit(run_session, arguments.program, seed + i, per_session)
                for i in range(sessions)]
        for job in jobs:
            rounds, text = job.result()
            run += rounds
            if text:
                wrong += 1
                print(text, flush=True)
    print("random rounds from seed %d: %d passed, %d failed" % (seed, run - wrong, wrong))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
