#!/usr/bin/env python3
"""Kills the program without windows at random moments, while it starts, stores settings and uses
and keeps its index. Each time the settings have to hold the last write that was acknowledged, or
the one that was under way, and the kept index has to be the old one or the new one, from which
`quillonctl find` answers.

kills.py QUILLONCTL WINDOWLESS_PROGRAM [--kills N] [--seed N] [--jobs N]
"""

import argparse
import os
import random
import sys
import threading
from collections import Counter
from concurrent.futures import ThreadPoolExecutor

from failing_steps import OLD_PATH, OLD_USES, Windowless

LONGEST_LIFE = 0.25  # seconds
OLD_ENOUGH = 120  # seconds, for what a killed write has left


class Victim(Windowless):
    """A program that is killed and started again. Each of its writes is a pair: what is known to be
    stored, and what may be stored as well, since the program died before it answered."""

    def __init__(self, quillonctl, windowless, seed):
        super().__init__(quillonctl, windowless, {})
        self.random = random.Random(seed)
        self.command = [windowless]
        self.numbers = (0, 0)
        self.used = (0, 0)
        self.indexes = (None, None)
        self.during = ""

    def folders(self):
        return {folder for folder, _, _ in os.walk(self.root)}

    def keep_by(self, line):
        """Gives a command that writes the index, and waits for its answer."""
        self.during = line
        self.indexes = (self.indexes[0], self.folders())
        if self.say(line):
            raise RuntimeError("%s is answered by a text" % line)
        self.indexes = (self.indexes[1], self.indexes[1])

    def store(self, line, former, value):
        """Gives a command that stores a value, and returns the pair of it."""
        self.during = line
        pair = former[0], value
        answer = self.say(line)
        if answer != "stored":
            raise RuntimeError("%s is answered by %s" % (line, answer))
        return pair[1], pair[1]

    def act(self):
        choice = self.random.random()
        if choice < 0.4:
            number = self.numbers[0] + 1
            self.numbers = (self.numbers[0], number)
            self.numbers = self.store("set %d" % number, self.numbers, number)
        elif choice < 0.7:
            uses = self.used[0] + 1
            self.used = (self.used[0], uses)
            self.used = self.store("use /used", self.used, uses)
        else:
            self.change_disk()
            self.during = "settle"
            self.ask(b"settle")
            self.keep_by("keep")

    def live(self):
        """Runs until the program is killed."""
        killer = threading.Timer(self.random.random() * LONGEST_LIFE, self.process.kill)
        dies_early = self.random.random() < 0.3
        try:
            if dies_early:
                killer.start()
            self.keep_by("start")
            if not dies_early:
                killer.start()
            while True:
                self.act()
        except (RuntimeError, BrokenPipeError) as error:
            killer.join()
            status = self.process.wait()
            return [] if status == -9 else ["%s, status %d" % (error, status)]

    def faults(self):
        """Returns what is wrong with the files, and takes what they hold as known."""
        wrong = []
        try:
            stored = self.stored()
        except ValueError as error:
            return ["the settings are not whole: %s" % error]
        uses = stored.get("recent-access-score-data", {})
        if stored.get("test-number") not in self.numbers:
            wrong.append("%s is stored, not one of %s" % (stored.get("test-number"), self.numbers))
        if uses.get(OLD_PATH) != OLD_USES or uses.get("/used", 0) not in self.used:
            wrong.append("the uses are %s, not one of %s" % (uses, self.used))
        if list(stored["qln-bookmarks"]) != [self.root.decode()]:
            wrong.append("the folders are %s" % stored["qln-bookmarks"])
        kept = self.kept()
        if kept not in self.indexes:
            wrong.append("the kept index is %s, not one of %s" % (kept, self.indexes))
        self.numbers = (stored.get("test-number", 0),) * 2
        self.used = (uses.get("/used", 0),) * 2
        self.indexes = (kept, kept)
        return wrong

    def leftovers(self):
        """Returns which files remain in the end, when what was left behind is old enough."""
        folders = [os.path.dirname(self.settings), os.path.dirname(self.index)]
        for folder in folders:
            for name in os.listdir(folder):
                path = folder + "/" + name
                old = os.stat(path).st_mtime - OLD_ENOUGH
                os.utime(path, (old, old))
        self.start(self.command, {})
        self.keep_by("start")
        self.change_disk()
        self.ask(b"settle")
        self.keep_by("keep")
        left = {name for folder in folders for name in os.listdir(folder)}
        return left - {"quillon.json", "quillon.json.lock", "index"}


def kill_often(programs, seed, kills):
    """Returns what the program was doing, and what was wrong."""
    victim = Victim(*programs, seed)
    moments, wrong = Counter(), []
    for number in range(kills):
        if number:
            victim.start(victim.command, {})
        faults = victim.live() + victim.faults()
        moments[victim.during.split()[0]] += 1
        wrong += ["seed %d, kill %d, at %s: %s" % (seed, number, victim.during, fault)
                  for fault in faults]
    left = victim.leftovers()
    if left:
        wrong.append("seed %d: there remain %s" % (seed, left))
    victim.close()
    return moments, wrong


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("programs", nargs=2, metavar="PROGRAM")
    parser.add_argument("--kills", type=int, default=1000)
    parser.add_argument("--seed", type=int, default=random.randrange(1 << 30))
    parser.add_argument("--jobs", type=int, default=2 * (os.cpu_count() or 1))
    arguments = parser.parse_args()
    jobs = min(arguments.jobs, arguments.kills)
    shares = [arguments.kills // jobs + (job < arguments.kills % jobs) for job in range(jobs)]
    moments, wrong = Counter(), []
    with ThreadPoolExecutor(jobs) as pool:
        for found, texts in pool.map(lambda job: kill_often(arguments.programs,
                                                            arguments.seed + job, shares[job]),
                                     range(jobs)):
            moments += found
            wrong += texts
    for text in wrong:
        print(text)
    print("killed at " + ", ".join("%s %d" % moment for moment in moments.most_common()))
    print("kills from seed %d: %d passed, %d failed" %
          (arguments.seed, max(0, sum(moments.values()) - len(wrong)), len(wrong)))
    return 1 if wrong or not moments else 0


if __name__ == "__main__":
    sys.exit(main())
