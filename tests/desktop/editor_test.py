# SPDX-License-Identifier: GPL-3.0-or-later
"""The editor in use: alarms of each kind made with the keyboard, changed, kept and deleted."""

from __future__ import annotations

import time
from typing import Any

from desktop_case import DesktopTest, main
from virtual_desktop import wait_for
from virtual_desktop.accessible import Menu
from virtual_desktop.archive import alarms_of
from virtual_desktop.picture import Rect
from virtual_desktop.program import STORED_ALARMS, Program

RELATIVE, DATED, WEEKLY = 0, 1, 2


def row_of(menu: Menu, title: str) -> str:
    """The whole text of the first row that ends with the alarm's title."""
    return next(row for row in menu.rows() if row.endswith(" " + title))


class EditorTest(DesktopTest):
    def stored(self) -> list[dict[str, Any]]:
        return alarms_of(self.user.preferences()[STORED_ALARMS])

    def keys(self, *keys: str) -> None:
        self.desktop.screen.press_key(*keys)
        time.sleep(0.4)  # a button that is chosen by its letter takes a moment

    def open_editor(self, program: Program, icon: Rect, *path: str) -> None:
        """Chooses an entry of the menu that opens the editor, and waits for its window."""
        menu = self.desktop.open_menu(icon)
        for step in path[:-1]:
            menu = menu.open_submenu(row_of(menu, step))
        menu.click(path[-1])
        wait_for("the editor", lambda: self.desktop.windows_of(program, "Alarm"))
        time.sleep(0.5)

    def set_alarm(self, program: Program) -> None:
        self.keys("alt+s")  # on some desktops Return ticks the box that has the focus
        wait_for("the editor to close", lambda: not self.desktop.windows_of(program, "Alarm"))

    def make_one_of_each_kind(self, program: Program, icon: Rect) -> None:
        self.open_editor(program, icon, "Create alarm...")
        self.keys("T", "e", "a", "alt+i")
        self.keys("Tab", "ctrl+a", "2", "5")
        self.set_alarm(program)

        self.open_editor(program, icon, "Create alarm...")
        self.keys("B", "u", "s", "alt+d")
        self.keys("Tab", "Tab", "Tab", "Up")  # to the year of the date, and one on
        self.set_alarm(program)

        self.open_editor(program, icon, "Create alarm...")
        self.keys("S", "w", "i", "m", "alt+w")
        # Past hours, minutes and the clock to Monday, and on to Sunday.
        self.keys(*["Tab"] * 4, "space", *["Tab"] * 6, "space")
        self.set_alarm(program)

    def test_alarms_of_each_kind_are_made_changed_kept_and_deleted(self) -> None:
        program, icon = self.start_in_panel()
        self.make_one_of_each_kind(program, icon)
        tea, bus, swim = self.stored()
        self.assertEqual(
            [(a["title"], a["selRowNo"]) for a in (tea, bus, swim)],
            [("Tea", RELATIVE), ("Bus", DATED), ("Swim", WEEKLY)],
        )
        self.assertEqual((tea["ringWithinUnits"], tea["isMinuteUnits"]), (25, True))
        self.assertTrue(bus["isTimeWithDate"])
        days = [day for day in swim if day.startswith("RunOn") and swim[day]]
        self.assertEqual(sorted(days), ["RunOnMonday", "RunOnSunday"])

        self.open_editor(program, icon, "Tea", "Edit...")
        self.keys("alt+i")
        self.keys("Tab", "ctrl+a", "4", "0")
        self.set_alarm(program)
        self.assertEqual([a["title"] for a in self.stored()], ["Tea", "Bus", "Swim"])
        self.assertEqual(self.stored()[0]["ringWithinUnits"], 40)

        menu = self.desktop.open_menu(icon)
        menu.open_submenu(row_of(menu, "Swim")).click("Save")
        self.assertEqual(program.quit(), 0)

        program, icon = self.start_in_panel()
        menu = self.desktop.open_menu(icon)
        rows = menu.rows()
        inactive = rows.index("Inactive alarms:")
        for title in ("Tea", "Bus", "Swim"):
            self.assertTrue(any(row.endswith(title) for row in rows[:inactive]), title)
        self.assertEqual([row.split()[-1] for row in rows[inactive + 1 : inactive + 2]], ["Swim"])
        menu.open_submenu(row_of(menu, "Tea")).click("Delete")

        menu = self.desktop.open_menu(icon)
        self.assertFalse(any(row.endswith("Tea") for row in menu.rows()))
        menu.close()
        self.assertIn("Tea", [a["title"] for a in self.stored()], "the library keeps its copy")
        self.assertEqual(program.quit(), 0)
        self.assertEqual({a["title"] for a in self.user.running_alarms()}, {"Bus", "Swim"})

    def test_what_is_missing_is_said_and_escape_sets_nothing(self) -> None:
        program, icon = self.start_in_panel()
        self.open_editor(program, icon, "Create alarm...")
        self.keys("Return")
        wait_for("the alert", lambda: self.shows(program, "Title must not be empty."))
        self.keys("Return")
        time.sleep(0.3)
        self.keys("Escape")
        wait_for("the editor to close", lambda: not self.desktop.windows_of(program, "Alarm"))
        self.assertEqual(program.quit(), 0)
        self.assertEqual(self.user.running_alarms(), [])

    def shows(self, program: Program, text: str) -> bool:
        """Whether the text stands in one of the program's windows."""
        root = self.desktop.reader.program(program.pid)
        return root is not None and any(text in item.name for item in root.descendants())


if __name__ == "__main__":
    main()
