# SPDX-License-Identifier: GPL-3.0-or-later
"""Moving in: from a mounted disk image to where programs live, in a private view of the machine."""

from __future__ import annotations

import ctypes
import os
import shutil
import signal
import subprocess
import time
import unittest
from pathlib import Path
from unittest import mock

from desktop_case import DesktopTest, main
from virtual_desktop import wait_for
from virtual_desktop.archive import Alarm
from virtual_desktop.program import BUS_NAME, program_path

_CLONE_NEWNS = 0x20000
_PLACE = Path("/opt/Dorvane.app")


def run(*command: str | Path) -> None:
    """Runs a command as far as this machine allows it."""
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    if result.returncode != 0:
        raise unittest.SkipTest(f"{command[0]}: {result.stderr.strip()}")


class RelocateTest(DesktopTest):
    @classmethod
    def setUpClass(cls) -> None:
        if os.geteuid() != 0 or ctypes.CDLL(None).unshare(_CLONE_NEWNS) != 0:
            raise unittest.SkipTest("a private /opt and disk images need root and mount namespaces")
        run("mount", "--make-rprivate", "/")
        super().setUpClass()

    def setUp(self) -> None:
        super().setUp()
        run("mount", "-t", "tmpfs", "tmpfs", "/opt")
        self.addCleanup(run, "umount", "--lazy", "/opt")  # what has ended a moment ago may hold it
        self.image = self.user.home / "image"
        self.volume = self.user.home / "Dorvane volume's"
        bundle = self.user.home / "content/Dorvane.app"
        shutil.copytree(program_path().parent, bundle)
        self.volume.mkdir()
        run("mkfs.ext4", "-q", "-d", bundle.parent, self.image, "256M")
        run("mount", "-o", "loop,ro", self.image, self.volume)
        self.addCleanup(lambda: self.is_mounted() and run("umount", self.volume))
        mounted = {"DORVANE_PROGRAM": str(self.volume / "Dorvane.app/dorvane")}
        self.enterContext(mock.patch.dict(os.environ, mounted))
        self.user.set_running_alarms(Alarm("Tea", time.time() + 3600))

    def is_mounted(self) -> bool:
        command = ["losetup", "--associated", self.image]
        return bool(subprocess.run(command, capture_output=True, check=True).stdout)

    def test_moves_in_and_goes_on_from_there(self) -> None:
        _PLACE.mkdir()
        (_PLACE / "old").touch()
        login = self.user.home / ".config/autostart/com.brackenfold.Dorvane.desktop"
        login.parent.mkdir()
        login.write_text(f'[Desktop Entry]\nExec="{self.volume}/Dorvane.app/dorvane"\n')
        program = self.start()
        question = self.window(program, "Do Not Move")
        time.sleep(0.3)  # for the window manager to have placed it
        self.click(question["Move to Applications Folder"])
        self.assertEqual(program.wait_for_exit(), 0)
        bus = self.desktop.session_bus.connection
        bus.wait_for_owner(BUS_NAME)
        moved = bus.process_of(BUS_NAME)
        self.addCleanup(lambda: bus.owner(BUS_NAME) and os.kill(moved, signal.SIGKILL))
        self.assertEqual(os.readlink(f"/proc/{moved}/exe"), str(_PLACE / "dorvane"))
        self.desktop.panel.wait_for_icon()
        self.assertIn(f"Exec={_PLACE}/dorvane", login.read_text().replace('"', ""))
        self.assertEqual(list(Path("/opt").glob(".Trash*/files/*/*")),
                         [Path("/opt/.Trash-0/files/Dorvane.app/old")])
        wait_for("the image to be detached", lambda: not self.is_mounted(), 8.0)
        os.kill(moved, signal.SIGTERM)
        wait_for("its end", lambda: not bus.owner(BUS_NAME), 5.0)
        self.assertEqual([alarm["title"] for alarm in self.user.running_alarms()], ["Tea"])


if __name__ == "__main__":
    main()
