#!/usr/bin/python3 -B
# SPDX-License-Identifier: GPL-3.0-or-later
"""Alarms are announced while the program does not run, by a real user manager of the test's own.

That manager needs a private view of /run/systemd and of the control groups, which takes root.
"""

from __future__ import annotations

import os
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

from virtual_desktop.archive import DATED, Alarm
from virtual_desktop.processes import Processes, wait_for
from virtual_desktop.program import Program, User, program_path

_SKIPPED = 77
_PRIVATE = "DORVANE_PRIVATE_MANAGER"
# Somebody who shows notifications, makes sounds for them and writes down what is asked.
_NOTIFIER = ["/usr/bin/python3", "-m", "dbusmock", "--session", "--template", "notification_daemon",
             "--parameters", '{"capabilities": "body body-markup sound"}']


def enter_private_namespaces() -> None:
    """Starts this test again where a user manager finds what it looks for."""
    setup = """mkdir -p /run/systemd && mount -t tmpfs tmpfs /run/systemd &&
        mkdir /run/systemd/system && mount -t cgroup2 none /sys/fs/cgroup &&
        mkdir -p /sys/fs/cgroup/user && echo $$ > /sys/fs/cgroup/user/cgroup.procs"""
    if os.geteuid() or subprocess.call(["unshare", "-m", "-C", "sh", "-c", setup],
                                       stderr=subprocess.DEVNULL):
        print("Skipped: a user manager of the test's own needs root and control groups.")
        sys.exit(_SKIPPED)
    os.environ[_PRIVATE] = "yes"
    os.execvp("unshare", ["unshare", "-m", "-C", "sh", "-c", f'{setup} && exec "$0" "$@"',
                          sys.executable, "-B", *sys.argv])


def contents(file: Path) -> bytes:
    return file.read_bytes() if file.exists() else b""


class AnnouncementsTest(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.run_folder = Path(folder.name)
        self.processes = Processes(self.run_folder)
        self.addCleanup(self.processes.stop_all)
        self.user = User(self.run_folder / "user")
        self.units = self.user.home / ".config/systemd/user"
        self.state = self.user.home / ".local/state/Dorvane"
        self.env = {**self.user.environment(), "XDG_RUNTIME_DIR": str(self.run_folder),
                    "LANG": "C.UTF-8", "TZ": "Asia/Tokyo", "PATH": "/usr/bin:/bin",
                    "QT_QPA_PLATFORM": "offscreen",
                    "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.run_folder}/bus"}
        self.manager = self.start_manager()

    def start_manager(self) -> subprocess.Popen[bytes]:
        manager = self.processes.start(["/lib/systemd/systemd", "--user"], self.env, "manager")
        wait_for("the user manager", lambda: "timers.target" in self.systemctl("list-units"), 20)
        return manager

    def systemctl(self, *words: str) -> str:
        return subprocess.run(["systemctl", "--user", *words], env=self.env, check=False,
                              capture_output=True, text=True).stdout

    def start_notifier(self) -> Path:
        """Gives the file that tells what is shown from now on."""
        log = self.processes.log_path("notifier")
        log.unlink(missing_ok=True)
        self.processes.start(_NOTIFIER, self.env, "notifier")
        return log

    def start(self, *alarms: Alarm) -> Program:
        """A run of the program with these alarms, which its journal knows of."""
        self.user.set_running_alarms(*alarms)
        program = Program(self.processes, self.env, self.user, "dorvane")
        self.addCleanup(program.stop)
        wait_for("the journal", lambda: b"running" in contents(self.state / "journal.plist"))
        return program

    def announce(self, *options: str, later: str = "+0") -> None:
        """An announcer of the test's own."""
        subprocess.run(["faketime", "--exclude-monotonic", "-f", later, str(program_path()), "--announce", *options],
                       env=self.env, check=True, timeout=20)

    def timers(self) -> list[str]:
        """When the announcer is to start."""
        lines = self.systemctl("list-timers", "--all").splitlines()
        return [line for line in lines if "com.brackenfold.Dorvane.announce" in line]

    def test_what_falls_due_after_a_crash_is_shown_and_what_was_slept_through_afterwards(
            self) -> None:
        shown = self.start_notifier()
        soon = time.time() + 4
        program = self.start(Alarm('Tea & "cake"\n50 %', soon), Alarm("Noon", soon + 12),
                             Alarm("Gone", soon + 3600))
        program.kill()
        wait_for("the announcement", lambda: "Tea" in shown.read_text(), 15)
        self.assertGreater(time.time(), soon + 4)
        time_of_day = time.strftime("%-H:%M", time.gmtime(soon + 9 * 3600))
        for part in ('Notify "Dorvane"', time_of_day, "Tea &amp; &quot;cake&quot;\n50 %",
                     '"sound-name": "alarm-clock-elapsed"'):
            self.assertIn(part, shown.read_text())
        wait_for("the memory of it", lambda: b"Tea" in contents(self.state / "announced"))
        self.processes.stop(self.manager, 20.0)  # the computer is off when the second is due
        time.sleep(max(0.0, soon + 13 - time.time()))
        self.manager = self.start_manager()
        shown = self.start_notifier()  # the desktop comes up after the login
        wait_for("the second announcement", lambda: "Noon" in shown.read_text(), 30)
        wait_for("the next one", lambda: len(self.timers()) == 1)
        self.assertEqual(shown.read_text().count("Notify "), 1)
        self.assertEqual((self.state / "announced").stat().st_mode & 0o777, 0o600)
        for file in self.user.home.rglob("*.*"):  # what others may read tells no titles
            if file.is_file() and file.parent != self.state and "plist" not in file.name:
                self.assertNotIn(b"Noon", file.read_bytes(), file)

    def test_a_program_that_hangs_is_announced_for_and_one_that_lives_is_not(self) -> None:
        shown = self.start_notifier()
        soon = time.time() + 4
        program = self.start(Alarm("Rung", soon), Alarm("Hung", soon + 14))
        wait_for("the ring", lambda: b"rang Rung" in contents(self.state / "journal.plist"))
        wait_for("one timer", lambda: len(self.timers()) == 1)
        self.announce()
        program.send(signal.SIGSTOP)
        wait_for("the announcement", lambda: "Hung" in shown.read_text(), 40)
        self.announce()
        self.assertEqual(shown.read_text().count("Notify "), 1, shown.read_text())
        program.send(signal.SIGCONT)
        wait_for("the ring", lambda: b"rang Hung" in contents(self.state / "journal.plist"))

    def test_what_repeats_is_announced_each_day_until_the_program_runs_again(self) -> None:
        shown = self.start_notifier()
        mine = self.units / "dorvane-standup.timer"
        mine.parent.mkdir(parents=True)
        mine.write_text("[Timer]\nOnCalendar=Mon..Fri 09:30\nUnit=dorvane-standup.service\n")
        program = self.start(Alarm("Pills", time.time() // 60 * 60 + 600, kind=DATED, repeats=True))
        self.assertEqual(program.quit(), 0)
        for day, told in (("+0", 0), ("+1d", 1), ("+1d", 1), ("+2d", 2), ("+2d", 2)):
            self.announce(later=day)
            self.assertEqual(shown.read_text().count("Pills"), told, day)
        self.assertEqual(len(self.timers()), 1)
        autostart = self.user.home / ".config/autostart"
        autostart.mkdir()
        (autostart / "clock.desktop").write_text(f"[Desktop Entry]\nExec={program_path()}\n")
        self.announce("--login", later="+3d")
        self.assertEqual(shown.read_text().count("Pills"), 2, "the program starts by itself")
        program = self.start()
        wait_for("the end of the timer", lambda: not self.timers())
        self.assertTrue(mine.exists())
        self.assertEqual(program.quit(), 0)


if __name__ == "__main__":
    if os.environ.get(_PRIVATE) != "yes":
        enter_private_namespaces()
    unittest.main(verbosity=2)
