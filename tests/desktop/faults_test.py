# SPDX-License-Identifier: GPL-3.0-or-later
"""When something around the program is broken, the alarm still shows, and the log says why."""

from __future__ import annotations

import time
from pathlib import Path

from desktop_case import DesktopTest, main
from virtual_desktop import wait_for
from virtual_desktop.archive import Alarm
from virtual_desktop.bus import Bus, NotificationDaemon
from virtual_desktop.picture import Rect, changed_pixels
from virtual_desktop.program import BUS_NAME, Program, ping_path
from virtual_desktop.sound import SoundServer, read_aiff, write_chirp


class FaultsTest(DesktopTest):
    def start_ringing(self, sound: Path, **env: str) -> tuple[Program, Rect]:
        self.user.set_running_alarms(Alarm.overdue("Tea", seconds=5, sound=str(sound)))
        program, icon = self.start_in_panel(**env)
        self.wait_for_ringing(program)
        return program, icon

    def assert_rings_without_sound(self, program: Program, icon: Rect, reason: str) -> None:
        """Window and flashing come in spite of the sound, whose fate is in the log."""
        before = self.desktop.look_at(icon)
        wait_for("the icon to flash", lambda: changed_pixels(
            before, self.desktop.screen.picture(icon)), 3.0)
        self.assertRegex(program.log(), rf"dorvane\.\w+: .*{reason}")
        self.click_button(self.ringing(program)[0], "Clear")
        self.wait_until_quiet(program)
        self.assertEqual(program.quit(), 0)

    def test_no_sound_server(self) -> None:
        self.user.fill_rings()
        program, icon = self.start_ringing(self.user.ping, PULSE_SERVER="unix:/nope")
        self.assert_rings_without_sound(program, icon, "sound")

    def test_a_sound_file_that_cannot_be_played(self) -> None:
        text = self.user.home / "text.aiff"
        text.write_text("no sound at all\n" * 100, encoding="ascii")
        self.assert_rings_without_sound(*self.start_ringing(text), str(text))

    def test_the_sound_server_dies_while_an_alarm_rings(self) -> None:
        run = Path(self.desktop.env["XDG_RUNTIME_DIR"])
        server = SoundServer(self.desktop.processes, run, self.desktop.env, "mortal-sound")
        chirp = self.user.home / "chirp.aiff"
        write_chirp(chirp, seconds=20)
        program, icon = self.start_ringing(chirp, PULSE_SERVER=server.address)
        time.sleep(1)
        server.kill()
        program.wait_for_log("sound")
        self.assert_rings_without_sound(program, icon, "sound")

    def test_the_session_bus_vanishes(self) -> None:
        """The alarm rings all the same, and the end is in order."""
        bus = Bus(self.desktop.processes, self.user.home, self.desktop.env, "mortal-bus")
        self.user.fill_rings()
        self.user.set_running_alarms(Alarm("Later", time.time() + 3600),
                                     Alarm.overdue("Tea", seconds=8, sound=str(self.user.ping)))
        recording = self.record()
        program = self.start(DBUS_SESSION_BUS_ADDRESS=bus.address)
        wait_for("the name", lambda: bus.connection.owner(BUS_NAME), 5.0)
        bus.kill()
        ping = read_aiff(self.user.ping)
        wait_for("the sound", lambda: recording.starts_of(ping), 12.0)
        wait_for("the window", lambda: self.desktop.windows_of(program, "Dorvane alarm"))
        self.assertEqual(program.quit(), 0)
        self.assertIn("Later", [alarm["title"] for alarm in self.user.running_alarms()])

    def test_a_notification_daemon_that_refuses(self) -> None:
        """What it does not show is heard."""
        bus = Bus(self.desktop.processes, self.user.home, self.desktop.env, "refusing-bus")
        NotificationDaemon(self.desktop.processes, self.desktop.env, bus).refuse()
        units = self.user.home / ".config/systemd/user"
        units.mkdir(parents=True)
        (units / "dorvane-7.timer").write_text(
            "OnCalendar=2026-11-21 07:00:00 UTC\nTitle=Dorvane\nSubtitle=Tea\nText=7:00\n")
        recording = self.record()
        program = self.start("--announce", "7", DBUS_SESSION_BUS_ADDRESS=bus.address)
        wait_for("three plays", lambda: len(recording.starts_of(read_aiff(ping_path()))) == 3)
        self.assertEqual(program.wait_for_exit(), 1)
        self.assertIn("the announcement of Tea was refused", program.log())

    def test_damaged_preferences_are_kept_aside(self) -> None:
        self.user.set_running_alarms(Alarm("Tea", time.time() + 3600))
        damaged = self.user.preferences_file.read_bytes()[:-100]
        self.user.write_preferences(damaged)
        program, icon = self.start_in_panel()
        program.wait_for_log(self.user.preferences_file.name)
        self.assertEqual(self.desktop.open_menu(icon).rows()[1], "No Alarms")
        self.assertEqual(program.quit(), 0)
        self.assertEqual(self.user.running_alarms(), [])
        others = set(self.user.configuration.iterdir()) - {self.user.preferences_file}
        self.assertIn(damaged, [other.read_bytes() for other in others])


if __name__ == "__main__":
    main()
