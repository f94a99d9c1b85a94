"""Starts the program on a private desktop and asks it, for the scripts that measure it as a whole."""

import datetime
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent


class Failed(Exception):
    """A measurement that could not be taken."""


def await_true(what, probe, patience=60):
    """Waits until the probe is true, and returns what it answered."""
    deadline = time.monotonic() + patience
    while not (answer := probe()):
        if time.monotonic() > deadline:
            raise Failed(f"never came: {what}")
        time.sleep(0.2)  # often enough, and little work beside what is measured
    return answer


def settings_file():
    return pathlib.Path(os.environ["XDG_CONFIG_HOME"]) / "quillon/quillon.json"


def kept_index():
    return pathlib.Path(os.environ["XDG_CACHE_HOME"]) / "quillon/index"


def write_settings(tree, more=None):
    settings_file().parent.mkdir(parents=True, exist_ok=True)
    settings_file().write_text(json.dumps({
        "ShowQLNShortcut": "Ctrl+Alt+Space",
        "preemptive-apple-event-access": True,
        "qln-bookmarks": {str(tree): str(tree)},
        **(more or {}),
    }), encoding="utf-8")


def ask(programs, *arguments):
    """What quillonctl prints; empty when it fails."""
    return subprocess.run([programs / "quillonctl", *arguments], stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, check=False).stdout


def status(programs):
    told = ask(programs, "status", "--json")
    return json.loads(told) if told else {}


def seconds_between(status, one, other):
    times = [datetime.datetime.fromisoformat(status[when].replace("Z", "+00:00"))
             for when in (one, other)]
    return (times[1] - times[0]).total_seconds()


def await_ready(programs, patience=60):
    """Waits until the index is that of the disk, and returns the status."""
    await_true("the index", lambda: status(programs).get("state") == "ready", patience)
    return status(programs)


def await_rest(programs, kept_before, patience=60):
    """Waits until the index is kept in another file than before, and is watched."""
    await_true("the kept index", lambda: when_kept() not in (None, kept_before), patience)
    await_true("the watch", lambda: status(programs).get("watched"), patience)


def when_kept():
    """Tells the kept files apart. There may be none."""
    return kept_index().stat().st_mtime_ns if kept_index().exists() else None


def run_inside(script, home, *arguments, python=sys.executable):
    """Runs the script again with these arguments on a desktop of its own. Returns its status."""
    return subprocess.run([ROOT / "tools/private-desktop", "--home", home, python, script,
                           "--inside", *map(str, arguments)], check=False).returncode


def home_folder():
    return tempfile.TemporaryDirectory(prefix="quillon-bench-")
