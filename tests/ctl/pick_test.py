"""Tests `quillonctl pick` on a terminal in memory.

Usage: pick_test.py QUILLONCTL
"""

import json
import os
import signal
import termios

from terminal import TerminalTest, run_tests

ESCAPE, UP, DOWN, PAGE_DOWN, HOME, END = "\x1b", "\x1b[A", "\x1b[B", "\x1b[6~", "\x1bOH", "\x1bOF"
CONTROL = {letter: chr(ord(letter) - ord("a") + 1) for letter in "abcdefghklnpuvw"}


class PickTest(TerminalTest):

    def pick(self, options="", **size):
        """Starts a choice. The former lines of the terminal and its end can be told from it."""
        terminal = self.shell(f"echo above; quillonctl pick {options} >out; echo status=$?", **size)
        terminal.await_screen("the cursor after the prompt",
                              lambda: any(line.startswith(">") for line in terminal.lines()))
        return terminal

    def selected(self, terminal):
        """The text of the row that is drawn in reverse."""
        for y, line in enumerate(terminal.screen.display):
            if terminal.screen.buffer[y][2].reverse:
                return line.rstrip().removeprefix("> ")
        return None

    def marked(self, terminal, row):
        """The letters of the row that are drawn in bold."""
        for y, line in enumerate(terminal.lines()):
            if line.endswith(row):
                cells = terminal.screen.buffer[y]
                return "".join(cells[x].data for x in range(len(line)) if cells[x].bold)
        return None

    def await_selected(self, terminal, row):
        terminal.await_screen(f"{row} selected", lambda: self.selected(terminal) == row)

    def ended(self, terminal, status):
        terminal.await_text(f"status={status}")
        self.assertEqual(terminal.end(), 0)

    def test_typing_narrows_and_return_prints(self):
        self.make_folders("harbour/plans", "music/harp", "docs")
        terminal = self.pick()
        self.await_selected(terminal, str(self.home))
        terminal.send("har")
        terminal.await_screen("the rows with the typed letters marked",
                              lambda: self.marked(terminal, "~/music/harp") == "har")
        self.assertNotIn("docs", terminal.text())
        self.assertEqual(self.selected(terminal), "~/harbour")
        terminal.send("p")
        self.await_selected(terminal, "~/music/harp")
        terminal.send("\r")
        self.ended(terminal, 0)
        self.assertEqual(self.out(), os.fsencode(self.home / "music/harp") + b"\n")
        self.assertEqual(terminal.text(), "status=0")
        # The terminal in memory has one screen only, so it cannot show that the former one is back.
        self.assertRegex(terminal.output, rb"(?s)^above\r\n\x1b\[\?1049h.*\x1b\[\?1049l[^\x1b]*$")

    def test_what_is_kept_on_top_comes_first(self):
        self.make_folders("often", "kept")
        often, kept = str(self.home / "often"), str(self.home / "kept")
        settings = self.top / "config/quillon/quillon.json"
        settings.parent.mkdir(parents=True)
        settings.write_text(json.dumps({"qln-bookmarks": {str(self.home): str(self.home)},
                                        "recent-access-score-data": {often: 2, kept: 1},
                                        "kept-on-top": [kept + "/", "no path"]}))
        terminal = self.pick()
        terminal.await_text("~/often")
        self.assertEqual(self.selected(terminal), "~/kept")
        self.assertEqual(terminal.text().count("kept"), 1)
        terminal.send("\r")
        self.ended(terminal, 0)
        self.assertEqual(self.out(), os.fsencode(kept) + b"\n")

    def test_words_in_any_order_and_typed_paths(self):
        self.make_folders("harbour/plans", ".hidden/place")
        terminal = self.pick("-0 plans har")
        self.await_selected(terminal, "~/harbour/plans")
        terminal.send(CONTROL["u"] + "~/.hidden/place/")
        self.await_selected(terminal, "~/.hidden/place")
        terminal.send("\r")
        self.ended(terminal, 0)
        self.assertEqual(self.out(), os.fsencode(self.home / ".hidden/place") + b"\0")

    def test_keys_move_through_the_rows(self):
        self.make_folders(*(f"row{number:02}" for number in range(20)))
        terminal = self.pick("row", rows=10)
        self.await_selected(terminal, "~/row00")
        for key, row in ((DOWN, 1), (CONTROL["n"], 2), (UP, 1), (CONTROL["p"], 0), (UP, 0),
                         (PAGE_DOWN, 9), (END, 19), (DOWN, 19), ("\x1b[5~", 10), ("\x1b[B", 11)):
            terminal.send(key)
            self.await_selected(terminal, f"~/row{row:02}")
        # Home moves the cursor before it moves through the rows.
        terminal.send(HOME)
        terminal.await_screen("the cursor at the beginning", lambda: terminal.screen.cursor.x == 2)
        self.assertEqual(self.selected(terminal), "~/row11")
        terminal.send(HOME)
        self.await_selected(terminal, "~/row00")
        terminal.send(DOWN + DOWN + "\r")
        self.ended(terminal, 0)
        self.assertEqual(self.out(), os.fsencode(self.home / "row02") + b"\n")

    def test_the_line_is_edited(self):
        terminal = self.pick()
        for keys, query in (("alpha beta", "alpha beta"), (CONTROL["w"], "alpha"),
                            (CONTROL["a"] + "x", "xalpha"), (END + "\x7f\x7f", "xalph"),
                            ("\x1b[D\x1b[D\x1b[3~", "xalh"), (CONTROL["u"], "h"),
                            (CONTROL["e"] + "ü漢\x1b[D\x7f", "h漢"), (CONTROL["k"], "h"),
                            ("\x1b[200~a\rb\x1b[201~", "ha b"), (CONTROL["v"] + "\x1b[15~", "ha b"),
                            (b"\xff!", "ha b\ufffd!"), (b"\xc2\x9b", "ha b\ufffd!")):
            terminal.send(keys)
            terminal.await_screen(query, lambda: terminal.lines()[0] == f"> {query}".rstrip())
        self.assertIn("nothing found", terminal.text())
        terminal.send("\r")
        self.ended(terminal, 1)
        self.assertEqual(self.out(), b"")

    def test_leaving_ends_with_130(self):
        self.make_folders("docs")
        for keys in (ESCAPE, CONTROL["c"], CONTROL["g"], CONTROL["d"]):
            terminal = self.pick()
            terminal.send(keys)
            self.ended(terminal, 130)
            self.assertEqual(self.out(), b"")

    def test_long_paths_lose_their_beginning_and_follow_the_size(self):
        self.make_folders("a" * 40 + "/" + "b" * 40 + "/漢字漢字")
        terminal = self.pick("bbbb", columns=60)
        row = "~/" + "a" * 40 + "/" + "b" * 40 + "/漢字漢字"
        terminal.await_screen("the end of the row", lambda: any(
            line.startswith("  …aaaa") and line.endswith("b" * 40 + "/漢字漢字")
            for line in (line.replace("字 ", "字").replace("漢 ", "漢") for line in terminal.lines())))
        for columns in (120, 30, 5, 100):
            terminal.resize(12, columns)
            # The first row is the shorter one, without its last name.
            first = row.rsplit("/", 1)[0]
            room = columns - 3
            shown = first if len(first) <= room else "…" + first[1 - room:]
            if room > 2:
                self.await_selected(terminal, shown)
        terminal.send(ESCAPE)
        self.ended(terminal, 130)

    def test_odd_names_do_nothing_to_the_terminal(self):
        odd = b"odd\xff\x1b[2J\n\xc2\x9b31m\r\xe2\x80\xae\t\x07name"
        self.make_folders(odd)
        terminal = self.pick("-0 odd")
        self.await_selected(terminal, "~/odd\ufffd\ufffd[2J\ufffd\ufffd31m\ufffd\ufffd\ufffd\ufffdname")
        terminal.send("\r")
        self.ended(terminal, 0)
        self.assertEqual(self.out(), os.fsencode(self.home) + b"/" + odd + b"\0")
        self.assertNotIn(b"\x1b[2J", terminal.output)

    def test_below_the_cursor_it_leaves_what_is_above(self):
        self.make_folders(*(f"row{number}" for number in range(9)))
        for lines in (2, 23, 60):
            line = (f"seq {lines}; quillonctl pick --height 5 row >out; echo status=$?")
            terminal = self.shell(line)
            self.await_selected(terminal, "~/row0")
            last = [str(number) for number in range(1, lines + 1)][-10:]
            shown = [row for row in terminal.lines() if row]
            self.assertEqual(shown[-5:], ["> row", "> ~/row0", "  ~/row1", "  ~/row2", "  ~/row3"])
            self.assertEqual(shown[:-5][-len(last):], last)
            for _ in range(8):
                terminal.send(DOWN)
            self.await_selected(terminal, "~/row8")
            terminal.resize(30, 40)
            terminal.send(UP)
            self.await_selected(terminal, "~/row7")
            terminal.send("\r")
            self.ended(terminal, 0)
            shown = [row for row in terminal.lines() if row]
            self.assertEqual(shown[-len(last) - 1:], [*last, "status=0"])
            self.assertNotIn("row", terminal.text())

    def test_works_in_a_substitution_with_other_streams(self):
        self.make_folders("harbour")
        line = 'x=$(quillonctl pick --height 4 harb </dev/null 2>/dev/null); echo "[$x]"'
        terminal = self.shell(line)
        self.await_selected(terminal, "~/harbour")
        terminal.send("\r")
        terminal.await_text(f"[{self.home}/harbour]")
        self.assertEqual(terminal.end(), 0)

    def test_a_clear_choice_needs_no_terminal(self):
        self.make_folders("docs/in docs/x", "docker", "dock/docile")
        for query, picked in (("docke", "docker"), ("dócs", "docs"), ("~/dock/", "dock"),
                              ("docile", "dock/docile")):
            terminal = self.shell(f"quillonctl pick --best {query} >out; echo status=$?")
            self.ended(terminal, 0)
            self.assertEqual(self.out(), os.fsencode(self.home / picked) + b"\n")
        terminal = self.shell("quillonctl pick --best nothing >out; echo status=$?")
        self.ended(terminal, 1)
        terminal = self.pick("--best do")
        terminal.send(ESCAPE)
        self.ended(terminal, 130)
        terminal = self.shell("quillonctl use docker && quillonctl pick --best docke >out; "
                              "quillonctl pick")
        self.await_selected(terminal, "~/docker")

    def test_printed_matches_are_marked_for_people(self):
        self.make_folders("harb\x1b[2Jour")
        for command in ("quillonctl find --relative harb", "printf 'harb\\33[2Jour\\n' | "
                        "quillonctl match harb"):
            terminal = self.shell(command)
            self.assertEqual(terminal.end(), 0)
            self.assertEqual(terminal.lines()[0], "harb\ufffd[2Jour")
            self.assertEqual([terminal.screen.buffer[0][x].fg for x in (0, 3, 4)],
                             ["red", "red", "default"])
            terminal = self.shell(f"NO_COLOR=1; export NO_COLOR; {command}")
            self.assertEqual(terminal.end(), 0)
            self.assertEqual(terminal.output, "harb\ufffd[2Jour\r\n".encode())

    def test_changes_are_printed_for_people(self):
        self.make_folders("watched")
        terminal = self.shell("quillonctl watch --latency 0 --window 0 watched", columns=200)
        terminal.await_text("the index is ready")
        self.make_folders(b"watched/harb\x1b[2Jour\xff\n end")
        terminal.await_text(f"\n+ {self.home}/watched/harb\ufffd[2Jour\ufffd\ufffd end")
        terminal.send("\x03")
        self.assertEqual(terminal.end(), -signal.SIGINT)

    def test_a_signal_leaves_the_terminal_as_it_was(self):
        self.make_folders("docs")
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            terminal = self.start(self.ctl, "pick", "--height", "5", "docs")
            self.await_selected(terminal, "~/docs")
            raw = termios.tcgetattr(terminal.master)
            os.kill(terminal.pid, number)
            terminal.await_screen("an empty screen", lambda: terminal.text() == "")
            terminal.await_screen("the former modes",
                                  lambda: termios.tcgetattr(terminal.master) != raw)
            self.assertTrue(termios.tcgetattr(terminal.master)[3] & termios.ECHO)
            self.assertEqual(terminal.end(), -number)

    def test_without_a_terminal_it_ends_with_2(self):
        terminal = self.shell("setsid --wait quillonctl pick docs 2>out; echo status=$?")
        self.ended(terminal, 2)
        self.assertRegex(self.out(), b"^quillonctl: /dev/tty: [^\n]+\n$")


if __name__ == "__main__":
    run_tests()
