#!/usr/bin/env python3
"""The menu's check for updates and its feedback, in a build that knows no feed and no address.

Runs on a private desktop: tools/private-desktop python3 tests/e2e/update_test.py QUILLON
"""

from desktop import Desktop, eventually, main, windows


class UpdateTest(Desktop):
    def setUp(self):
        super().setUp()
        self.write_settings({"exclude-folder-patterns": ["a private pattern"]})
        self.log = self.home / "log"

    def start_with_log(self):
        with open(self.log, "wb") as log:
            return self.start(stdout=log)

    def choose(self, item):
        """Chooses an item of the panel's menu, counted from 1."""
        self.press("F10")
        self.press("space")
        for _ in range(item - 1):
            self.press("Down")
        self.press("Return")

    def test_says_that_it_does_not_look_for_updates(self):
        self.start_with_log()
        background = ("Start background update polling...\n"
                      "Checking for updates in background...\n"
                      "Should check for betas? false\n"
                      "Did not find an update\n")
        eventually("the log of the check at the start", lambda: background in self.log.read_text())
        self.choose(3)
        eventually("the notice", lambda: windows("quillon", "Quillon – Updates"))
        self.wait_for_no_panel()
        foreground = ("Checking for updates in foreground...\n"
                      "Should check for betas? false\n"
                      "Did not find an update\n")
        eventually("the log of the second check", lambda: foreground in self.log.read_text())
        self.press("Escape")
        eventually("the end of the notice", lambda: not windows("quillon", "Quillon – Updates"))

    def test_opens_a_page_for_feedback_that_holds_nothing_private(self):
        program, record = self.recorder("browser")
        self.add_application("browser", f"Name=Browser\nExec={program} %f\nMimeType=text/html;")
        self.config.mkdir(exist_ok=True)
        (self.config / "mimeapps.list").write_text(
            "[Default Applications]\ntext/html=browser.desktop\n")
        self.start_with_log()
        self.choose(2)
        page = self.home / ".cache/quillon/feedback.html"
        self.assertEqual(self.recorded(record), [str(page).encode()])
        text = page.read_text(encoding="utf-8")
        self.assertIn("exclude-folder-patterns: 1", text)
        self.assertNotIn("private", text)
        self.assertNotIn(str(self.home), text)


if __name__ == "__main__":
    main()
