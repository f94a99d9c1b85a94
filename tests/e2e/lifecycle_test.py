#!/usr/bin/env python3
"""Tests the program on the desktop: how it starts, who has the keyboard, how it ends.

Runs on a private desktop:
tools/private-desktop python3 tests/e2e/lifecycle_test.py QUILLON QUILLONCTL
"""

import datetime
import json
import os
import pathlib
import signal
import subprocess
import sys
import time

from desktop import PATIENCE, Desktop, eventually, main, output, windows

QUESTION = "Quillon – Permissions"
REBUILD = "Rebuild Quillon Search"
SET_UP = "Set Up Quillon"
PREFERENCES = "Preferences"
PANEL = "Quillon"
SETTINGS = "Quillon – Settings"

# A program that has grabbed Ctrl+Alt+Space in every state of the lock keys.
TAKE_KEY = """
import ctypes, time
x11 = ctypes.CDLL("libX11.so.6")
x11.XOpenDisplay.restype = ctypes.c_void_p
display = ctypes.c_void_p(x11.XOpenDisplay(None))
root = ctypes.c_ulong(x11.XDefaultRootWindow(display))
for locks in (0, 2, 16, 18):
    x11.XGrabKey(display, x11.XKeysymToKeycode(display, 0x20), 12 | locks, root, 1, 1, 1)
x11.XSync(display, 0)
print("taken", flush=True)
time.sleep(3600)
"""


def active_window():
    return output("xdotool", "getactivewindow").strip()


def bus_call(method, *arguments):
    """Returns the answer of the running instance on the bus, which is empty without one."""
    return output("gdbus", "call", "--session", "--dest", "org.quillon.Quillon", "--object-path",
                  "/org/quillon/Quillon", "--method", method, *arguments)


def as_bytes(text):
    return "[" + ", ".join(f"byte {byte}" for byte in text.encode()) + "]"


class LifecycleTest(Desktop):
    ctl = ""

    def run_ctl(self, *arguments):
        return subprocess.run([self.ctl, *arguments], text=True, env=self.environment(),
                              capture_output=True, check=False)

    def launch(self, *options, **streams):
        """Starts the program without waiting for anything."""
        streams.setdefault("stdout", subprocess.DEVNULL)
        child = subprocess.Popen([self.program, *options], env=self.environment(), **streams)
        self.children.append(child)
        return child

    def wait_for_keyboard(self, title):
        def has_keyboard():
            return active_window() in windows("quillon", title)
        eventually(f"the keyboard in {title}", has_keyboard)

    def wait_for_gone(self, title):
        eventually(f"the end of {title}", lambda: not windows("quillon", title))

    def open_other_window(self):
        self.children.append(subprocess.Popen(["xmessage", "other"], env=self.environment(),
                                              stderr=subprocess.DEVNULL))
        window = eventually("the other window", lambda: windows("Xmessage"))[0]
        subprocess.run(["xdotool", "windowactivate", "--sync", window], check=True)
        eventually("the keyboard in the other window", lambda: active_window() == window)
        return window

    def wait_for_index(self, query, paths):
        def count():
            answer = bus_call("org.quillon.Quillon.Search.Find", as_bytes(str(self.settings)),
                              as_bytes(query), "10", "path", "false")
            return answer.count("([")
        eventually("the answer of the index", lambda: count() == 1 + paths)

    def wait_until_reachable(self):
        eventually("the instance on the bus",
                   lambda: bus_call("org.freedesktop.DBus.Peer.Ping") != "")

    def end(self, child):
        """Ends the program by its own command, which returns when the program has ended."""
        self.assertEqual(self.request("--quit"), 0)
        self.assertEqual(child.poll(), 0)

    def test_shows_the_rebuild_and_then_the_panel_and_gives_the_keyboard_back(self):
        self.make_folders("Documents/harbour")
        self.write_settings()
        other = self.open_other_window()
        quillon = self.launch()
        self.wait_for_keyboard(PANEL)
        for _ in range(2):
            self.press("ctrl+alt+space")
            self.wait_for_no_panel()
            eventually("the keyboard back", lambda: active_window() == other)
            self.press("ctrl+alt+space")
            self.wait_for_keyboard(PANEL)

        # The rebuild window shows, works and makes way for the panel.
        self.make_folders("Music/harp")
        self.assertEqual(self.request("--rebuild"), 0)
        self.wait_for_keyboard(PANEL)
        self.wait_for_gone(REBUILD)
        self.wait_for_index("harp", 1)
        self.press("Escape")
        eventually("the keyboard back after the rebuild", lambda: active_window() == other)

        self.end(quillon)
        self.assertEqual(bus_call("org.freedesktop.DBus.Peer.Ping"), "")

    def test_first_comes_up_in_the_middle_although_its_rows_come_late(self):
        self.make_folders("harbour")
        self.write_settings()
        screen_width = int(output("xdotool", "getdisplaygeometry").split()[0])
        for _ in range(4):
            quillon = self.launch("--background")
            self.wait_for_index("harbour", 1)
            self.request("--show")
            self.wait_for_panel()
            eventually("the panel with one row", lambda: self.place()[3] < 200)
            left, _, width, _ = self.place()
            self.assertEqual(left, (screen_width - width) // 2)
            self.end(quillon)

    def test_keeps_its_index_for_the_next_start(self):
        self.make_folders("Documents/harbour")
        self.write_settings()
        quillon = self.launch("--background")
        eventually("the kept index", (self.home / ".cache/quillon/index").exists)
        self.end(quillon)
        (self.tree / "Documents/harbour").rmdir()
        self.make_folders("Music/harp")

        def find(*more):
            return self.run_ctl("find", "--stats", *more, "harb")
        kept = find()
        self.assertEqual(kept.stdout, f"{self.tree}/Documents/harbour\n")
        self.assertRegex(kept.stderr, "^quillonctl: answered from the index as it was at 20")
        asked = find("--crawl")
        self.assertEqual((asked.returncode, asked.stderr), (1, "quillonctl: answered from the disk\n"))

        quillon = self.launch("--background")
        self.wait_for_index("harp", 1)
        eventually("an answer without the old folder", lambda: find().returncode == 1)
        self.assertEqual(find().stderr, "quillonctl: answered from the running program\n")
        self.end(quillon)

    def test_answers_and_counts_for_the_terminal(self):
        self.make_folders("Documents/harbour", "Music/harbour")
        self.write_settings()
        quillon = self.launch("--background")
        self.wait_for_index("harbour", 2)

        def best():
            done = self.run_ctl("pick", "--best", "harbour")
            return done.returncode, done.stdout
        # Nothing says which one is meant, and there is no terminal to ask on.
        self.assertEqual(best(), (2, ""))
        used = f"{self.tree}/Music/harbour"
        self.assertEqual(self.run_ctl("use", used, f"{used}/").returncode, 0)
        self.assertEqual(json.loads(self.settings.read_text())["recent-access-score-data"],
                         {used: 2})
        self.assertEqual(best(), (0, f"{used}\n"))
        self.assertEqual(self.run_ctl("pick", "--best", "harbou").stdout, f"{used}\n")
        os.kill(quillon.pid, signal.SIGSTOP)
        silent = self.run_ctl("use", used)
        os.kill(quillon.pid, signal.SIGCONT)
        self.assertEqual((silent.returncode, silent.stderr),
                         (1, "quillonctl: Quillon runs and does not answer\n"))
        self.end(quillon)

    def test_tells_its_state(self):
        self.make_folders("Documents/harbour")
        self.write_settings()
        absent = self.run_ctl("status")
        self.assertEqual((absent.returncode, absent.stderr),
                         (1, "quillonctl: Quillon does not run and keeps no index\n"))
        quillon = self.launch("--background")
        eventually("the index", lambda: "state: ready\nindex: 3 folders and files, equal to the disk"
                   in self.run_ctl("status").stdout)
        status = json.loads(self.run_ctl("status", "--json").stdout)
        self.assertEqual((status["state"], status["process"], status["indexed"]),
                         ("ready", quillon.pid, 3))
        self.assertEqual((status["watched"], status["folders"]), (3, 3))
        self.assertTrue(0.01 < status["first-answer-seconds"] < PATIENCE, status)
        self.assertGreater(status["memory"], 1e7)
        ages = [time.time() - datetime.datetime.fromisoformat(status[when].rstrip("Z") + "+00:00")
                .timestamp() for when in ("built", "started")]
        self.assertTrue(-1 <= ages[0] <= ages[1] + 1 < PATIENCE, ages)
        eventually("the kept index", (self.home / ".cache/quillon/index").exists)
        os.kill(quillon.pid, signal.SIGSTOP)
        silent = self.run_ctl("status")
        os.kill(quillon.pid, signal.SIGCONT)
        self.assertEqual((silent.returncode, silent.stderr),
                         (1, "quillonctl: Quillon runs and does not answer\n"))
        self.end(quillon)
        self.assertRegex(self.run_ctl("status").stderr,
                         "^quillonctl: Quillon does not run; it keeps its index of 20")

    def test_says_that_there_is_no_display(self):
        for display in ("", ":12345"):
            environment = dict(self.environment(), DISPLAY=display)
            ended = subprocess.run([self.program], env=environment, capture_output=True, text=True,
                                   timeout=PATIENCE, check=False)
            self.assertEqual((ended.returncode, ended.stderr),
                             (1, "quillon: no display to show the panel on\n"))

    def test_says_that_its_key_cannot_be_had(self):
        self.children.append(subprocess.Popen([sys.executable, "-c", TAKE_KEY],
                                              stdout=subprocess.PIPE, env=self.environment()))
        self.addCleanup(self.children[-1].stdout.close)
        self.children[-1].stdout.readline()
        notifications = self.start_notification_server()
        self.write_settings()
        self.launch("--background", stderr=subprocess.DEVNULL)
        said = eventually("a word about the key", notifications)
        self.assertEqual(said, [{"title": "Ctrl+Alt+Space does not bring Quillon up",
                                 "text": "Ctrl+Alt+Space is in use by another program."}])

        # The panel's bottom line says it too, and leads to the preferences.
        self.assertEqual(self.request("--show"), 0)
        self.wait_for_keyboard(PANEL)
        panel = self.panel()[0]
        size = dict(line.split("=") for line in
                    output("xdotool", "getwindowgeometry", "--shell", panel).splitlines())
        subprocess.run(["xdotool", "mousemove", "--window", panel, str(int(size["WIDTH"]) - 60),
                        str(int(size["HEIGHT"]) - 19), "click", "1"], check=True)
        self.wait_for_keyboard(PREFERENCES)

    def test_waits_for_settings_that_it_can_use(self):
        self.write_settings()
        good = self.settings.read_text()
        self.settings.write_text(good[:-1] + ",}")
        quillon = self.launch("--background")
        self.wait_for_keyboard(SETTINGS)
        other = self.open_other_window()
        self.assertEqual(self.request("--toggle"), 0)
        self.wait_for_keyboard(SETTINGS)
        self.settings.write_text(good)
        eventually("the keyboard back", lambda: active_window() == other)
        eventually("the panel", lambda: self.request("--show") == 0 and self.panel())
        self.end(quillon)

        self.settings.write_text(good[:-1] + ', "open-finder-behavior": "tab"}')
        wrong = self.settings.read_text()
        quillon = self.launch(stderr=subprocess.PIPE, text=True)
        self.addCleanup(quillon.stderr.close)
        self.wait_for_keyboard(SETTINGS)
        self.press_until("Escape", "the end", lambda: quillon.poll() is not None)
        self.assertEqual(quillon.returncode, 1)
        self.assertIn("open-finder-behavior", quillon.stderr.read())
        self.assertEqual(self.settings.read_text(), wrong)

    def test_runs_once_where_there_is_no_bus(self):
        self.write_settings()
        environment = dict(self.environment(),
                           DBUS_SESSION_BUS_ADDRESS=f"unix:path={self.home}/no-bus")
        first = subprocess.Popen([self.program], env=environment, stderr=subprocess.PIPE, text=True)
        self.children.append(first)
        self.addCleanup(first.stderr.close)
        self.wait_for_keyboard(PANEL)
        for options, status, said in (
                ((), 1, "quillon: it runs already, and without a session bus it cannot be reached"),
                (("--background",), 0, ""),
                (("--toggle",), 1, "quillon: there is no session bus, so a running instance "
                                   "cannot be reached")):
            ended = subprocess.run([self.program, *options], env=environment, capture_output=True,
                                   text=True, timeout=PATIENCE, check=False)
            self.assertEqual((ended.returncode, ended.stderr.strip()), (status, said), options)
        self.press("ctrl+alt+space")
        self.wait_for_no_panel()
        self.assertIsNone(first.poll())

    def test_the_panel_outlasts_a_slow_window_manager(self):
        for number in range(20_000):
            os.makedirs(self.tree / f"{number // 200}/folder {number}")
        self.write_settings()
        self.launch()
        self.wait_for_keyboard(PANEL)
        self.assertEqual(self.request("--rebuild"), 0)
        self.wait_for_keyboard(REBUILD)
        # The rebuild window closes meanwhile, and no window is given the keyboard.
        manager = self.window_manager()
        os.kill(manager, signal.SIGSTOP)
        self.addCleanup(os.kill, manager, signal.SIGCONT)
        self.wait_for_index("folder", 10)
        time.sleep(1)
        os.kill(manager, signal.SIGCONT)
        self.wait_for_keyboard(PANEL)

    def window_manager(self):
        """Returns the window manager's process, which the private desktop has started."""
        for process in output("pgrep", "-P", str(os.getppid())).split():
            if pathlib.Path(f"/proc/{process}/comm").read_text() == "openbox\n":
                return int(process)
        raise AssertionError("no window manager")

    def test_started_again_brings_up_what_there_is(self):
        self.write_settings()
        quillon = self.launch()
        self.wait_for_keyboard(PANEL)
        other = self.open_other_window()
        self.wait_for_no_panel()
        second = self.launch()
        self.assertEqual(second.wait(PATIENCE), 0)
        self.wait_for_keyboard(PANEL)
        self.press("Escape")
        eventually("the keyboard back", lambda: active_window() == other)
        bus_call("org.freedesktop.Application.Activate", "{}")
        self.wait_for_keyboard(PANEL)
        self.assertIsNone(quillon.poll(), "there is one instance, the first")

    def test_of_two_starts_at_once_one_stays(self):
        self.make_folders("Documents/harbour")
        self.write_settings()
        for options in ((), (), (), ("--show",), ("--show",)):
            starts = [self.launch(*options), self.launch(*options)]
            self.wait_for_keyboard(PANEL)
            def ended():
                return [start for start in starts if start.poll() is not None]
            self.assertEqual(eventually("the end of one", ended)[0].returncode, 0)
            self.assertEqual(len(ended()), 1)
            self.end(next(start for start in starts if start.poll() is None))

    def test_starts_while_a_former_one_is_ending(self):
        self.make_folders("Documents/harbour")
        self.write_settings()
        former = self.launch()
        self.wait_for_keyboard(PANEL)
        for end in (signal.SIGKILL, signal.SIGTERM):
            former.send_signal(end)
            if end == signal.SIGTERM:
                former.wait(PATIENCE)
            again = self.launch()
            eventually("the panel of the new one", lambda: str(again.pid) in [
                output("xdotool", "getwindowpid", window).strip() for window in self.panel()])
            former.wait(PATIENCE)
            former = again

    def test_a_start_at_login_shows_nothing_and_builds(self):
        self.make_folders("Documents/harbour")
        self.write_settings()
        other = self.open_other_window()
        quillon = self.launch("--background")
        self.wait_for_index("harbour", 1)
        self.assertEqual(windows("quillon"), [])
        self.assertEqual(active_window(), other)
        self.assertEqual(self.launch("--background").wait(PATIENCE), 0)
        self.assertEqual(windows("quillon"), [], "nor does a second one")
        self.press("ctrl+alt+space")
        self.wait_for_keyboard(PANEL)
        self.end(quillon)

    def test_a_start_at_login_asks_when_it_is_first_wanted(self):
        self.write_settings()
        settings = self.settings.read_text()
        self.settings.write_text(settings.replace('"preemptive-apple-event-access": true, ', ""))
        self.launch("--background")
        self.wait_until_reachable()
        self.assertEqual(windows("quillon"), [])
        self.assertEqual(self.request("--toggle"), 0)
        self.wait_for_keyboard(QUESTION)
        self.press("Return")
        self.wait_for_keyboard(PANEL)

    def test_the_set_up_comes_first_where_something_is_missing(self):
        self.write_settings({"ShowQLNShortcut": None})
        quillon = self.launch()
        self.wait_for_keyboard(SET_UP)
        self.assertEqual(windows("quillon", REBUILD) + self.panel(), [])
        # Nothing else comes up beside it.
        self.assertEqual(self.request("--toggle"), 0)
        self.assertEqual(self.request("--preferences"), 0)
        self.wait_for_keyboard(SET_UP)
        self.assertEqual(windows("quillon", PREFERENCES) + self.panel(), [])
        # Closed before it is done, it says so and quits, and it comes again with the next start.
        self.press("alt+F4")
        self.press_until("alt+q", "the end", lambda: quillon.poll() is not None)
        self.assertEqual(quillon.returncode, 0)
        self.launch("--background")
        self.wait_until_reachable()
        self.assertEqual(windows("quillon"), [])
        self.assertEqual(self.request("--show"), 0)
        self.wait_for_keyboard(SET_UP)

    def test_the_preferences_stay_when_the_panel_goes(self):
        self.write_settings()
        self.launch()
        self.wait_for_keyboard(PANEL)
        self.press("ctrl+comma")
        self.wait_for_keyboard(PREFERENCES)
        self.wait_for_no_panel()
        state = output("xprop", "-id", windows("quillon", PREFERENCES)[0], "_NET_WM_STATE")
        self.assertNotIn("SKIP_TASKBAR", state)

        self.press("ctrl+alt+space")
        self.wait_for_keyboard(PANEL)
        self.press("Escape")
        self.wait_for_no_panel()
        self.wait_for_keyboard(PREFERENCES)
        # With a window open a second start brings that one to the front, and only that.
        other = self.open_other_window()
        self.assertEqual(self.request(), 0)
        self.wait_for_keyboard(PREFERENCES)
        self.assertEqual(self.panel(), [])
        self.press("alt+F4")
        self.wait_for_gone(PREFERENCES)
        eventually("the keyboard back", lambda: active_window() == other)
        self.assertEqual(self.request("--preferences"), 0)
        self.wait_for_keyboard(PREFERENCES)

    def test_a_start_for_the_preferences_brings_nothing_else_up(self):
        (self.tree / "amber").mkdir()
        self.write_settings()
        self.launch("--preferences")
        self.wait_for_keyboard(PREFERENCES)
        self.wait_for_index("amber", paths=1)
        self.assertEqual([windows("quillon", title) for title in (PANEL, REBUILD)], [[], []])

    def test_a_launcher_passes_on_the_keyboard_and_is_told(self):
        self.write_settings()
        self.launch()
        self.wait_for_keyboard(PANEL)
        self.press("Escape")
        self.wait_for_no_panel()
        heard = self.home / "heard"
        with heard.open("w") as record:
            listener = subprocess.Popen(["stdbuf", "-oL", "xev", "-root"], stdout=record)
        self.children.append(listener)
        def show():
            self.request("--toggle")
            environment = dict(self.environment(), DESKTOP_STARTUP_ID="launcher_TIME4242")
            subprocess.run([self.program, "--show"], env=environment, check=True, timeout=PATIENCE)
            return "_NET_STARTUP_INFO)" in heard.read_text()
        eventually("the word to the launcher", show)
        self.wait_for_keyboard(PANEL)

    def test_answers_the_command_line_from_its_index(self):
        self.make_folders("Documents/harbour", b"caf\xe9 harbour")
        self.write_settings()
        command = [self.ctl, "find", "--json", "harbour"]
        def found(*more):
            return subprocess.run([self.ctl, "find", *more, "harbour"], env=self.environment(),
                                  capture_output=True, check=True, timeout=PATIENCE).stdout
        crawled, crawled_json = found(), found("--json")
        self.assertEqual(crawled.count(b"\n"), 2)
        self.launch("--background")
        self.wait_for_index("harbour", 2)
        self.assertEqual((found(), found("--json")), (crawled, crawled_json))
        self.assertNotEqual(found("--json", "--order", "names"), crawled_json)
        self.settings.write_text(self.settings.read_text()[:-1] + ', "match-order": "names"}')
        eventually("the order of the settings",
                   lambda: found("--json") == found("--json", "--order", "names"))
        self.assertEqual(found("--json", "--order", "path"), crawled_json)

        # A folder made at this moment is not in the index yet, but a crawl finds it.
        self.make_folders("brand new harbour")
        self.assertEqual(found(), crawled, "answered by the instance")
        self.assertEqual(found("--in", str(self.tree)).count(b"\n"), 3)
        others = dict(self.environment(), XDG_CONFIG_HOME=str(self.home / "elsewhere"))
        crawl = subprocess.run(command, env=others, capture_output=True, check=True,
                               timeout=PATIENCE)
        self.assertIn(b"brand new", crawl.stdout, "with other settings the index is another one")


if __name__ == "__main__":
    LifecycleTest.ctl = os.path.abspath(sys.argv.pop(2))
    main()
