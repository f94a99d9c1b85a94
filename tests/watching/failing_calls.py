#!/usr/bin/env python3
"""Lets every call of the watcher fail for a while, with each of some errors, while the tree changes
or nothing happens. Once the fault is gone, the index has to equal the disk, both by itself and after
`settle`.

failing_calls.py QUILLONCTL LIBRARY [--some N] [--seed N] [--jobs N]
"""

import argparse
import os
import random
import sys
import tempfile
import time
import zlib
from collections import Counter
from concurrent.futures import ThreadPoolExecutor
from itertools import product
from threading import Timer

from faults import ERRORS, Faults
from random_rounds import User
from session import MODES, Session

CALLS = ["close", "fopen", "fstatfs", "getdents64", "inotify_add_watch",
         "inotify_init1", "inotify_rm_watch", "openat", "poll", "pthread_create", "read", "realpath",
         "statx"]
WHEN = ["changes", "quiet", "start"]
START_SECONDS = 5.0
FAULT_SECONDS = 1.0
# The program asks again after 1, 2 and 4 seconds.
RECOVERY_SECONDS = 15


def make_tree(session):
    for top, middle in product([b"a", b"b", b"c", b"project"], [b"a", b"b", b"node", b"x y"]):
        for leaf in [b"a", b"b", b"c"]:
            os.makedirs(b"/".join([session.root, top, middle, leaf]))
        with open(b"/".join([session.root, top, middle, b"w.sublime-project"]), "w"):
            pass


def change(session, seed, count):
    user = User(session, seed)
    for _ in range(count):
        user.act()
        user.pause(0.002)


def run_one(program, library, seed, call, error, mode, when):
    """Returns how often the call has failed, and a text for what went wrong, if anything."""
    seed = zlib.crc32(" ".join([str(seed), call, error, mode, when]).encode())
    with tempfile.TemporaryDirectory(prefix="quillon-faults-") as place:
        faults = Faults(library, place + "/errors")
        if when == "start":
            faults.start(call, error)
        session = Session(program, mode, 0.02, None, faults.environment(), make_tree)
        # A program that got no thread answers once it has one.
        end_of_start = Timer(START_SECONDS, faults.stop, [call])
        end_of_start.start()
        try:
            session.ask()
            end_of_start.cancel()
            if when == "changes":
                change(session, seed, 20)
            faults.start(call, error)
            end = time.monotonic() + FAULT_SECONDS
            if when != "quiet":
                change(session, seed + 1, 40)
            elif seed % 2:
                session.ask(b"settle")
            time.sleep(max(0, end - time.monotonic()))
            faults.stop(call)
            wrong = session.differences_within(RECOVERY_SECONDS)
            later = session.differences(session.ask(b"settle"))
        except RuntimeError as failure:
            return faults.hits(call), str(failure)
        finally:
            end_of_start.cancel()
            session.close()
    if wrong or later:
        return faults.hits(call), "without settle %s, after settle %s" % (wrong[:6], later[:6])
    return faults.hits(call), ""


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("library")
    parser.add_argument("--some", type=int, help="so many of the table, chosen at random")
    parser.add_argument("--call")
    parser.add_argument("--seed", type=int, default=random.randrange(1 << 32),
                        help="for the choice of rows and the changes; another one each time")
    parser.add_argument("--jobs", type=int, default=8 * (os.cpu_count() or 1))
    arguments = parser.parse_args()
    # A name that is too long stays so, and the program does not ask again.
    table = [(call, *row) for call in CALLS for row in product(ERRORS[call], MODES, WHEN)
             if row[0] != "ENAMETOOLONG"]
    if arguments.call:
        table = [row for row in table if row[0] == arguments.call]
    if arguments.some:
        table = random.Random(arguments.seed).sample(table, arguments.some)
    wrong, hits = Counter(), Counter()
    with ThreadPoolExecutor(arguments.jobs) as pool:
        jobs = [(row, pool.submit(run_one, arguments.program, arguments.library,
                                  arguments.seed, *row))
                for row in table]
        for row, job in jobs:
            failed, text = job.result()
            hits[row[0]] += failed > 0
            if text:
                wrong[row[0]] += 1
                print("%s: %s" % (" ".join(row), text), flush=True)
    run = Counter(row[0] for row in table)
    for call in CALLS:
        if run[call]:
            print("%-18s %4d sessions, the fault was met in %d, %d wrong" %
                  (call, run[call], hits[call], wrong[call]))
    print("failing calls from seed %d: %d passed, %d failed" %
          (arguments.seed, len(table) - sum(wrong.values()), sum(wrong.values())))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
