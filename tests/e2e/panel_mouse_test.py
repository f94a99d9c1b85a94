#!/usr/bin/env python3
"""Tests the panel and the pointer on a real screen: its place, its menus, rows dragged out.

Runs on a private desktop of 1600x900; the program drop_target is in the folder of the one tested:
tools/private-desktop --size 1600x900 python3 tests/e2e/panel_mouse_test.py QUILLON
"""

import os
import subprocess
import time

from desktop import PATIENCE, Desktop, eventually, is_soon, main, windows

ROW_HEIGHT = 40
HEADING = 78  # pixels from the top of the panel to the middle of the heading
FIRST_ROW = 112  # pixels from the top of the panel to the middle of the first row, below a heading


class PanelMouseTest(Desktop):
    def point_at(self, x, y):
        subprocess.run(["xdotool", "mousemove", "--sync", str(x), str(y)], check=True)

    def show(self):
        self.request("--show")
        self.wait_for_panel()

    def test_comes_up_on_the_monitor_with_the_pointer(self):
        self.write_settings()
        # Two monitors are side by side on the one screen, the right one lower.
        for monitor in ("left 800/211x900/238+0+0 none", "right 800/211x800/211+800+100 none"):
            name, geometry, outputs = monitor.split()
            subprocess.run(["xrandr", "--setmonitor", name, geometry, outputs], check=True,
                           stderr=subprocess.DEVNULL)
        self.addCleanup(subprocess.run, ["xrandr", "--delmonitor", "left"], check=False)
        self.addCleanup(subprocess.run, ["xrandr", "--delmonitor", "right"], check=False)
        self.start()
        for x, free_left, free_top in ((1200, 800, 100), (400, 0, 0), (1200, 800, 100)):
            self.press("Escape")
            self.wait_for_no_panel()
            self.point_at(x, 300)
            self.show()
            left, top, width, _ = self.place()
            self.assertEqual(left, free_left + (800 - width) // 2)
            self.assertTrue(free_top < top < free_top + 900 // 3, top)

    def test_is_moved_by_its_background_until_it_comes_up_again(self):
        self.write_settings()
        self.start()
        # The places may come a moment after the panel, which is then as high as the one row.
        eventually("the panel with one row", lambda: self.place()[3] < 6 * ROW_HEIGHT)
        left, top, width, height = self.place()
        for x, y in ((width - 250, height - 20), (width // 2, HEADING)):
            self.point_at(left + x, top + y)
            subprocess.run(["xdotool", "mousedown", "1"], check=True)
            # The window manager takes the pointer over a moment after the press, and the panel then
            # follows it from where the pointer is at that time.
            def moves():
                self.point_at(left + x + 40, top + y + 20)
                old_left, old_top = self.place()[:2]
                self.point_at(left + x + 90, top + y + 60)
                return self.place()[:2] == (old_left + 50, old_top + 40)
            eventually("the panel where it was dragged", moves)
            # The toolkit notices after 0.1 s that the window manager has taken the keyboard.
            time.sleep(0.5)
            subprocess.run(["xdotool", "mouseup", "1"], check=True)
            self.assertTrue(self.panel())
            # The window manager has the keyboard until it has noticed the end of the drag.
            self.press_until("Escape", "the panel's end", lambda: not self.panel())
            self.show()
            self.assertEqual(self.place(), (left, top, width, height))

    def start_with_a_row(self):
        """Starts the program and opens a folder once, which is then listed without typing."""
        record = self.open_folders_with_recorder()
        self.make_folders("first wish")
        self.write_settings()
        self.start()
        self.type("firstwish")
        self.press_return_until_opened()
        self.recorded(record)
        self.show()
        self.press("BackSpace")

    def test_gives_a_row_away_and_stays_until_it_is_taken(self):
        record = self.home / "dropped"
        drop_target = os.path.join(os.path.dirname(self.program), "drop_target")
        self.children.append(subprocess.Popen([drop_target, str(record)], env=self.environment()))
        target = eventually("the drop target", lambda: windows("drop_target"))[0]
        subprocess.run(["xdotool", "windowmove", "--sync", target, "40", "620"], check=True)
        self.start_with_a_row()

        def is_taken_up():
            """Presses the row and moves it; its icon then follows the pointer as a window."""
            left, top, _, _ = self.place()
            self.point_at(left + 200, top + FIRST_ROW)
            subprocess.run(["xdotool", "mousedown", "1"], check=True)
            for step in range(1, 5):
                self.point_at(left + 200 + 10 * step, top + FIRST_ROW + 10 * step)
            if is_soon(lambda: len(windows("quillon")) > 1):
                return True
            # The row was not there yet, and the panel was moved by its background.
            subprocess.run(["xdotool", "mouseup", "1"], check=True)
            self.point_at(20, 20)  # xdotool would wait for ever for a pointer that is already there
            return False

        def is_over_target():
            for y in (750, 760):
                self.point_at(400, y)
            return windows("drop_target", "takes it")

        def let_go():
            subprocess.run(["xdotool", "mouseup", "1"], check=True)
            eventually("the end of the drag", lambda: len(windows("quillon")) < 2)

        eventually("a row that is dragged", is_taken_up)
        self.point_at(20, 20)  # over the bare screen, which accepts no drop
        let_go()
        self.assertTrue(self.panel())

        def is_dropped():
            if not self.panel():  # the answer of the target came after the button was released
                self.show()
                self.press("BackSpace")
            eventually("a row that is dragged", is_taken_up)
            subprocess.run(["xdotool", "windowactivate", "--sync", target], check=True)
            eventually("the target's answer", is_over_target)
            let_go()
            return is_soon(record.exists)

        eventually("the dropped row", is_dropped)
        uri, path, _ = record.read_bytes().split(b"\0")
        self.assertEqual(path.decode(), str(self.tree / "first wish"))
        self.assertEqual(uri.decode(), f"file://{self.tree}/first%20wish\r\n")
        self.wait_for_no_panel()
        self.wait_for_uses([1])  # a row given away was not opened

    def test_stays_below_its_menu_and_goes_with_it(self):
        self.start_with_a_row()
        self.open_menu("Down")
        self.press("Escape")
        eventually("the menu's end", lambda: not self.menus())
        self.assertTrue(self.panel())
        self.press("Escape")  # back to the field
        self.open_menu("Return")
        self.assertEqual(self.request("--toggle"), 0)
        self.wait_for_no_panel()
        self.assertFalse(self.menus())

        self.show()
        self.open_menu("Down")
        self.press("Up")  # from the first entry to the last
        self.press("Return")
        self.assertEqual(self.children[-1].wait(PATIENCE), 0)


if __name__ == "__main__":
    main()
