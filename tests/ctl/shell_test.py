"""Tests what `quillonctl init` prints, in the shells themselves.

Usage: shell_test.py QUILLONCTL
"""

import json
import os
import shlex
import shutil
import subprocess

from desktop import PATIENCE, lacks
from terminal import TerminalTest, run_tests

# Each name has a word that no other path has, with its place in the list.
WORD = "zqxzqx"
ODD = [name + WORD.encode() + b"%d" % place + end for place, (name, end) in enumerate((
    (b"with ", b" blank"), (b"quote's ", b" \"two\""), (b"$HOME `id` \\n * ", b""),
    (b"line\n", b"\n feed\n"), (b"caf\xe9 ", b""), (b"-dash ", b""), (b"~", b"\\")))]
SHELLS = {
    "bash": (["bash", "--norc", "--noprofile"], 'eval "$(quillonctl init bash)"'),
    "zsh": (["zsh", "-f"], 'eval "$(quillonctl init zsh)"'),
    "fish": (["fish", "--no-config"], "quillonctl init fish | source"),
}


class ShellTest(TerminalTest):

    def setUp(self):
        super().setUp()
        for shell in SHELLS:
            if shutil.which(shell) is None:
                lacks(shell)

    def uses(self):
        """The number of uses that are stored."""
        settings = self.top / "config/quillon/quillon.json"
        if not settings.exists():
            return 0
        return sum(json.loads(settings.read_text())["recent-access-score-data"].values())

    def run_shell(self, shell, line):
        command, init = SHELLS[shell]
        done = subprocess.run([*command, "-c", f"{init}\n{line}"], env=self.environment,
                              cwd=self.top, capture_output=True, timeout=PATIENCE, check=False)
        return done.returncode, done.stdout, done.stderr

    def test_q_changes_to_the_best_folder(self):
        self.make_folders(*ODD, "project")
        (self.home / "project/file.xcodeproj").write_text("")
        for shell in SHELLS:
            for place, name in enumerate(ODD):
                with self.subTest(shell=shell, name=name):
                    before = self.uses()
                    done = self.run_shell(shell, f"q {WORD}{place}\npwd")
                    folder = os.path.join(os.fsencode(self.home), name)
                    self.assertEqual(done, (0, folder + b"\n", b""))
                    self.assertEqual(self.uses(), before + 1)
            with self.subTest(shell=shell):
                self.assertEqual(self.run_shell(shell, "q file.xcodeproj\npwd"),
                                 (0, os.fsencode(self.home / "project") + b"\n", b""))
                # A completed path may end with a slash.
                self.assertEqual(self.run_shell(shell, f"q {shlex.quote(str(self.home))}/\npwd"),
                                 (0, os.fsencode(self.home) + b"\n", b""))
                status, out, err = self.run_shell(shell, "q never-there")
                self.assertEqual((status, out, err), (1, b"", b""))

    def test_q_asks_and_the_key_inserts(self):
        self.make_folders("harbour/it's odd", "harbour/it's odder", "other/\u6f22 $x")
        for shell, (command, init) in SHELLS.items():
            with self.subTest(shell=shell):
                # Where a use is stored, the next shell would not ask.
                shutil.rmtree(self.top / "config", ignore_errors=True)
                terminal = self.start(*command, "-i", rows=40, columns=100)
                terminal.send(f"cd; {init}; echo rea''dy\r")
                terminal.await_text("ready")
                terminal.send("q odd\r")
                terminal.await_text("> ~/harbour/it's odd")
                terminal.send("\x1b[B\r")
                terminal.await_screen("the end of the choice",
                                      lambda: "> odd\n" not in terminal.text())
                terminal.send("pwd; echo do''ne\r")
                terminal.await_text(f"{self.home}/harbour/it's odder\ndone")

                terminal.send("printf '<%s>\\n' a")
                terminal.await_text("printf '<%s>\\n' a")
                terminal.send("\x07")
                terminal.await_text("\n> ")
                terminal.send("other \u6f22")
                terminal.await_screen("the row", lambda: "> ~/other/" in terminal.text())
                terminal.send("\r")
                terminal.await_screen("the path", lambda: "> ~/other/" not in terminal.text()
                                      and "/other/" in terminal.text())
                terminal.send("b; echo do''ne too\r")
                terminal.await_text("done too")
                output = terminal.output.decode(errors="replace")
                self.assertIn(f"<a{self.home}/other/\u6f22 $x>\r\n", output)
                self.assertIn("<b>\r\n", output)
                terminal.send("exit\r")
                terminal.end()

    def completing(self, shell):
        """Starts a shell whose "q" prints its arguments in place of what it does."""
        command, init = SHELLS[shell]
        terminal = self.start(*command, "-i", rows=40, columns=200)
        shown = "function q; printf 'q'; printf '<%s>' $argv; echo; end" if shell == "fish" else \
            "q() { printf q; printf '<%s>' \"$@\"; echo; }"
        completion = "autoload -Uz compinit; compinit -D; " if shell == "zsh" else ""
        terminal.send(f"cd; {completion}{init}; {shown}; echo rea''dy\r")
        terminal.await_text("ready")
        return terminal

    def completed(self, terminal, keys):
        """Returns the arguments of "q" after the keys, to which a Tab belongs."""
        before = len(terminal.output)
        terminal.send(keys)
        terminal.send("\r")
        terminal.await_screen("the arguments", lambda: b">\r\n" in terminal.output[before:])
        output = terminal.output[before:].replace(b"\r\n", b"\n")
        return output.rpartition(b">\n")[0].rpartition(b"q<")[2].split(b"><")

    def test_tab_completes_to_a_path(self):
        self.make_folders(*ODD)
        for shell in SHELLS:
            terminal = self.completing(shell)
            for place, name in enumerate(ODD):
                with self.subTest(shell=shell, name=name):
                    path = os.path.join(os.fsencode(self.home), name)
                    slash = b"/" if shell == "bash" else b""
                    self.assertEqual(self.completed(terminal, f"q {WORD}{place}\t"), [path + slash])

    def test_tab_offers_several_paths(self):
        self.make_folders("harbour", "other/the harbour's \"end\"")
        best, next_one = (os.fsencode(self.home) + name
                          for name in (b"/harbour", b"/other/the harbour's \"end\""))
        for shell in SHELLS:
            with self.subTest(shell=shell):
                terminal = self.completing(shell)
                # Readline replaces nothing while it is not clear what is meant. In fish, the first
                # Return takes the selected path.
                keys = "q harbour\t\t\r" if shell == "fish" else "q harbour\t\t"
                self.assertEqual(self.completed(terminal, keys),
                                 [{"bash": b"harbour", "zsh": next_one, "fish": best}[shell]])
                self.assertEqual(self.completed(terminal, "q 'harbours e\t"),
                                 [next_one + (b"/" if shell == "bash" else b"")])
                for line, words in (("other harbour", 2), ("nothing-of-this", 1)):
                    self.assertEqual(self.completed(terminal, f"q {line}\t"),
                                     [word.encode() for word in line.split()])
                self.assertNotIn(b"quillonctl:", terminal.output)

    def test_another_shell_is_refused(self):
        done = subprocess.run([self.ctl, "init", "csh"], capture_output=True, text=True,
                              check=False, env=self.environment)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertRegex(done.stderr, '^quillonctl: SHELL: not "bash", "zsh" or "fish": csh\n$')


if __name__ == "__main__":
    run_tests()
