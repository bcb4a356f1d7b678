"""The preferences as a user has them: where their windows come up, and who has the keyboard's focus."""
import sys

from on_desktop import OnDesktop, run_tests

DEAD_MOUNT = sys.argv.pop(2)


class Targets(OnDesktop):
    def test_a_target_behind_a_dead_mount(self):
        session = self.session
        mount = session.folder / "A"
        gate, asked = session.mount_dead(DEAD_MOUNT, mount)
        self.addCleanup(gate.unlink, missing_ok=True)
        for name in "One", "Two":
            (mount / name / "Plug-Ins").mkdir(parents=True)
        self.open_targets()
        session.ctl("targets", "add", mount / "One" / "Plug-Ins", "--type", "InDesign", "--version", "140")
        asked.write_text("")
        gate.touch()
        self.press_button("Add…")
        self.press_button("Browse…")  # which would start beside that target
        self.window("Chose Plug-Ins directory")
        self.desktop.press("Escape")
        self.wait_until_gone("Chose Plug-Ins directory", "dialog")
        self.desktop.press("Escape")
        self.wait_until_gone("Add Target")
        self.desktop.press("shift+Tab", "End", "Delete")
        undo = self.wait_for_control("Undo", "push button", enabled=True)
        self.desktop.click(*undo.middle())
        self.wait_until_gone("Undo")
        self.assertEqual(asked.read_text(), "")

    def test_pages_are_tabs(self):
        self.open_targets()
        self.wait_for_control("Pages", "page tab list")
        for number, name in enumerate(("Account", "Targets", "Settings"), 1):
            self.desktop.press(f"ctrl+{number}")
            self.wait_for_control(name, "page tab", selected=True)
            self.wait_for_control(name, "property page", showing=True)
        self.assertEqual([c.name for c in self.controls() if c.role == "page tab" and "selected" in c.states],
                         ["Settings"])
        # The panel opens beside them; the preferences stay.
        self.open_panel()
        self.assertIsNotNone(self.find("Preferences"))

    def open_targets(self):
        self.start_with_panel(signed_in=True)
        self.open_preferences()
        self.desktop.press("ctrl+2")
        self.wait_for_control("Targets", "table")

    def window(self, name):
        return self.wait(name, lambda: next(
            (c for c in self.controls() if c.depth == 1 and c.name == name and "active" in c.states), None))

    def assert_over(self, upper, lower):
        x, y = upper.middle()
        left, top, width, height = lower.rectangle
        self.assertTrue(left <= x < left + width and top <= y < top + height, f"{upper} is not over {lower}")

    def test_windows_open_over_theirs_and_give_the_focus_back(self):
        folder = self.session.folder / "elsewhere" / "Plug-Ins"
        folder.mkdir(parents=True)
        self.open_targets()
        preferences = self.window("Preferences")
        self.press_button("Add…")
        sheet = self.window("Add Target")
        self.assert_over(sheet, preferences)
        self.press_button("Browse…")
        self.wait_for_control("Chose Plug-Ins directory", "dialog", active=True)
        self.desktop.write(str(folder))
        self.desktop.press("Return")
        self.wait_until_gone("Chose Plug-Ins directory", "dialog")
        for _ in range(4):  # it failed every second time
            self.wait_for_control("Add Target", "push button", enabled=True)
            self.press_button("Add Target")
            self.assert_over(self.window("Invalid Plug-Ins path selected!"), sheet)
            self.desktop.press("Escape")
            self.wait_until_gone("Invalid Plug-Ins path selected!")
            self.window("Add Target")
            self.wait("something has the focus", lambda: any("focused" in c.states for c in self.controls()))
        self.desktop.press("Escape")
        self.wait_until_gone("Add Target")
        self.window("Preferences")


if __name__ == "__main__":
    run_tests()
