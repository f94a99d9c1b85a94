#!/usr/bin/env python3
"""Tests a user's whole way: the panel on a real screen, keys, and the window that opens.

Runs on a private desktop: tools/private-desktop python3 tests/e2e/panel_test.py QUILLON
"""

import json
import os
import signal
import subprocess
import time

from desktop import PATIENCE, Desktop, eventually, main, output, windows


class PanelTest(Desktop):
    def test_opens_the_chosen_folder_in_the_file_manager(self):
        self.make_folders("Documents/harbour plans/2024", "Documents/holiday", "Music/Vinyl")
        self.write_settings()
        self.open_folders_with("thunar.desktop")
        quillon = self.start()

        self.type("harplan")
        self.press_return_until_opened()
        eventually("the file manager's window", lambda: windows("Thunar", "harbour plans - Thunar"))
        chosen = str(self.tree / "Documents/harbour plans")
        eventually("the use", lambda: self.uses() == {chosen: 1})

        # Key settings of desktops use the bus too. The former text is replaced.
        subprocess.run(["gdbus", "call", "--session", "--dest", "org.quillon.Quillon",
                        "--object-path", "/org/quillon/Quillon", "--method",
                        "org.freedesktop.Application.ActivateAction", "toggle", "[]", "{}"],
                       check=True, stdout=subprocess.DEVNULL, timeout=PATIENCE)
        self.wait_for_panel()
        self.type("vinyl", "Tab")
        eventually("the second window", lambda: windows("Thunar", "Vinyl - Thunar"))
        vinyl = str(self.tree / "Music/Vinyl")
        eventually("the second use", lambda: self.uses() == {chosen: 1, vinyl: 1})

        file_manager = int(output("xdotool", "getwindowpid", windows("Thunar")[0]))
        os.kill(file_manager, signal.SIGKILL)
        self.assertEqual(self.request("--quit"), 0)
        self.assertEqual(quillon.wait(PATIENCE), 0)

    def test_is_shown_and_hidden_by_requests_and_keys(self):
        self.write_settings()
        self.assertEqual(self.request("--quit"), 1, "nothing runs that could be ended")
        quillon = self.start()
        self.press("Escape")
        self.wait_for_no_panel()
        self.assertEqual(self.request("--toggle"), 0)
        self.wait_for_panel()
        self.assertEqual(self.request("--toggle"), 0)
        self.wait_for_no_panel()
        self.assertEqual(self.request("--show"), 0)
        self.wait_for_panel()
        self.assertEqual(self.request("--show"), 0)
        self.assertTrue(self.panel(), "asked for again it stays")

        # When another window takes the keyboard, the panel hides.
        other = subprocess.Popen(["xmessage", "other"], env=self.environment())
        self.children.append(other)
        message = eventually("the other window", lambda: windows("Xmessage"))[0]
        subprocess.run(["xdotool", "windowactivate", message], check=True)
        self.wait_for_no_panel()
        self.assertEqual(self.request(), 0, "a second start")
        self.wait_for_panel()
        state = output("xprop", "-id", self.panel()[0], "_NET_WM_STATE")
        for atom in ("ABOVE", "SKIP_TASKBAR", "SKIP_PAGER"):
            self.assertIn(atom, state)

        self.press("Escape")
        eventually("the keyboard back in the other window",
                   lambda: output("xdotool", "getactivewindow").strip() == message)

        quillon.send_signal(signal.SIGTERM)
        self.assertEqual(quillon.wait(PATIENCE), 0)

    def test_is_toggled_by_the_hot_key_from_any_window(self):
        self.write_settings()
        self.start()
        self.press("Escape")
        self.wait_for_no_panel()
        self.children.append(subprocess.Popen(["xmessage", "other"], env=self.environment()))
        message = eventually("the other window", lambda: windows("Xmessage"))[0]
        subprocess.run(["xdotool", "windowactivate", "--sync", message], check=True)
        for _ in range(2):
            self.press("ctrl+alt+space")
            self.wait_for_panel()
            self.press("ctrl+alt+space")
            self.wait_for_no_panel()
            eventually("the keyboard back where it was",
                       lambda: output("xdotool", "getactivewindow").strip() == message)

        # Another key is written by hand in place. Until it is noticed, the press does nothing.
        settings = json.loads(self.settings.read_text())
        settings["ShowQLNShortcut"] = {"key": "F7", "modifiers": ["Super"]}
        self.settings.write_text(json.dumps(settings))
        def comes():
            self.press("super+F7")
            time.sleep(0.2)
            return self.panel()
        eventually("the panel by the new key", comes)
        self.wait_for_panel()
        self.press("ctrl+alt+space")
        self.press("super+F7")
        self.wait_for_no_panel()

    def test_opens_the_first_row_of_the_answer_to_all_that_was_typed(self):
        record = self.open_folders_with_recorder()
        self.make_folders("aardvark", "aardvark zoo", "aarhus")
        self.write_settings()
        self.start()
        self.type("aard")
        self.press_return_until_opened()
        self.recorded(record)

        # The rows of "aard" are still shown when Return comes.
        self.request("--show")
        self.wait_for_panel()
        self.type("aarhus", "Return")
        self.wait_for_no_panel()
        self.assertEqual(self.recorded(record), [os.fsencode(self.tree / "aarhus")])

    def test_opens_names_that_are_no_text_and_paths_through_links(self):
        record = self.open_folders_with_recorder()
        self.make_folders(b"caf\xe9 \xff noir", "real")
        (self.tree / "link").symlink_to(self.tree / "real")
        self.write_settings()
        self.start()
        self.type("caf noir")
        self.press_return_until_opened()
        self.assertEqual(self.recorded(record),
                         [os.fsencode(self.tree) + b"/caf\xe9 \xff noir"])

        self.request("--show")
        self.wait_for_panel()
        self.type(str(self.tree / "link"), "Return")
        self.wait_for_no_panel()
        self.assertEqual(self.recorded(record), [os.fsencode(self.tree / "real")])

    def question(self):
        return windows("quillon", "Quillon – Permissions")

    def start_with_question(self):
        child = subprocess.Popen([self.program], env=self.environment())
        self.children.append(child)
        window = eventually("the question", self.question)[0]
        eventually("the keyboard in the question",
                   lambda: output("xdotool", "getactivewindow").strip() == window)
        return child

    def test_asks_first_and_takes_no_for_an_answer(self):
        quillon = self.start_with_question()
        for key in ("Escape", "alt+F4"):
            self.press(key)
        self.assertEqual(self.request("--toggle"), 0)
        self.assertTrue(self.question(), "only the buttons take it away")
        self.assertFalse(self.panel(), "nothing else is shown before the answer")
        self.press("shift+Tab")
        self.press("Return")
        self.assertEqual(quillon.wait(PATIENCE), 0)
        self.assertFalse(self.settings.exists())

        quillon = self.start_with_question()
        self.assertEqual(self.request("--quit"), 0)
        self.assertEqual(quillon.wait(PATIENCE), 0)

    def test_runs_without_a_session_bus(self):
        self.write_settings()
        environment = dict(self.environment(),
                           DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent/bus")
        child = subprocess.Popen([self.program], env=environment, stderr=subprocess.PIPE, text=True)
        self.children.append(child)
        self.wait_for_panel()
        child.send_signal(signal.SIGINT)
        _, diagnostics = child.communicate(timeout=PATIENCE)
        self.assertEqual(child.returncode, 0)
        self.assertEqual(len(diagnostics.splitlines()), 1, diagnostics)
        self.assertIn("no session bus", diagnostics)


if __name__ == "__main__":
    main()
