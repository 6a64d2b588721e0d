# SPDX-License-Identifier: GPL-3.0-or-later
"""The editor with real keys: what is typed is what is kept, and what cannot be read is not set.

What each kind of alarm does is tested on virtual time, in tests/menubar/EachKindTest.cpp.
"""

from __future__ import annotations

import time

from desktop_case import DesktopTest, main
from virtual_desktop import wait_for
from virtual_desktop.archive import alarms_of
from virtual_desktop.program import STORED_ALARMS


class EditorTest(DesktopTest):
    def keys(self, *keys: str) -> None:
        self.desktop.screen.press_key(*keys)
        time.sleep(0.4)  # a button that is chosen by its letter takes a moment

    def test_a_weekday_alarm_is_made_by_the_keyboard_alone_and_kept(self) -> None:
        program, icon = self.start_in_panel()
        self.desktop.open_menu(icon).click("Create alarm...")
        wait_for("the editor", lambda: self.desktop.windows_of(program, "Alarm"))
        time.sleep(0.5)

        self.keys("S", "w", "i", "m", "alt+w")
        self.keys("Tab", "7", "colon", "6", "0", "Return")
        self.assertTrue(self.desktop.windows_of(program, "Alarm"), "7:60 is no time")
        self.keys("ctrl+a")
        self.keys("7", "colon", "1", "5", "p")
        # Past the clock to Monday, and on to Sunday.
        self.keys("Tab", "Tab", "space", *["Tab"] * 6, "space")
        self.keys("alt+s")  # on some desktops Return ticks the box that has the focus
        wait_for("the editor to close", lambda: not self.desktop.windows_of(program, "Alarm"))

        (swim,) = alarms_of(self.user.preferences()[STORED_ALARMS])
        days = [day for day in swim if day.startswith("RunOn") and swim[day]]
        self.assertEqual(sorted(days), ["RunOnMonday", "RunOnSunday"])
        self.assertEqual(program.quit(), 0)
        (running,) = self.user.running_alarms()
        self.assertEqual(running["title"], "Swim")
        due = time.gmtime(running["time"])  # the zone of the virtual desktop
        self.assertEqual((due.tm_hour, due.tm_min), (19, 15))


if __name__ == "__main__":
    main()
