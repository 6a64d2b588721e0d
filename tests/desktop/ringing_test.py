# SPDX-License-Identifier: GPL-3.0-or-later
"""Alarms that fall due at awkward moments."""

from __future__ import annotations

import math
import re
import signal
import time

from desktop_case import DesktopTest, main
from virtual_desktop.archive import Alarm
from virtual_desktop.desktop import Parts
from virtual_desktop.program import ping_path
from virtual_desktop.sound import RATE, Recording, Samples, read_aiff, write_chirp


class RingingTest(DesktopTest):
    def setUp(self) -> None:
        super().setUp()
        self.user.fill_rings()
        self.system_sound = str(self.user.ping)
        self.ping = read_aiff(ping_path())

    def due_in(self, seconds: float) -> float:
        """A whole second, so that all alarms due then are due at the same tick."""
        return math.ceil(time.time() + seconds)

    def titles_in(self, windows: list[Parts]) -> set[str]:
        return {text for window in windows for text in window if re.search("^Alarm |sound$", text)}

    def test_two_alarms_of_one_second_each_ring_in_their_way(self) -> None:
        recording = self.record()
        due = self.due_in(3)
        chirp = self.user.home / "chirp.aiff"
        write_chirp(chirp, seconds=20)
        # They come back in reverse, so the alert sound is first, and the file is in front of it.
        self.user.set_running_alarms(
            Alarm("Own sound", due, str(chirp)), Alarm("System sound", due, self.system_sound)
        )
        program, _ = self.start_in_panel()
        windows = self.wait_for_ringing(program, count=2, seconds=6)
        self.assertEqual(self.titles_in(windows), {"System sound", "Own sound"})
        self.wait_for_plays(recording, read_aiff(chirp)[:RATE], 1)
        time.sleep(3 * len(self.ping) / RATE)  # behind it, the alert sound is over

        own = next(window for window in windows if "Own sound" in window)
        self.click(own["Clear"])
        self.wait_for_ringing(program, count=1)
        time.sleep(0.5)
        self.assertTrue(recording.is_silent(since=recording.length() - 0.2), "still sounds")
        self.assertLess(float(abs(recording.samples()).max()), 0.9)

    def test_an_open_menu_holds_up_the_window_for_three_seconds_and_no_sound(self) -> None:
        recording = self.record()
        due = self.due_in(4)
        self.user.set_running_alarms(Alarm("Tea", due, self.system_sound))
        program, icon = self.start_in_panel()
        self.desktop.open_menu(icon)
        self.sleep_until(due + 1.5)
        self.assertEqual(self.ringing(program), [])
        self.assertFalse(recording.is_silent())
        self.wait_for_ringing(program, seconds=3)
        self.wait_for_plays(recording, self.ping, 3)

    def test_an_alarm_that_fell_due_asleep_rings_once_after_waking(self) -> None:
        recording = self.record()
        due = self.due_in(3)
        self.user.set_running_alarms(Alarm("Tea", due, self.system_sound))
        program, _ = self.start_in_panel()
        program.send(signal.SIGSTOP)
        self.sleep_until(due + 2)
        program.send(signal.SIGCONT)
        self.wait_for_ringing(program, seconds=2)
        self.wait_for_plays(recording, self.ping, 3)
        self.wait_for_ringing(program, count=1)

    def test_a_hundred_alarms_of_one_second_leave_the_program_alive(self) -> None:
        due = self.due_in(3)
        alarms = [Alarm(f"Alarm {n}", due, self.system_sound) for n in range(100)]
        self.user.set_running_alarms(*alarms)
        program, icon = self.start_in_panel()
        self.sleep_until(due - 0.5)
        # The accessible tree is read on the program's main thread, so its answers tell how long
        # that was busy.
        longest, root = 0.0, self.desktop.reader.program(program.pid)
        assert root
        while time.time() < due + 4:
            before = time.monotonic()
            self.assertTrue(root.name)
            longest = max(longest, time.monotonic() - before)
            time.sleep(0.02)
        self.assertLess(longest, 2.0, "seconds without an answer")
        windows = self.ringing(program)  # the others wait for a place
        self.assertIn(len(windows), range(4, 100))
        self.assertLess(self.titles_in(windows), {alarm.title for alarm in alarms})
        self.click(windows[0]["Clear all"])
        self.wait_until_quiet(program)
        self.assertEqual(program.quit(), 0)


if __name__ == "__main__":
    main()
