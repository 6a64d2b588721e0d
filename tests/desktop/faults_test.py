# SPDX-License-Identifier: GPL-3.0-or-later
"""When something around the program is broken, the alarm still shows, and the log says why."""

from __future__ import annotations

import plistlib
import time
from pathlib import Path

from desktop_case import DesktopTest, main
from virtual_desktop import wait_for
from virtual_desktop.archive import Alarm, archive
from virtual_desktop.picture import Rect, changed_pixels
from virtual_desktop.program import RUNNING_ALARMS
from virtual_desktop.sound import SoundServer, write_chirp


class FaultsTest(DesktopTest):
    def assert_icon_flashes(self, icon: Rect) -> None:
        before = self.desktop.look_at(icon)
        wait_for(
            "the icon to flash",
            lambda: changed_pixels(before, self.desktop.screen.picture(icon)),
            3.0,
        )

    def assert_rings_without_sound(self, sound: Path, reason: str, **env: str) -> None:
        """Window and flashing come in spite of the sound, whose fate is in the log."""
        self.user.set_running_alarms(Alarm.overdue("Tea", seconds=5, sound=str(sound)))
        program, icon = self.start_in_panel(self.user, **env)
        (window,) = self.wait_for_ringing(program)
        self.assert_icon_flashes(icon)
        self.assertRegex(program.log(), reason)
        self.click_button(window, "Clear")
        self.wait_until_quiet(program)
        self.assertEqual(program.quit(), 0)

    def test_no_sound_server(self) -> None:
        self.user.fill_rings()
        reason = r"dorvane\.\w+: .*sound"
        self.assert_rings_without_sound(self.user.ping, reason, PULSE_SERVER="unix:/nope")

    def test_sound_files_that_cannot_be_played(self) -> None:
        text = self.user.home / "text.aiff"
        text.write_text("no sound at all\n" * 100, encoding="ascii")
        for path in (self.user.home / "gone.aiff", self.user.home, text):
            with self.subTest(path.name):
                self.assert_rings_without_sound(path, rf"dorvane\.\w+: .*{path}")

    def test_the_sound_server_dies_while_an_alarm_rings(self) -> None:
        desktop = self.desktop
        run = Path(desktop.env["XDG_RUNTIME_DIR"])
        server = SoundServer(desktop.processes, run, desktop.env, "mortal-sound")
        chirp = self.user.home / "chirp.aiff"
        write_chirp(chirp, seconds=20)
        self.user.set_running_alarms(Alarm.overdue("Tea", seconds=5, sound=str(chirp)))
        program, icon = self.start_in_panel(PULSE_SERVER=server.address)
        (window,) = self.wait_for_ringing(program)
        time.sleep(1)
        server.kill()
        self.assert_icon_flashes(icon)
        program.wait_for_log("sound")
        self.click_button(window, "Clear")
        self.wait_until_quiet(program)
        self.assertEqual(program.quit(), 0)

    def test_damaged_preferences_are_kept_aside(self) -> None:
        self.user.set_running_alarms(Alarm("Tea", time.time() + 3600))
        sound = self.user.preferences_file.read_bytes()
        damaged = {
            "empty": b"",
            "cut short": sound[: len(sound) // 2],
            "of another kind": plistlib.dumps(["a", "list"], fmt=plistlib.FMT_BINARY),
            "from the future": b"bplist20" + sound[8:],
        }
        for name, data in damaged.items():
            with self.subTest(name):
                user = self.desktop.new_user()
                user.write_preferences(data)
                program, icon = self.start_in_panel(user)
                program.wait_for_log(user.preferences_file.name)
                self.assertEqual(self.desktop.open_menu(icon).rows()[1], "No Alarms")
                self.assertEqual(program.quit(), 0)
                self.assertEqual(user.running_alarms(), [])
                others = set(user.configuration.iterdir()) - {user.preferences_file}
                self.assertIn(data, [other.read_bytes() for other in others])

    def test_damaged_alarms_take_no_others_along(self) -> None:
        sound = archive([Alarm("Tea", time.time() + 3600), Alarm("Train", time.time() + 7200)])
        cases = {
            "not even an archive": (b"junk", 0),
            "an archive of something else": (plistlib.dumps({"$top": 1}), 0),
            "one alarm of two": (with_first_alarm_lost(sound), 1),
        }
        for name, (data, readable) in cases.items():
            with self.subTest(name):
                user = self.desktop.new_user()
                user.write_preferences(plistlib.dumps({RUNNING_ALARMS: data}))
                program, _ = self.start_in_panel(user)
                program.wait_for_log(RUNNING_ALARMS)
                self.assertEqual(program.quit(), 0)
                self.assertEqual(len(user.running_alarms()), readable)
                kept = [value for key, value in user.preferences().items() if "damaged" in key]
                self.assertEqual(kept, [data])


def with_first_alarm_lost(data: bytes) -> bytes:
    """An archived list whose first record is missing from the table."""
    contents = plistlib.loads(data)
    objects = contents["$objects"]
    records = objects[contents["$top"]["root"].data]["NS.objects"]
    records[0] = plistlib.UID(len(objects))
    return plistlib.dumps(contents, fmt=plistlib.FMT_BINARY)


if __name__ == "__main__":
    main()
