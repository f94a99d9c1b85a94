"""Reads the windows of the program on the accessibility bus, as a screen reader does."""

import gi

from desktop import Desktop

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # pylint: disable=wrong-import-position,unused-import


class ReadDesktop(Desktop):
    """A desktop whose windows are read. The program is the first one that is started."""

    language = "C.UTF-8"

    def setUp(self):
        super().setUp()
        # The reader keeps what it has been told, so it begins anew with another program.
        Atspi.init()

    def environment(self):
        return dict(super().environment(), QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", LC_ALL="",
                    LANG=self.language)

    def controls(self, role=None):
        """Returns all controls of the program, outermost first, or only those of one role."""
        found = []

        def visit(node):
            # A control that vanished while it was read does not count.
            if not node or not node.get_state_set().contains(Atspi.StateType.SHOWING):
                return
            if role in (None, node.get_role_name()):
                found.append(node)
            for index in range(node.get_child_count()):
                visit(node.get_child_at_index(index))

        desktop = Atspi.get_desktop(0)
        try:
            for index in range(desktop.get_child_count()):
                program = desktop.get_child_at_index(index)
                if program.get_process_id() == self.children[0].pid:
                    program.clear_cache()
                    visit(program)
        except GLib.GError:
            return [] # The program is busy. Callers ask again.
        return found

    def names(self, role):
        return [control.get_name() for control in self.controls(role)]
