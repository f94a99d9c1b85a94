#!/usr/bin/env python3
"""Lets each system call of a write of the settings fail, and counts the writes that go wrong.

Usage: settings_faults_test.py [--long] [--sanitized] WRITER

A write may succeed or fail. It goes wrong when it reports one and does the other, loses a setting,
moves a good file away, loses the bytes of a bad one, or does not end. The short run lets each call
fail once with EIO and for ever with EINTR; the long run takes all errors, both ways.
"""
import argparse
import collections
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ERRORS = ["EACCES", "EAGAIN", "EBUSY", "EDQUOT", "EINTR", "EIO", "EMFILE", "ENFILE", "ENOMEM",
          "ENOSPC", "EPERM", "EROFS", "ESTALE"]
# In a file system that cannot exchange two names, the write makes other calls.
UNSUPPORTED = "renameat2:error=EINVAL"
# Calls that end the process or allocate memory are not part of the write.
EXEMPT = {"exit_group", "brk", "mmap", "munmap", "mprotect", "futex", "rt_sigaction"}
PATIENCE = 60  # seconds
OLD = {"old": {"/home/u/Documents": 3}, "other": ["a", "b"]}
WHOLE = json.dumps(OLD).encode()
BAD = b'{"old": 1,}'


class Write:
    """One run of the writer over its own settings."""

    def __init__(self, writer, kind):
        self.writer, self.kind = writer, kind
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="quillon-faults-"))
        self.path = self.folder / "quillon.json"
        target = self.path
        if kind == "link":
            target = self.folder / "kept" / "settings"
            target.parent.mkdir()
            self.path.symlink_to(target)
        if kind != "missing":
            target.write_bytes(BAD if kind == "bad" else WHOLE)

    def run(self, *injections):
        log = self.folder / "strace.log"
        spoiling = [BAD.decode()] if self.kind == "spoilt" else []
        # The leak check of a sanitizer does not work under a tracer.
        command = ["strace", "-o", log, "-e", "signal=none", "-E", "ASAN_OPTIONS=detect_leaks=0"]
        for injection in injections:
            command += ["-e", "inject=" + injection]
        try:
            done = subprocess.run([*command, self.writer, self.path, *spoiling], timeout=PATIENCE,
                                  stdin=subprocess.DEVNULL, capture_output=True)
            self.status = done.returncode
        except subprocess.TimeoutExpired:
            self.status = "hangs"
        return log.read_text(errors="replace")

    def fault(self):
        """Returns what went wrong, or None."""
        kept = [file.read_bytes() for file in self.folder.glob("*.bad-*")]
        if self.status not in (0, 1):
            return f"ends with {self.status}"
        if self.kind == "link" and not self.path.is_symlink():
            return "the link is gone"
        text = self.path.read_bytes() if self.path.exists() else None
        if self.kind == "bad":
            # Nothing was read before, so nothing may be written.
            is_as_before = (text, kept, self.status) == (BAD, [], 1)
            return None if is_as_before else "the bad file is not as it was"
        if self.kind == "spoilt" and self.status == 1:
            is_as_before = text == BAD and not kept
            return None if is_as_before else "the bad file is not as it was"
        if self.kind == "spoilt" and kept != [BAD]:
            return "the bad file is not kept"
        if kept and self.kind != "spoilt":
            return "a good file was moved away"
        found = {} if text is None else json.loads(text or b'"empty"')
        before = {} if self.kind == "missing" else OLD
        after = before | {"new": True}
        if found != (after if self.status == 0 else before):
            return f"status {self.status}, and the file holds {found}"
        return None

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.folder)


def calls_of_a_write(log):
    """Returns for each system call by name how many came before the write and in it."""
    before, during = collections.Counter(), collections.Counter()
    counter = before
    for line in log.splitlines():
        name = re.match(r"(\w+)\(", line)
        if name is None:
            continue
        if "/settings_writer/begins" in line:
            counter = during
        elif "/settings_writer/ends" in line:
            break
        elif name[1] not in EXEMPT:
            counter[name[1]] += 1
    # The calls that mark the write count among their kind as well.
    before["access"] += 1
    return {name: (before[name], number) for name, number in during.items()}


def faults(writer, kind, supported, errors, is_sanitized):
    """Yields, for each injected write, what was injected and what went wrong."""
    always = [] if supported else [UNSUPPORTED]
    with Write(writer, kind) as write:
        calls = calls_of_a_write(write.run(*always))
        expected = 1 if kind == "bad" else 0
        if write.status != expected or write.fault() or not calls:
            sys.exit(f"{kind}: without an injected error: {write.status}, {write.fault()}")
    for name, (before, number) in sorted(calls.items()):
        if always and name == "renameat2":
            continue
        for call in range(before + 1, before + number + 1):
            for error, for_ever in errors:
                # A sanitizer asks the kernel about memory by a write() that it repeats for ever.
                if is_sanitized and (name, error, for_ever) == ("write", "EINTR", True):
                    continue
                injection = f"{name}:error={error}:when={call}{'+' if for_ever else ''}"
                with Write(writer, kind) as write:
                    log = write.run(injection, *always)
                    if "(INJECTED)" not in log:
                        continue
                    yield f"{kind}: {injection}", write.fault()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("writer")
    parser.add_argument("--long", action="store_true")
    parser.add_argument("--sanitized", action="store_true", help="the writer is built so")
    arguments = parser.parse_args()
    if shutil.which("strace") is None:
        print("missing here: strace")
        sys.exit(1 if os.environ.get("QUILLON_REQUIRE_TOOLS") else 77)
    runs = [("plain", True), ("spoilt", True)]
    errors = [("EIO", False), ("EINTR", True)]
    if arguments.long:
        runs = [(kind, supported) for kind in ("plain", "link", "missing", "bad", "spoilt")
                for supported in (True, False)]
        errors = [(error, for_ever) for error in ERRORS for for_ever in (False, True)]
    writes = wrong = 0
    for kind, supported in runs:
        for injected, fault in faults(os.path.abspath(arguments.writer), kind, supported, errors,
                                      arguments.sanitized):
            writes += 1
            if fault:
                wrong += 1
                print(f"{injected}{'' if supported else ', without exchange'}: {fault}")
    print(f"injected writes: {writes - wrong} passed, {wrong} failed")
    sys.exit(1 if wrong or not writes else 0)


main()
