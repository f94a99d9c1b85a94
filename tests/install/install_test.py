"""Installs the build into a folder of its own and reads it as the desktop, the bus and shells do."""

import configparser
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
import xml.etree.ElementTree

from desktop import PATIENCE, eventually, finish, needs, windows

CMAKE, BUILD, VERSION = "", "", ""
SOURCES = pathlib.Path(__file__).resolve().parents[2]
NAME = "org.quillon.Quillon"
OBJECT = "/org/quillon/Quillon"
COMMANDS = ("match", "find", "pick", "open", "use", "init", "crawl", "watch", "status")
OPTION = re.compile(r"(?<![\w-])(--[a-z][a-z-]*|-[0n])(?![\w-])")


def run(*command, **more):
    """Returns the standard output of a command that succeeds."""
    needs(command[0])
    done = subprocess.run(command, capture_output=True, text=True, timeout=PATIENCE, check=False,
                          **more)
    if done.returncode != 0:
        raise AssertionError(f"{command}: {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


class Installed(unittest.TestCase):
    """An installed tree that all tests of a class read."""

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="quillon-install-")
        cls.addClassCleanup(folder.cleanup)
        cls.place = pathlib.Path(folder.name)
        cls.prefix = cls.place / "usr"
        run(CMAKE, "--install", BUILD, "--prefix", str(cls.prefix))
        cls.share = cls.prefix / "share"

    def program(self, name):
        return str(self.prefix / "bin" / name)

    def options(self, program, *command):
        """Returns the options that the program says it takes."""
        lines = run(self.program(program), *command, "--help").splitlines()
        return {option for line in lines if line.startswith("  -")
                for option in OPTION.findall(line[:30])}

    def commands_and_options(self):
        yield "quillon", (), self.options("quillon")
        yield "quillonctl", (), self.options("quillonctl")
        for command in COMMANDS:
            yield "quillonctl", (command,), self.options("quillonctl", command)


class FilesTest(Installed):

    def test_programs_run_from_where_they_are_installed(self):
        for program in ("quillon", "quillonctl"):
            self.assertEqual(run(self.program(program), "--version").strip(),
                             f"{program} {VERSION}")
        found = run(self.program("quillonctl"), "find", "--in", str(self.prefix), "applications")
        self.assertEqual(found.splitlines()[0], str(self.share / "applications"))
        for program in ("quillon", "open"):
            self.assertTrue(os.access(self.prefix / "libexec/quillon" / program, os.X_OK))

    def test_programs_are_hardened(self):
        programs = [*(self.prefix / "bin").iterdir(), *(self.prefix / "libexec/quillon").iterdir()]
        self.assertGreaterEqual(len(programs), 4)
        for program in programs:
            with self.subTest(program.name):
                said = run("readelf", "--wide", "--file-header", "--program-headers", "--dynamic",
                           "--dyn-syms", str(program))
                self.assertRegex(said, r"Type: +DYN .*Position-Independent")
                self.assertRegex(said, r"GNU_RELRO")
                self.assertRegex(said, r"FLAGS.* (BIND_)?NOW")
                self.assertRegex(said, r"GNU_STACK .* RW +0x")
                self.assertIn("__stack_chk_fail", said)

    def test_the_desktop_entry_names_programs_and_options_that_are_there(self):
        file = self.share / "applications" / f"{NAME}.desktop"
        self.assertEqual(run("desktop-file-validate", str(file)), "")
        entry = configparser.ConfigParser(interpolation=None)
        entry.read(file, encoding="utf-8")
        self.assertEqual(entry["Desktop Entry"]["DBusActivatable"], "true")
        actions = entry["Desktop Entry"]["Actions"].strip(";").split(";")
        self.assertEqual(entry.sections()[1:], [f"Desktop Action {name}" for name in actions])
        for section in entry.sections():
            program, *options = shlex.split(entry[section]["Exec"])
            self.assertTrue(os.access(self.program(program), os.X_OK), section)
            self.assertLessEqual(set(options), self.options(program), section)
            for key in ("Name", "Comment"):
                self.assertEqual(f"{key}[de]" in entry[section],
                                 key in entry[section] and entry[section][key] != "Quillon",
                                 f"{section}: {key} in German")
        icon = self.share / f"icons/hicolor/scalable/apps/{entry['Desktop Entry']['Icon']}.svg"
        self.assertTrue(icon.exists())

    def check_metainfo(self, command, path):
        checked = subprocess.run(["appstreamcli", command, "--no-net", str(path)],
                                 capture_output=True, text=True, check=False)
        if checked.returncode != 0:
            faults = [line.split()[-1] for line in checked.stdout.splitlines()
                      if line.strip().startswith(("W:", "E:"))]
            # Newer versions ask for a home page. There is none yet.
            self.assertEqual(faults, ["url-homepage-missing"], checked.stdout)

    def test_the_metainfo_describes_this_version(self):
        self.check_metainfo("validate-tree", self.prefix)
        component = xml.etree.ElementTree.parse(self.share / f"metainfo/{NAME}.metainfo.xml")
        self.assertEqual(component.find("releases/release").get("version"), VERSION)
        for binary in component.findall("provides/binary"):
            self.assertTrue(os.access(self.program(binary.text), os.X_OK))

    def test_the_metainfo_shows_pictures_once_they_have_an_address(self):
        address = "https://example.org/images"
        with tempfile.TemporaryDirectory() as folder:
            run("cmake", f"-DQUILLON_PICTURES={address}", "-P", str(SOURCES / "data/Metainfo.cmake"),
                cwd=folder)
            file = pathlib.Path(folder) / f"{NAME}.metainfo.xml"
            self.check_metainfo("validate", file)
            images = xml.etree.ElementTree.parse(file).findall("screenshots/screenshot/image")
        self.assertGreaterEqual(len(images), 3)
        for image in images:
            self.assertTrue(image.text.startswith(address))
            self.assertTrue((SOURCES / "docs/images" / image.text[len(address) + 1:]).exists())

    def test_the_bus_is_told_the_whole_path_of_the_program(self):
        service = configparser.ConfigParser()
        service.read(self.share / f"dbus-1/services/{NAME}.service")
        program, *options = shlex.split(service["D-BUS Service"]["Exec"])
        self.assertEqual(program, self.program("quillon"))
        self.assertLessEqual(set(options), self.options("quillon"))

    def test_the_desktops_searches_are_told_whom_to_ask(self):
        ini = configparser.ConfigParser()
        ini.read(self.share / f"gnome-shell/search-providers/{NAME}.search-provider.ini")
        provider = ini["Shell Search Provider"]
        self.assertEqual((provider["BusName"], provider["ObjectPath"], provider["Version"]),
                         (NAME, OBJECT, "2"))
        self.assertTrue((self.share / "applications" / provider["DesktopId"]).exists())

        file = self.share / "krunner/dbusplugins/plasma-runner-quillon.desktop"
        self.assertEqual(run("desktop-file-validate", str(file)), "")
        ini = configparser.ConfigParser(interpolation=None)
        ini.optionxform = str
        ini.read(file, encoding="utf-8")
        runner = ini["Desktop Entry"]
        self.assertEqual((runner["X-Plasma-API"], runner["X-Plasma-DBusRunner-Service"],
                          runner["X-Plasma-DBusRunner-Path"]), ("DBus", NAME, OBJECT))
        self.assertTrue((self.share / f"icons/hicolor/scalable/apps/{runner['Icon']}.svg").exists())
        self.assertIn("Comment[de]", runner)

    def test_manual_pages_are_clean_and_know_every_option(self):
        pages = list((self.share / "man").rglob("*.1"))
        names = {folder: {page.stem for page in pages if page.parent.parent.name == folder}
                 for folder in ("man", "de")}
        self.assertEqual(names, dict.fromkeys(names, {"quillon", "quillonctl"}))
        for page in pages:
            needs("man")
            read = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", str(page)],
                                  capture_output=True, text=True, timeout=PATIENCE, check=True,
                                  env=dict(os.environ, MANWIDTH="200", LC_ALL="C.UTF-8"))
            self.assertEqual(read.stderr, "", page)
            self.assertIn(f"\nquillon {VERSION} ", read.stdout)
            known = set(OPTION.findall(read.stdout))
            for program, command, options in self.commands_and_options():
                if program == page.stem:
                    self.assertLessEqual(options - {"--help"}, known, (page, command))


class CompletionTest(Installed):
    """Each shell offers the options that the program has, and no others."""

    def assert_offered(self, offered_by):
        for program, command, options in self.commands_and_options():
            with self.subTest(program=program, command=command):
                self.assertEqual(set(OPTION.findall(offered_by(program, command))), options)

    def test_bash(self):
        folder = self.share / "bash-completion/completions"

        def offered(program, command):
            words = shlex.join([program, *command, "-"])
            return run("bash", "--norc", "-c", f"source {folder / program}; COMP_WORDS=({words}); "
                       f"COMP_CWORD={1 + len(command)}; _{program}; echo \"${{COMPREPLY[@]}}\"")
        self.assert_offered(offered)

    def test_zsh(self):
        # The completion system needs a terminal, so the test reads what it would be told.
        folder = self.share / "zsh/site-functions"

        def offered(program, command):
            # Explanations are left out, since an option comes before its first bracket.
            specifications = run(
                "zsh", "-f", "-c",
                f"fpath=({folder} $fpath); autoload -Uz compinit && compinit -D -u; "
                f"[[ $_comps[{program}] == _{program} ]] || exit 1; "
                f"_arguments() {{ told=(\"$@\"); state={'argument' if command else 'none'} }}; "
                f"words=({shlex.join(command)}); _{program}; print -rl -- $told")
            return "\n".join(line.partition("[")[0].rpartition(")")[2].lstrip("*")
                             for line in specifications.splitlines() if "[" in line)
        self.assert_offered(offered)

    def test_fish(self):
        folder = self.share / "fish/vendor_completions.d"
        environment = dict(os.environ, HOME=str(self.place), XDG_CONFIG_HOME=str(self.place),
                           XDG_DATA_HOME=str(self.place))

        def offered(program, command):
            line = shlex.join([program, *command, "-"])
            answer = run("fish", "--no-config", "-c", f"source {folder / program}.fish; "
                         f"complete -C {shlex.quote(line)}", env=environment)
            return "\n".join(line.split("\t")[0] for line in answer.splitlines())
        self.assert_offered(offered)


class BusTest(Installed):
    """A session whose data folders include the tree."""

    def setUp(self):
        home = self.place / "home"
        self.addCleanup(shutil.rmtree, home, ignore_errors=True)
        self.kept = home / ".cache/quillon/index"
        tree = home / "tree"
        (tree / "harbour").mkdir(parents=True)
        settings = home / ".config/quillon/quillon.json"
        settings.parent.mkdir(parents=True)
        settings.write_text(json.dumps({
            "ShowQLNShortcut": "Ctrl+Alt+Space", "preemptive-apple-event-access": True,
            "qln-bookmarks": {str(tree): str(tree)}}))
        self.environment = dict(
            os.environ, HOME=str(home), XDG_CONFIG_HOME=str(home / ".config"),
            XDG_DATA_HOME=str(home / ".local/share"), XDG_CACHE_HOME=str(home / ".cache"),
            XDG_STATE_HOME=str(home / ".local/state"),
            XDG_DATA_DIRS=f"{self.share}:/usr/local/share:/usr/share")
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address"],
                               env=self.environment, stdout=subprocess.PIPE, text=True)
        self.addCleanup(bus.wait)
        self.addCleanup(bus.kill)
        self.addCleanup(bus.stdout.close)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()

    def is_running(self):
        return "true" in run("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus",
                             "--object-path", "/org/freedesktop/DBus", "--method",
                             "org.freedesktop.DBus.NameHasOwner", NAME, env=self.environment)

    def test_the_bus_starts_the_program_and_carries_its_actions(self):
        self.assertFalse(self.is_running())
        run("gapplication", "launch", NAME, env=self.environment)
        eventually("the panel", lambda: windows("quillon", "Quillon"))
        run("gapplication", "action", NAME, "toggle", env=self.environment)
        eventually("the panel's end", lambda: not windows("quillon", "Quillon"))
        self.assertTrue(self.is_running())
        run("gapplication", "action", NAME, "quit", env=self.environment)
        eventually("the program's end", lambda: not self.is_running())

    def test_the_terminal_has_the_bus_start_the_program_to_open_a_folder(self):
        home = self.place / "home"
        settings = home / ".config/quillon/quillon.json"
        program, record = home / "program", home / "record"
        program.write_text(f'#!/bin/sh\nprintf %s "$1" >{record}.new\nmv {record}.new {record}\n')
        program.chmod(0o755)
        stored = json.loads(settings.read_text())
        stored["qln-actions-list"] = json.dumps([{
            "actionTarget": {"key": str(program)},
            "actionType": {"requiresTarget": True, "key": "Execute Shell Command"},
            "flags": {"option": False, "shift": False, "command": False}}])
        settings.write_text(json.dumps(stored))
        run(self.program("quillonctl"), "open", str(home / "tree/harbour"), env=self.environment)
        eventually("the opened folder", record.exists)
        self.assertEqual(record.read_text(), str(home / "tree/harbour"))
        self.assertEqual(windows("quillon"), [])
        eventually("the use", lambda: json.loads(settings.read_text()).get(
            "recent-access-score-data") == {str(home / "tree/harbour"): 1})
        run("gapplication", "action", NAME, "quit", env=self.environment)
        eventually("the program's end", lambda: not self.is_running())

    def search(self):
        """Asks once, as the overview does, which also starts the program."""
        return run("gdbus", "call", "--session", "--dest", NAME, "--object-path", OBJECT, "--method",
                   "org.gnome.Shell.SearchProvider2.GetInitialResultSet", "['harb']",
                   env=self.environment)

    def test_a_search_starts_the_program_unseen_and_waits_for_its_index(self):
        for is_kept in (False, True):
            self.assertEqual((self.is_running(), self.kept.exists()), (False, is_kept))
            began = time.monotonic()
            self.assertRegex(self.search(), r"^\(\['file:///[^']*/tree/harbour'\],\)")
            print(f"{time.monotonic() - began:.2f} s with the start of the program")
            eventually("the kept index", self.kept.exists)
            self.assertEqual(windows("quillon"), [])
            run("gapplication", "action", NAME, "quit", env=self.environment)
            eventually("the program's end", lambda: not self.is_running())


if __name__ == "__main__":
    CMAKE, BUILD, VERSION = sys.argv[1:4]
    del sys.argv[1:4]
    finish(unittest.main(verbosity=2, exit=False).result)
