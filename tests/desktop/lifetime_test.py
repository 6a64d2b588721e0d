# SPDX-License-Identifier: GPL-3.0-or-later
"""Starting and ending: what is kept, what is not, and that there is only one."""

from __future__ import annotations

import signal
import time

from desktop_case import DesktopTest, main
from virtual_desktop.archive import Alarm
from virtual_desktop import wait_for
from virtual_desktop.program import BUS_NAME
from virtual_desktop.screen import Screen

HOUR = 3600


def titles(alarms: list[dict[str, object]]) -> list[object]:
    return [alarm["title"] for alarm in alarms]


class LifetimeTest(DesktopTest):
    def set_two_alarms(self) -> None:
        due = time.time() + HOUR
        self.user.set_running_alarms(Alarm("Tea", due), Alarm("Train", due + HOUR))

    def test_every_end_of_session_is_an_orderly_quit(self) -> None:
        self.set_two_alarms()
        # Restoring puts each alarm at the front, so the order turns round with every run.
        expected = ["Tea", "Train"]
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(signal=number.name):
                program, _ = self.start_in_panel()
                program.send(number)
                self.assertEqual(program.wait_for_exit(), 0)
                expected.reverse()
                self.assertEqual(titles(self.user.running_alarms()), expected)

    def test_a_second_program_opens_the_menu_of_the_first(self) -> None:
        self.set_two_alarms()
        first, _ = self.start_in_panel()
        second = self.start()
        self.assertEqual(second.wait_for_exit(), 0)
        self.assertEqual(self.desktop.opened_menu().rows()[0], "Active alarms:")
        self.assertEqual(self.desktop.panel.icon_count(), 1)
        self.assertTrue(first.is_running())

    def test_no_display_is_a_message_and_no_crash(self) -> None:
        program = self.start(DISPLAY=":99", WAYLAND_DISPLAY="gone")
        self.assertEqual(program.wait_for_exit(), 1)
        self.assertIn("dorvane: there is no display to be shown on: DISPLAY is :99", program.log())
        self.assertFalse(list(self.user.home.glob(".local/state/Dorvane/crash*")))

    def test_a_display_that_goes_is_an_orderly_end(self) -> None:
        self.set_two_alarms()
        server = Screen(self.desktop.processes, self.user.home, self.desktop.env)
        program = self.start(DISPLAY=server.display)
        self.desktop.session_bus.connection.wait_for_owner(BUS_NAME)
        wait_for("the journal", (self.user.home / ".local/state/Dorvane/journal.plist").exists)
        self.run_command("timer", "45", "Egg")
        server.kill()
        self.assertEqual(program.wait_for_exit(), 1)
        self.assertEqual(titles(self.user.running_alarms()), ["Egg", "Train", "Tea"])
        self.assertFalse(list(self.user.home.glob(".local/state/Dorvane/crash*")))

    def test_version_and_help_need_no_desktop(self) -> None:
        for option in ("--version", "--help"):
            with self.subTest(option):
                program = self.start(option, DISPLAY="", DBUS_SESSION_BUS_ADDRESS="")
                self.assertEqual(program.wait_for_exit(), 0)
                self.assertIn("orvane", program.log())
        self.assertIsNone(self.desktop.session_bus.connection.owner(BUS_NAME))


if __name__ == "__main__":
    main()
