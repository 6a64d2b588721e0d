# SPDX-License-Identifier: GPL-3.0-or-later
"""After a crash, a power cut or a time without the program the user learns what he missed."""

from __future__ import annotations

import os
import plistlib
import signal
import time
from typing import Any

from desktop_case import DesktopTest, main
from virtual_desktop import wait_for
from virtual_desktop.archive import DATED, RELATIVE, WEEKLY, Alarm, alarms_of

HOUR = 3600


class MissedTest(DesktopTest):
    def setUp(self) -> None:
        super().setUp()
        self.state = self.user.home / ".local/state/Dorvane"
        self.journal = self.state / "journal.plist"

    def journalled(self) -> dict[str, Any]:
        """When what the journal says is running is due, by its title."""
        try:
            running = plistlib.loads(self.journal.read_bytes())["running"]
        except (FileNotFoundError, plistlib.InvalidFileException):
            return {}
        return dict(zip((alarm["title"] for alarm in alarms_of(running["alarms"])), running["due"]))

    def wait_for_journal(self, *titles: str) -> None:
        wait_for("the journal", lambda: self.journalled().keys() == set(titles), 10.0)

    def test_what_ran_when_the_program_was_killed_runs_on_or_is_offered(self) -> None:
        now = time.time()
        kinds = [Alarm("Train", now + HOUR, kind=DATED),
                 Alarm("Pills", now + HOUR, kind=DATED, repeats=True),
                 Alarm("School", now + HOUR, kind=WEEKLY, repeats=True, days=["Monday"]),
                 Alarm("Roast", now, kind=RELATIVE, minutes=90),
                 Alarm("Stretch", now, kind=RELATIVE, minutes=30, repeats=True)]
        titles = [alarm.title for alarm in kinds]
        self.user.set_running_alarms(*kinds)
        program, _ = self.start_in_panel()
        self.wait_for_journal(*titles)
        before = self.journalled()
        program.kill()

        program, _ = self.start_in_panel()
        time.sleep(1.5)
        self.assertEqual(self.desktop.windows_of(program, "Missed"), [])
        self.assertEqual(self.journalled(), before)
        program.kill()

        self.user.set_running_alarms()  # as somebody does who brings back his preferences
        program, _ = self.start_in_panel()
        window = self.window(program, "Missed alarms - Dorvane")
        self.assertLessEqual(set(titles), set(window))
        wait_for("the report", lambda: len(self.run_command("missed").splitlines()) == len(titles))
        self.click(window["Start again"])
        self.wait_for_journal(*titles)
        self.assertEqual(self.journalled(), before)
        self.assertEqual(program.quit(), 0)
        self.assertEqual(sorted(alarm["title"] for alarm in self.user.running_alarms()),
                         sorted(titles))
        self.assertEqual(self.journal.stat().st_mode & 0o777, 0o600)

    def test_a_power_cut_between_writing_and_renaming_leaves_the_old_journal(self) -> None:
        if "DORVANE_POWER_CUT" not in os.environ:
            self.skipTest("ctest tells where the library is that cuts the power")
        trigger = self.user.home / "now"
        self.user.set_running_alarms(Alarm("Train", time.time() + HOUR, kind=DATED))
        program, icon = self.start_in_panel(LD_PRELOAD=os.environ["DORVANE_POWER_CUT"],
                                            DORVANE_POWER_CUT_NOW=str(trigger))
        self.wait_for_journal("Train")
        before = self.journal.read_bytes()
        trigger.touch()
        self.desktop.open_menu(icon).open_submenu("Timer...").click("45 min")
        self.assertEqual(program.wait_for_exit(), -signal.SIGKILL)
        self.assertEqual(self.journal.read_bytes(), before)
        (unfinished,) = set(self.state.iterdir()) - {self.journal}  # the new one, not in place yet
        os.utime(unfinished, (0, 0))  # what is young may belong to another process

        self.user.set_running_alarms()
        program, _ = self.start_in_panel()
        self.assertIn("Train", self.window(program, "Missed alarms - Dorvane"))
        wait_for("what was left to go", lambda: list(self.state.iterdir()) == [self.journal])

    def test_a_damaged_journal_costs_nothing_else(self) -> None:
        self.state.mkdir()
        self.journal.write_bytes(b"bplist00 and no more")
        self.user.set_running_alarms(Alarm.overdue("Tea", seconds=5))
        program, _ = self.start_in_panel()
        self.wait_for_ringing(program)
        self.wait_for_journal("Tea")
        aside = [file for file in self.state.iterdir() if ".damaged-" in file.name]
        self.assertEqual([file.read_bytes() for file in aside], [b"bplist00 and no more"])

    def test_a_crash_leaves_a_report_that_the_next_start_mentions(self) -> None:
        program, _ = self.start_in_panel()
        program.send(signal.SIGSEGV)
        self.assertEqual(program.wait_for_exit(), -signal.SIGSEGV)
        program, _ = self.start_in_panel()
        link = next(name for name in self.window(program, "Missed alarms - Dorvane") if "had crashed" in name)
        report = next(self.state.glob("crash-*.txt"))
        self.assertIn(report.name, link)
        self.assertIn(str(report), self.run_command("missed"))
        text = report.read_text(encoding="utf-8")
        self.assertRegex(text, r"^Dorvane \d[\d.]*\nBuild: [0-9a-f]{16,}\nSignal: SIGSEGV\n")
        self.assertRegex(text, r"/dorvane\(\+0x[0-9a-f]+\)")
        self.assertEqual(report.stat().st_mode & 0o777, 0o600)


if __name__ == "__main__":
    main()
