# SPDX-License-Identifier: GPL-3.0-or-later
"""The break reminder from its start in the menu to its own stop, in a process whose clocks run
thirty times as fast as those of the desktop around it."""

from __future__ import annotations

import plistlib
import time
from pathlib import Path

from desktop_case import DesktopTest, main
from virtual_desktop import wait_for
from virtual_desktop.program import Program, ping_path
from virtual_desktop.screen import SIZE, Window
from virtual_desktop.sound import read_aiff

SPEED = 30
# The shortest that can be set, in seconds as the desktop counts them.
WORK, BREAK, BREAKS = 5 * 60 / SPEED, 2 * 60 / SPEED, 2


class BreaksTest(DesktopTest):
    def setUp(self) -> None:
        super().setUp()
        found = list(Path("/usr/lib").glob("*/faketime/libfaketimeMT.so.1"))
        if not found:
            self.skipTest("no libfaketime (scripts/deps test installs what is missing)")
        self.clocks = {"LD_PRELOAD": str(found[0]), "FAKETIME": f"+0 x{SPEED}"}
        self.user.fill_rings()
        self.stop_sound = self.user.rings / "Basso.aiff"
        settings = {
            "PendixTakeABreakFrequency": 5,
            "PendixTakeABreakDuration": 2,
            "PendixTakeARepeatFrequency": BREAKS,
            "PendixTakeABreakSoundPath": str(self.user.ping),
            "PendixTakeADurationSoundPath": str(self.stop_sound),
        }
        self.user.write_preferences(plistlib.dumps(settings, fmt=plistlib.FMT_BINARY))

    def sheets(self, program: Program) -> list[Window]:
        return self.desktop.windows_of(program, "^Respito$")

    def be_there(self) -> None:
        """Somebody who touches nothing for as long as a break lasts has had one."""
        for x in (2, 4):
            self.desktop.screen.move_to((x, SIZE[1] // 2))

    def test_two_breaks_then_it_stops_by_itself(self) -> None:
        recording = self.record()
        program, _ = self.start_in_panel(**self.clocks)
        self.be_there()
        self.run_command("breaks", "start")
        time.sleep(3)
        self.run_command("breaks", "stop")  # or the first sheet comes three seconds early
        # The settings stay behind, and must not keep the sheet there.
        self.desktop.choose_in_panel("Respito...", "Preferences...")
        wait_for("the settings", lambda: self.sheets(program))
        self.desktop.screen.go_to_workspace(1)
        wait_for("the other workspace", lambda: not self.sheets(program))
        self.run_command("breaks", "start")
        since = time.monotonic()
        for _ in range(BREAKS):
            (sheet,) = wait_for("the sheet", lambda: self.sheets(program), WORK + 5)
            self.assertGreater(time.monotonic() - since, WORK - 1.5)
            since = time.monotonic()
            self.be_there()
            self.assertAlmostEqual(sheet.rect.centre[0], SIZE[0] / 2, delta=20)
            self.assertRegex("\n".join(self.window(program, "Done")),
                             r"(?m)^Take a break for 0[012]:\d\d mins$")
            wait_for("the end of the break", lambda: not self.sheets(program), BREAK + 5)
            self.assertGreater(time.monotonic() - since, BREAK - 1.5)
            since = time.monotonic()
        time.sleep(WORK + 1)
        self.assertEqual(self.sheets(program), [])
        self.assertEqual(len(recording.starts_of(read_aiff(ping_path()))), BREAKS)
        # The last break ends with the reminder, not with a call back to work.
        self.assertEqual(len(recording.starts_of(read_aiff(self.stop_sound))), BREAKS - 1)
        self.assertEqual(program.quit(), 0)
        self.assertEqual(self.user.preferences()["PendixRespitoStatus"], 0)


if __name__ == "__main__":
    main()
