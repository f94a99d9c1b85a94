#!/usr/bin/env python3
"""Lets each call fail that the program makes in a step of a session: a start, a build, keeping the
index, storing a setting or a use, running an action's program. Each call fails with each of its
errors, once at each place of the step and all along it. Then the fault ends, and the program has to
live, to hold the index of the disk and to have lost nothing that it has stored.

failing_steps.py QUILLONCTL WINDOWLESS_PROGRAM LIBRARY [--some N] [--seed N] [--jobs N]
"""

import argparse
import json
import os
import random
import subprocess
import sys
import tempfile
import time
from collections import Counter
from concurrent.futures import ThreadPoolExecutor, as_completed

from faults import ERRORS, Faults
from session import Session

# A folder that seems to be missing is looked for once a minute.
RECOVERY_SECONDS = 80
MOST_TEXTS = 5
# The libraries open some descriptors of their own late. A leak grows from fault to fault.
LEEWAY = 2
# The kernel has no memory for a poll() for a moment only. The libraries' loops then try again.
NEVER_LASTING = [("poll", "ENOMEM")]
# A program is written nothing. What is written there wakes threads up by counters of the kernel.
ERRORS_OF_STEP = {("run a program", "write"): ["EINTR"]}
OLD_PATH = "/opened/before"
OLD_USES = 5


class Windowless(Session):
    """The program without windows, with settings, on a small tree."""

    def __init__(self, quillonctl, windowless, environment):
        super().__init__(quillonctl, None, 0, environment=environment, make=self.make,
                         windowless=[windowless])
        self.settings = self.home + "/config/quillon/quillon.json"
        self.index = self.home + "/cache/quillon/index"
        self.number = self.made = self.uses = 0
        self.write_settings()

    @staticmethod
    def make(self):
        for path in [b"a/b/c", b"d/e", b"f"]:
            os.makedirs(self.root + b"/" + path)

    def write_settings(self):
        os.makedirs(os.path.dirname(self.settings), exist_ok=True)
        root = self.root.decode()
        with open(self.settings, "w") as file:
            json.dump({"qln-bookmarks": {root: root}, "test-number": self.number,
                       "recent-access-score-data": {OLD_PATH: OLD_USES}}, file)

    def say(self, line):
        """Returns the only text of an answer, or an empty one."""
        return b"".join(self.ask(line.encode())).decode(errors="replace")

    def stored(self):
        with open(self.settings) as file:
            return json.load(file)

    def stored_uses(self):
        return self.stored().get("recent-access-score-data", {}).get("/used", 0)

    def change_disk(self):
        """Makes one folder and removes the former one."""
        self.made += 1
        os.makedirs(b"%s/a/made-%d/deep" % (self.root, self.made))
        former = b"%s/a/made-%d" % (self.root, self.made - 1)
        if os.path.isdir(former):
            os.rmdir(former + b"/deep")
            os.rmdir(former)

    def kept(self):
        """Returns the folders in the kept index, or nothing where there is no whole one."""
        found = subprocess.run(
            [self.program, "find", "--stats", "-0", "--top", "1000", "root"], check=False,
            env=self.environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        if b"answered from the index as it was" not in found.stderr:
            return None
        return set(found.stdout.split(b"\0")) - {b""}

    def complaints_since(self, place):
        with open(self.home + "/complaints", "rb") as file:
            file.seek(place)
            return file.read().splitlines()

    def descriptors(self):
        return len(os.listdir("/proc/%d/fd" % self.process.pid))


class Step:
    """Runs one step of a session again and again. Each method returns what is wrong, or nothing."""

    def __init__(self, session):
        self.session = session

    def prepare(self):
        """Runs before the fault begins."""

    def act(self):
        """Runs while the fault lasts."""

    def check(self):
        """Runs after the fault has ended."""


class Starting(Step):
    def prepare(self):
        self.session.ask(b"stop")

    def act(self):
        self.answer = self.session.say("start")
        if self.answer not in ("", "waits"):
            return "the start answers " + self.answer

    def check(self):
        if self.answer == "waits" and self.session.say("start"):
            return "the settings stay unreadable"


class FirstStart(Starting):
    def prepare(self):
        super().prepare()
        if os.path.exists(self.session.index):
            os.unlink(self.session.index)


class NextStart(Starting):
    def prepare(self):
        super().prepare()
        self.session.change_disk()
        os.utime(self.session.root)


class Build(Step):
    def act(self):
        self.session.change_disk()
        self.session.ask(b"build")


class Keep(Step):
    def prepare(self):
        self.session.change_disk()
        self.session.ask(b"settle")
        self.before = self.session.kept()

    def act(self):
        self.session.ask(b"keep")

    def check(self):
        kept = self.session.kept()
        if kept not in (self.before, self.session.crawled()):
            return "the kept index is neither the old one nor the new one: %s" % kept


class StoreSetting(Step):
    def act(self):
        former = self.session.number
        answer = self.session.say("set %d" % (former + 1))
        if answer == "stored":
            self.session.number += 1
        elif answer != "not stored":
            return "storing answers " + answer


class StoreUse(Step):
    def act(self):
        before = self.session.stored_uses()
        answer = self.session.say("use /used")
        self.session.uses = before + (answer == "stored")


class RunProgram(Step):
    def act(self):
        answer = self.session.say("run echo ran")
        # What cannot be read is lost.
        if answer not in ("ran\n", "") and not answer.startswith(("not started: ", "failed: ")):
            return "the action answers " + answer

    def check(self):
        answer = self.session.say("run echo ran")
        if answer != "ran\n":
            return "the next action answers " + answer


STEPS = {"first start": FirstStart, "next start": NextStart, "build": Build, "keep": Keep,
         "store a setting": StoreSetting, "store a use": StoreUse, "run a program": RunProgram}


def general_faults(session, place):
    """Yields what is wrong after any step."""
    wrong = session.differences_within(RECOVERY_SECONDS)
    later = session.differences(session.ask(b"settle"))
    if wrong or later:
        yield "the index differs: without settle %s, after settle %s" % (wrong[:6], later[:6])
    stored = session.stored()
    uses = stored.get("recent-access-score-data", {})
    if stored.get("test-number") != session.number:
        yield "%s is stored and not %d" % (stored.get("test-number"), session.number)
    if session.say("setting") != str(session.number):
        yield "%s is in force and not %d" % (session.say("setting"), session.number)
    if uses.get(OLD_PATH) != OLD_USES or uses.get("/used", 0) != session.uses:
        yield "the stored uses are %s after %d" % (uses, session.uses)
    if session.say("use /used") == "stored":
        session.uses = session.stored_uses()
    uses = session.stored().get("recent-access-score-data", {})
    if uses.get(OLD_PATH) != OLD_USES:
        yield "a use has left %s" % uses
    session.ask(b"keep")
    if session.kept() != session.crawled():
        yield "the kept index is %s" % session.kept()
    said = Counter(session.complaints_since(place))
    for line, times in said.items():
        if times > 1:
            yield "said %d times: %s" % (times, line.decode(errors="replace"))


def run_step(step, session, faults, call, fault):
    """Returns what is wrong after the step with the fault, as texts."""
    place = os.path.getsize(session.home + "/complaints")
    step.prepare()
    faults.start(call, *fault)
    try:
        wrong = [step.act()]
    finally:
        faults.stop(call)
    wrong += [step.check(), *general_faults(session, place)]
    return [text for text in wrong if text]


class Place:
    """A session with its faults, which begins anew when the program has ended."""

    def __init__(self, programs, step):
        self.quillonctl, self.windowless, library = programs
        self.kind = STEPS[step]
        self.folder = tempfile.TemporaryDirectory(prefix="quillon-faults-")
        self.faults = Faults(library, self.folder.name + "/errors")
        self.begin()

    def begin(self):
        self.session = Windowless(self.quillonctl, self.windowless, self.faults.environment())
        self.step = self.kind(self.session)
        self.session.ask(b"start")
        # Each kind of step has run once before the descriptors are counted.
        for kind in STEPS.values():
            step = kind(self.session)
            wrong = [step.prepare(), step.act(), step.check()]
            assert not any(wrong), wrong
        self.descriptors = self.session.descriptors()

    def calls(self):
        """Returns how often the step makes each call."""
        self.step.prepare()
        before = self.faults.made()
        self.step.act()
        made = {call: number - before[call] for call, number in self.faults.made().items()}
        self.step.check()
        return {call: number for call, number in made.items() if number}

    def run(self, call, fault):
        """Returns whether the fault was met, and what was wrong."""
        before = self.faults.hits(call)
        try:
            wrong = run_step(self.step, self.session, self.faults, call, fault)
            if self.descriptors_left() > self.descriptors + LEEWAY:
                wrong.append("%d descriptors are open and not %d" % (
                    self.session.descriptors(), self.descriptors))
                self.descriptors = self.session.descriptors()
        except RuntimeError as failure:
            wrong = ["%s: %s" % (failure, self.session.complaints_since(0)[-3:])]
            self.session.close()
            self.begin()
        return self.faults.hits(call) > before, wrong

    def descriptors_left(self):
        """Returns how many descriptors are open. A program that has ended keeps its own until the
        next one is run."""
        for _ in range(20):
            if self.session.descriptors() <= self.descriptors + LEEWAY:
                break
            self.session.say("run :")
            time.sleep(0.02)
        return self.session.descriptors()

    def close(self):
        self.session.close()
        self.folder.cleanup()


def run_rows(programs, step, rows):
    """Runs the rows, each a call and a fault, in one session. Yields each with its outcome."""
    place = Place(programs, step)
    outcomes = [(step, *row, *place.run(*row)) for row in rows]
    place.close()
    return outcomes


def table_of(programs):
    """Returns the rows of the whole table by step."""
    table = []
    for step in STEPS:
        place = Place(programs, step)
        for call, number in place.calls().items():
            for error in ERRORS_OF_STEP.get((step, call), ERRORS[call]):
                if (call, error) not in NEVER_LASTING:
                    table.append((step, call, (error,)))
                table += [(step, call, (error, skipped, 1)) for skipped in range(number)]
        place.close()
    return table


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("programs", nargs=3, metavar="PROGRAM")
    parser.add_argument("--some", type=int, help="so many of the table, chosen at random")
    parser.add_argument("--step", choices=STEPS)
    parser.add_argument("--call")
    parser.add_argument("--seed", type=int, default=random.randrange(1 << 32),
                        help="for the choice of rows; another one each time")
    parser.add_argument("--jobs", type=int, default=4 * (os.cpu_count() or 1))
    arguments = parser.parse_args()
    table = [row for row in table_of(arguments.programs)
             if arguments.call in (None, row[1]) and arguments.step in (None, row[0])]
    if arguments.some:
        table = random.Random(arguments.seed).sample(table, min(arguments.some, len(table)))
    sessions = {}
    for step, call, fault in table:
        sessions.setdefault((step, call), []).append((call, fault))
    bad = 0
    with ThreadPoolExecutor(arguments.jobs) as pool:
        jobs = [pool.submit(run_rows, arguments.programs, step, rows)
                for (step, _), rows in sessions.items()]
        for job in as_completed(jobs):
            outcomes = job.result()
            wrong = [outcome for outcome in outcomes if outcome[4]]
            bad += len(wrong)
            for step, call, fault, _, texts in wrong:
                for text in texts[:MOST_TEXTS]:
                    print("%s, %s %s: %s" % (step, call, fault, text))
            print("%-16s %-18s %4d faults, %4d met, %d wrong" % (
                *outcomes[0][:2], len(outcomes), sum(outcome[3] for outcome in outcomes),
                len(wrong)), flush=True)
    print("failing steps from seed %d: %d passed, %d failed" %
          (arguments.seed, len(table) - bad, bad))
    return 1 if bad or not table else 0


if __name__ == "__main__":
    sys.exit(main())
