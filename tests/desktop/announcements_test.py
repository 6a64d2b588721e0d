#!/usr/bin/python3 -B
# SPDX-License-Identifier: GPL-3.0-or-later
"""Alarms are announced while the program does not run, by a real user manager of the test's own.

That manager needs a private view of /run/systemd and of the control groups, which takes root.
"""

from __future__ import annotations

import os
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

from virtual_desktop.archive import Alarm
from virtual_desktop.processes import Processes, wait_for
from virtual_desktop.program import Program, User

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


class AnnouncementsTest(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.run_folder = Path(folder.name)
        self.processes = Processes(self.run_folder)
        self.addCleanup(self.processes.stop_all)
        self.user = User(self.run_folder / "user")
        self.units = self.user.home / ".config/systemd/user"
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

    def run_and_quit(self, alarms: list[Alarm], seconds: float = 1.0) -> float:
        """One run of the program with these alarms; how long its orderly end took."""
        self.user.set_running_alarms(*alarms)
        self.processes.log_path("dorvane").unlink(missing_ok=True)
        program = Program(self.processes, self.env, self.user, "dorvane")
        program.wait_for_log("is running on")
        time.sleep(seconds)
        self.assertEqual(self.timers(), [], "nothing is announced while the program rings itself")
        begun = time.monotonic()
        self.assertEqual(program.quit(), 0)
        return time.monotonic() - begun

    def timers(self) -> list[str]:
        return sorted(file.name for file in self.units.glob("dorvane-*.timer"))

    def test_an_alarm_is_shown_at_its_time_and_one_that_was_slept_through_afterwards(self) -> None:
        shown = self.start_notifier()
        soon = time.time() + 6
        self.run_and_quit([Alarm('Tea & "cake"\n50 %', soon), Alarm("Noon", soon + 6)])
        wait_for("the announcement", lambda: "Tea" in shown.read_text(), 15)
        self.assertLess(abs(time.time() - soon), 2.5)
        time_of_day = time.strftime("%-H:%M", time.gmtime(soon + 9 * 3600))
        for part in ('Notify "Dorvane"', time_of_day, "Tea &amp; &quot;cake&quot;\n50 %",
                     '"sound-name": "alarm-clock-elapsed"'):
            self.assertIn(part, shown.read_text())
        self.assertNotIn("Noon", shown.read_text())
        self.processes.stop(self.manager, 20.0)  # the computer is off when the second is due
        time.sleep(max(0.0, soon + 7 - time.time()))
        self.manager = self.start_manager()
        shown = self.start_notifier()  # the desktop comes up after the timers
        wait_for("the second announcement", lambda: "Noon" in shown.read_text(), 30)

    def test_the_next_start_withdraws_a_hundred_and_quitting_with_them_is_quick(self) -> None:
        later = time.time() + 3600
        self.assertLess(self.run_and_quit([Alarm(str(n), later + n) for n in range(100)]), 2.0)
        self.assertEqual(self.systemctl("list-timers").count("dorvane-announce@"), 100)
        self.run_and_quit([], 4.0)
        wait_for("their end", lambda: "dorvane" not in self.systemctl("list-timers"))
        left = [file for file in self.user.home.rglob("*dorvane-*")]
        self.assertEqual(left, [])


if __name__ == "__main__":
    if os.environ.get(_PRIVATE) != "yes":
        enter_private_namespaces()
    unittest.main(verbosity=2)
