#!/usr/bin/env python3
"""Tests the panel as a screen reader finds it on the accessibility bus.

Runs on a private desktop: tools/private-desktop tests/e2e/accessibility_test.py QUILLON
"""

from desktop import eventually, main
from screen_reader import Atspi, GLib, ReadDesktop


class AccessibilityTest(ReadDesktop):
    def setUp(self):
        super().setUp()
        self.focused = []
        self.listener = Atspi.EventListener.new(self.noted)
        self.listener.register("object:state-changed:focused")
        self.addCleanup(self.listener.deregister, "object:state-changed:focused")

    def noted(self, event):
        if event.detail1 == 1:
            self.focused.append((event.source.get_role_name(), event.source.get_name()))

    def heard(self, what, before=None):
        """Waits until the focus has moved to a control and, before that, to another one."""
        def probe():
            while GLib.MainContext.default().iteration(False):
                pass
            return what in self.focused
        try:
            eventually(f"{what} read out", probe)
        except AssertionError as error:
            raise AssertionError(f"{error}; only {self.focused}") from None
        if before:
            self.assertIn(before, self.focused[:self.focused.index(what)])
        self.focused.clear()

    def place(self):
        return f", in {self.tree}"

    def test_shows_field_rows_and_buttons_by_name(self):
        self.make_folders("harbour plans", "harvest plans", "other")
        self.write_settings()
        self.start()
        self.type("harplans")
        rows = ["harbour plans" + self.place(), "harvest plans" + self.place()]
        eventually("both rows", lambda: sorted(self.names("list item")) == rows)
        self.assertEqual(self.names("list"), ["Folders"])
        self.assertEqual(self.names("text"), ["Find a folder"])
        field = self.controls("text")[0]
        self.assertTrue(field.get_state_set().contains(Atspi.StateType.FOCUSED))
        self.assertTrue(field.get_state_set().contains(Atspi.StateType.EDITABLE))
        self.assertEqual(Atspi.Text.get_text(field, 0, -1), "harplans")
        self.assertIn("4 folders", self.names("label"))
        # Newer versions of the library say "button".
        buttons = self.controls("push button") + self.controls("button")
        self.assertEqual([button.get_name() for button in buttons], ["Menu"])
        self.assertGreater(Atspi.Action.get_n_actions(buttons[0]), 0)

    def test_reads_the_selected_row_while_the_field_has_the_keyboard(self):
        self.make_folders("alpha", "alpha beta", "alpha beta gamma")
        self.write_settings()
        self.start()
        self.type("alpha")
        first, second = "alpha" + self.place(), "alpha beta" + self.place()
        self.heard(("list item", first))
        self.press("Down")
        self.heard(("list item", second))
        selected = [row.get_name() for row in self.controls("list item")
                    if row.get_state_set().contains(Atspi.StateType.SELECTED)]
        self.assertEqual(selected, [second])
        self.press("Up")
        self.heard(("list item", first))

        # Typing continues in the field, where the next letter is heard before the new answer.
        self.press("b")
        self.heard(("list item", second), ("text", "Find a folder"))
        self.press("x")
        self.heard(("label", "No folder matches “alphabx”"))
        self.press("y")
        self.heard(("label", "No folder matches “alphabxy”"))


class GermanAccessibilityTest(AccessibilityTest):
    """The whole program in another language, which is chosen as desktops choose it."""

    language = "de_AT.UTF-8"

    def place(self):
        return f" in {self.tree}"

    def test_shows_field_rows_and_buttons_by_name(self):
        self.make_folders("Hafen")
        self.write_settings()
        self.start()
        self.type("haf")
        eventually("the row", lambda: self.names("list item") == ["Hafen" + self.place()])
        self.assertEqual(self.names("text"), ["Ordner suchen"])
        self.assertIn("2 Ordner", self.names("label"))

    test_reads_the_selected_row_while_the_field_has_the_keyboard = None


if __name__ == "__main__":
    main()
