#!/usr/bin/env python3
"""Tests updates and feedback in a build without a feed and an address, and in one with both.

Runs on a private desktop:
tools/private-desktop python3 tests/e2e/update_test.py QUILLON QUILLON_WITH_FEED
"""

import os
import sys

from desktop import Desktop, eventually, main, windows
from sign_feed import signed_feed

NOTICE = "Quillon – Updates"


class Updates(Desktop):
    def setUp(self):
        super().setUp()
        self.log = self.home / "log"

    def start_with_log(self):
        with open(self.log, "wb") as log:
            return self.start(stdout=log)

    def wait_for_log(self, *lines):
        eventually("the log", lambda: "".join(f"{line}\n" for line in lines) in
                   self.log.read_text())

    def wait_for_notice(self):
        eventually("the notice", lambda: windows("quillon", NOTICE))
        self.wait_for_no_panel()

    def take_links(self):
        """Opens web pages with a program that writes the address to a file. Returns the file."""
        program, record = self.recorder("browser")
        self.add_application("browser", f"Name=Browser\nExec={program} %u\n"
                             "MimeType=text/html;x-scheme-handler/https;")
        self.config.mkdir(exist_ok=True)
        (self.config / "mimeapps.list").write_text(
            "[Default Applications]\ntext/html=browser.desktop\n"
            "x-scheme-handler/https=browser.desktop\n")
        return record


class WithoutFeedTest(Updates):
    def setUp(self):
        super().setUp()
        self.write_settings()

    def test_looks_for_nothing_and_has_no_entries_for_it(self):
        self.start_with_log()
        self.wait_for_log("Start background update polling...",
                          "Checking for updates in background...",
                          "Should check for betas? false", "Did not find an update")
        self.choose(4)
        eventually("the end", lambda: not windows("quillon"))


class WithFeedTest(Updates):
    def setUp(self):
        super().setUp()
        self.program = self.with_feed
        self.feed = self.home / "feed"

    def test_offers_a_release_in_the_panel_and_leads_to_it(self):
        record = self.take_links()
        self.write_settings()
        self.feed.write_bytes(signed_feed("9.0"))
        self.start_with_log()
        self.wait_for_log("Checking for updates in background...",
                          "Should check for betas? false", "Found valid update")
        # The button for it comes first among the panel's buttons.
        self.press("F10")
        self.press("space")
        self.wait_for_notice()
        self.wait_for_log("Checking for updates in foreground...",
                          "Should check for betas? false", "Found valid update")
        self.press("alt+w")
        self.assertEqual(self.recorded(record), [b"https://example.org/9.0/news"])
        self.press("alt+d")
        self.assertEqual(self.recorded(record), [b"https://example.org/9.0"])
        self.assertEqual(windows("quillon", NOTICE), [])
        self.assertEqual((self.home / "asked").read_text(),
                         2 * "https://example.org/feed?beta=false\n")

        # A withdrawn release is no longer offered: the button is gone and the menu comes first.
        self.feed.write_bytes(signed_feed("0.0.9"))
        self.request("--show")
        self.wait_for_panel()
        self.press("F10")
        self.press("space")
        self.wait_for_notice()
        self.press("Escape")
        self.request("--show")
        self.wait_for_panel()
        self.choose(4)
        self.assertEqual(self.recorded(record), [b"https://example.org/feedback"])

    def test_offers_a_beta_version_to_those_who_asked_for_it_alone(self):
        self.write_settings({"enable-beta-updates": True})
        self.feed.write_bytes(signed_feed("9.0", "beta"))
        child = self.start_with_log()
        self.wait_for_log("Should check for betas? true", "Found valid update")
        self.assertEqual((self.home / "asked").read_text(), "https://example.org/feed?beta=true\n")
        child.kill()
        child.wait()
        self.settings.write_text(self.settings.read_text().replace(
            '"enable-beta-updates": true', '"enable-beta-updates": false'))
        self.start_with_log()
        self.wait_for_log("Should check for betas? false", "Did not find an update")


if __name__ == "__main__":
    WithFeedTest.with_feed = os.path.abspath(sys.argv.pop(2))
    main()
