# SPDX-License-Identifier: GPL-3.0-or-later
"""The road of an alarm, as a person goes it: from the click on the clock to the answer."""

from __future__ import annotations

import math
import time
from pathlib import Path

import numpy as np

from desktop_case import DesktopTest, main
from virtual_desktop import wait_for
from virtual_desktop.archive import Alarm, alarms_of
from virtual_desktop.panel import PANEL_HEIGHT
from virtual_desktop.picture import Rect, changed_pixels
from virtual_desktop.program import STORED_ALARMS, Program, ping_path
from virtual_desktop.sound import RATE, read_aiff

EMPTY_MENU = ["Active alarms:", "No Alarms", "", "Create alarm...", "Alarms...", "Pause alarms", "",
              "Timer...", "", "Respito...", "", "", "Preferences...", "Help...", "", "Quit"]
TIMERS = [*(f"{n} min" for n in (1, 2, 3, 4, 5, 10, 15, 20, 30, 45)), "Other..."]


class RoadTest(DesktopTest):
    def test_a_timer_from_the_click_to_the_next_start(self) -> None:
        program, icon = self.start_in_panel()
        idle = self.desktop.look_at(icon)
        menu = self.desktop.open_menu(icon)
        self.assertEqual(menu.rows(), EMPTY_MENU)
        timers = menu.open_submenu("Timer...")
        self.assertEqual(timers.rows(), TIMERS)
        timers.click("45 min")
        wedge = self.desktop.look_at(icon)
        self.assertGreater(changed_pixels(idle, wedge), 3, "no wedge in the icon")
        self.assert_preset_is_stored(minutes=45)
        self.desktop.open_menu(icon).click("Quit")
        self.assertEqual(program.wait_for_exit(), 0)
        self.assertEqual([alarm["ringWithinUnits"] for alarm in self.user.running_alarms()], [45])

        program, icon = self.start_in_panel()
        rows = self.desktop.open_menu(icon).rows()
        self.assertRegex(rows[1], r"^In 4[45] mins at \d+:\d\d$")
        self.assertEqual(rows[2], "")

    def test_an_alarm_rings_and_once_snoozed_rings_again_after_its_minutes(self) -> None:
        self.user.fill_rings()
        recording = self.record()
        alarm = Alarm.overdue("Tea", seconds=40, snooze_minutes=1, sound=str(self.user.ping))
        self.user.set_running_alarms(alarm)
        program, icon = self.start_in_panel()
        window = self.wait_for_ringing(program)[0]
        due = time.gmtime(alarm.due)
        self.assertIn(f"{time.strftime('%a', due)}, {due.tm_hour}:{due.tm_min:02}", window)
        self.assertIn("Tea", window)
        self.assert_hangs_from(icon, program)
        self.click(window["Snooze"])
        self.wait_until_quiet(program)
        sound = read_aiff(ping_path())
        wait_for("three plays", lambda: len(recording.starts_of(sound)) >= 3)
        time.sleep(1.1 * sound.size / RATE)
        gaps = np.diff(recording.starts_of(sound)) - sound.size / RATE
        self.assertEqual(len(gaps), 2, "not one more")
        self.assertGreater(gaps.min(), -0.02, "one over the other")
        self.assertLess(gaps.max(), 0.5)  # of the machine's own making

        again = int(alarm.due) + 60  # due times lie on whole seconds
        self.sleep_until(again - 2)
        self.assertEqual(self.ringing(program), [], "rings again too early")
        window = self.wait_for_ringing(program)[0]
        self.assertGreater(time.time(), again - 1.1)  # it rings in the last second
        before = self.desktop.look_at(icon)
        wait_for("the icon to flash", lambda: changed_pixels(
            before, self.desktop.screen.picture(icon)), 3.0)
        self.click(window["Clear"])
        self.wait_until_quiet(program)
        still = self.desktop.look_at(icon)
        time.sleep(1.1)
        self.assertEqual(changed_pixels(still, self.desktop.look_at(icon)), 0, "still flashes")
        self.assertEqual(self.desktop.open_menu(icon).rows()[:2], EMPTY_MENU[:2])
        self.assertEqual(program.quit(), 0)
        self.assertEqual(self.user.running_alarms(), [])

    def test_a_hundred_alarms_of_one_second_leave_the_program_alive(self) -> None:
        due = math.ceil(time.time() + 3)
        titles = {f"Alarm {n}" for n in range(100)}
        self.user.set_running_alarms(*(Alarm(title, due, str(ping_path())) for title in titles))
        program, _ = self.start_in_panel()
        self.sleep_until(due + 4)
        windows = self.ringing(program)  # the others wait for a place
        self.assertIn(len(windows), range(4, 100))
        self.assertLess({text for window in windows for text in window if text[:6] == "Alarm "}, titles)
        self.click(windows[0]["Clear all"])
        self.wait_until_quiet(program)
        self.assertEqual(program.quit(), 0)

    def assert_preset_is_stored(self, minutes: int) -> None:
        """The library on the disk holds the timer, with the sound that it is to ring with."""
        wait_for("the preferences", self.user.preferences_file.exists)
        (preset,) = alarms_of(self.user.preferences()[STORED_ALARMS])
        fields = ("title", "ringWithinUnits", "isMinuteUnits", "isDefaultAlarm", "snoozeTime")
        self.assertEqual([preset[field] for field in fields], ["default", minutes, True, True, 5])
        self.assertEqual(Path(preset["soundPath"]), self.user.ping)

    def assert_hangs_from(self, icon: Rect, program: Program) -> None:
        """The snooze window is under the icon, as far as the screen's edge lets it."""
        (window,) = self.desktop.windows_of(program)
        self.assertLessEqual(window.rect.x, icon.x)
        self.assertGreater(window.rect.right, icon.x)
        below = window.rect.y - PANEL_HEIGHT
        self.assertTrue(0 <= below <= 40, f"{below} pixels below the panel")


if __name__ == "__main__":
    main()
