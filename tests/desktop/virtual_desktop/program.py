# SPDX-License-Identifier: GPL-3.0-or-later
"""The program under test: starting, ending, its files, and what it says."""

from __future__ import annotations

import os
import plistlib
import shutil
import signal
from pathlib import Path
from typing import Any, Mapping

from .archive import Alarm, alarms_of, archive
from .processes import Processes, wait_for

RUNNING_ALARMS = "AcitveAlarmsStoredKey"
STORED_ALARMS = "StoredAlarmsKey"
BUS_NAME = "com.brackenfold.Dorvane"
_FOLDERS = {"CONFIG": ".config", "CACHE": ".cache", "DATA": ".local/share", "STATE": ".local/state"}


def program_path() -> Path:
    """The built program: $DORVANE_PROGRAM, else the release build of this tree."""
    built = Path(__file__).parents[3] / "build/release/Dorvane.app/dorvane"
    path = Path(os.environ.get("DORVANE_PROGRAM", built))
    if not path.exists():
        raise FileNotFoundError(f"{path} has not been built")
    return path


def ping_path() -> Path:
    """The sound of the timers, as it is delivered with the program."""
    return program_path().parent / "Resources/Sounds/Ping.aiff"


class User:
    """A user's home folder, fresh or with preferences from before."""

    def __init__(self, home: Path) -> None:
        self.home = home
        self.configuration = home / ".config/Dorvane"
        self.preferences_file = self.configuration / f"{BUS_NAME}.plist"
        self.rings = home / ".cache/Dorvane/Rings"
        self.ping = self.rings / ping_path().name
        for folder in _FOLDERS.values():
            (home / folder).mkdir(parents=True)

    def environment(self) -> dict[str, str]:
        return {"HOME": str(self.home), **{f"XDG_{name}_HOME": str(self.home / folder)
                                           for name, folder in _FOLDERS.items()}}

    def preferences(self) -> dict[str, Any]:
        """The preferences as they are on the disk."""
        return plistlib.loads(self.preferences_file.read_bytes())

    def write_preferences(self, data: bytes) -> None:
        self.configuration.mkdir(parents=True, exist_ok=True)
        self.preferences_file.write_bytes(data)

    def set_running_alarms(self, *alarms: Alarm) -> None:
        """What the last run left running."""
        self.write_preferences(plistlib.dumps({RUNNING_ALARMS: archive(alarms)},
                                              fmt=plistlib.FMT_BINARY))

    def fill_rings(self) -> None:
        """As an earlier run has left it: the program's own sounds in the user's folder."""
        shutil.copytree(ping_path().parent, self.rings)

    def running_alarms(self) -> list[dict[str, Any]]:
        """The alarms that the last orderly quit stored."""
        return alarms_of(self.preferences()[RUNNING_ALARMS])


class Program:
    """One run of Dorvane."""

    def __init__(self, processes: Processes, env: Mapping[str, str], user: User, log_name: str,
                 *arguments: str) -> None:
        self._processes = processes
        self._log = processes.log_path(log_name)
        self._process = processes.start([str(program_path()), *arguments],
                                        {**env, **user.environment()}, log_name)
        self.pid = self._process.pid

    def log(self) -> str:
        return self._log.read_text(encoding="utf-8", errors="replace")

    def wait_for_log(self, text: str) -> None:
        wait_for(f"{text!r} in the log", lambda: text in self.log(), 5.0)

    def send(self, signal_number: signal.Signals) -> None:
        self._process.send_signal(signal_number)

    def wait_for_exit(self) -> int:
        """Its exit status; negative for the signal that killed it."""
        wait_for("the end of the program", lambda: self._process.poll() is not None, 5.0)
        return self._process.returncode

    def quit(self) -> int:
        """An orderly quit, as at the end of a session."""
        self.send(signal.SIGTERM)
        return self.wait_for_exit()

    def peak_memory(self) -> int:
        """The most that it has held so far, in bytes."""
        status = Path(f"/proc/{self.pid}/status").read_text(encoding="utf-8")
        return next(int(line.split()[1]) * 1024 for line in status.splitlines()
                    if line.startswith("VmHWM"))

    def kill(self) -> None:
        """A crash: nothing is stored."""
        self._process.kill()
        self._process.wait()

    def stop(self) -> None:
        self._processes.stop(self._process)
