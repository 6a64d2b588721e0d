# SPDX-License-Identifier: GPL-3.0-or-later
"""When something around the program is broken or ends, the alarm still shows or is kept, and the log
says why."""

from __future__ import annotations

import plistlib
import signal
import time
from datetime import datetime
from pathlib import Path

from desktop_case import DesktopTest, main
from virtual_desktop import wait_for
from virtual_desktop.archive import Alarm, archive
from virtual_desktop.bus import Bus, NotificationDaemon
from virtual_desktop.picture import changed_pixels
from virtual_desktop.program import BUS_NAME, ping_path, program_path
from virtual_desktop.screen import Screen
from virtual_desktop.sound import SoundServer, read_aiff


class FaultsTest(DesktopTest):
    def test_the_sound_server_dies_while_an_alarm_rings(self) -> None:
        """The window stays and the icon flashes on, and the log says what became of the sound."""
        run = Path(self.desktop.env["XDG_RUNTIME_DIR"])
        server = SoundServer(self.desktop.processes, run, self.desktop.env, "mortal-sound")
        track = program_path().parent / "Resources/Respito.mp3"  # which plays on and on
        self.user.set_running_alarms(Alarm.overdue("Tea", seconds=5, sound=str(track)))
        program, icon = self.start_in_panel(PULSE_SERVER=server.address)
        (window,) = self.wait_for_ringing(program)
        time.sleep(1)
        server.kill()
        program.wait_for_log("sound")
        before = self.desktop.look_at(icon)
        wait_for("the icon to flash", lambda: changed_pixels(
            before, self.desktop.screen.picture(icon)), 3.0)
        self.click(window["Clear"])
        self.wait_until_quiet(program)
        self.assertEqual(program.quit(), 0)

    def test_the_session_bus_vanishes(self) -> None:
        """The alarm rings all the same, and there is one program only, also on the bus after it."""
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
        self.assertEqual(self.start(DBUS_SESSION_BUS_ADDRESS="").wait_for_exit(), 0)  # only one
        after = Bus(self.desktop.processes, self.user.home, self.desktop.env, "mortal-bus")
        wait_for("the name", lambda: after.connection.owner(BUS_NAME), 20.0)
        self.assertEqual(after.connection.process_of(BUS_NAME), program.pid)
        self.assertEqual(self.start(DBUS_SESSION_BUS_ADDRESS=after.address).wait_for_exit(), 0)
        self.assertIn("Later", [alarm["title"] for alarm in after.connection.call(
            BUS_NAME, "/com/brackenfold/Dorvane", f"{BUS_NAME}1.ListRunning")])
        self.assertEqual(program.quit(), 0)
        self.assertIn("Later", self.running_titles())

    def test_a_notification_daemon_that_refuses(self) -> None:
        """What it does not show is heard."""
        bus = Bus(self.desktop.processes, self.user.home, self.desktop.env, "refusing-bus")
        NotificationDaemon(self.desktop.processes, self.desktop.env, bus).refuse()
        due = datetime(2026, 11, 21, 7)
        journal = self.user.home / ".local/state/Dorvane/journal.plist"
        journal.parent.mkdir()
        journal.write_bytes(plistlib.dumps({"running": {
            "alarms": archive([Alarm("Tea", due.timestamp())]), "due": [due]}}))
        recording = self.record()
        program = self.start("--announce", DBUS_SESSION_BUS_ADDRESS=bus.address)
        wait_for("three plays", lambda: len(recording.starts_of(read_aiff(ping_path()))) == 3)
        self.assertEqual(program.wait_for_exit(), 1)
        self.assertIn("was refused", program.log())

    def test_every_end_of_session_is_an_orderly_quit(self) -> None:
        due = time.time() + 3600
        self.user.set_running_alarms(Alarm("Tea", due), Alarm("Train", due + 1))
        # Restoring puts each alarm at the front, so the order turns round with every run.
        expected = ["Tea", "Train"]
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(signal=number.name):
                program, _ = self.start_in_panel()
                program.send(number)
                self.assertEqual(program.wait_for_exit(), 0)
                expected.reverse()
                self.assertEqual(self.running_titles(), expected)
        # One that cannot store them loses none.
        program, _ = self.start_in_panel()
        away = self.user.preferences_file.rename(self.user.home / "away")
        self.user.preferences_file.mkdir()
        self.run_command("timer", "45", "Egg")
        self.assertEqual(program.quit(), 0)
        self.user.preferences_file.rmdir()
        away.rename(self.user.preferences_file)
        self.start_in_panel()
        self.assertIn("Egg", self.run_command("list"))

    def test_no_display_is_a_message_and_one_that_goes_is_an_orderly_end(self) -> None:
        program = self.start(DISPLAY=":99", WAYLAND_DISPLAY="gone")
        self.assertEqual(program.wait_for_exit(), 1)
        self.assertIn("dorvane: there is no display to be shown on: DISPLAY is :99", program.log())
        server = Screen(self.desktop.processes, self.user.home, self.desktop.env)
        program = self.start(DISPLAY=server.display)
        wait_for("the name", lambda: self.desktop.session_bus.connection.owner(BUS_NAME), 5.0)
        self.run_command("timer", "45", "Egg")
        server.kill()
        self.assertEqual(program.wait_for_exit(), 1)
        self.assertEqual(self.running_titles(), ["Egg"])
        self.assertFalse(list(self.user.home.glob(".local/state/Dorvane/crash*")))

    def running_titles(self) -> list[object]:
        """What the last end has stored."""
        return [alarm["title"] for alarm in self.user.running_alarms()]


if __name__ == "__main__":
    main()
