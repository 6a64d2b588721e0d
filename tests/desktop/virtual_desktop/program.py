# SPDX-License-Identifier: GPL-3.0-or-later
"""The program under test: starting, ending, its files, and what it says."""

from __future__ import annotations

import os
import plistlib
import shutil
import signal
import subprocess
from pathlib import Path
from typing import Any, Mapping

from .archive import Alarm, alarms_of, archive
from .processes import Processes, wait_for

RUNNING_ALARMS = "AcitveAlarmsStoredKey"
STORED_ALARMS = "StoredAlarmsKey"
BUS_NAME = "com.brackenfold.Dorvane"


def program_path() -> Path:
    """The built program: $DORVANE_PROGRAM, else the release build of this tree."""
    tree = Path(__file__).parents[3]
    path = Path(os.environ.get("DORVANE_PROGRAM", tree / "build/release/Dorvane.app/dorvane"))
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
        for folder in (".config", ".cache", ".local/share", ".local/state"):
            (home / folder).mkdir(parents=True)

    def environment(self) -> dict[str, str]:
        return {
            "HOME": str(self.home),
            "XDG_CONFIG_HOME": str(self.home / ".config"),
            "XDG_CACHE_HOME": str(self.home / ".cache"),
            "XDG_DATA_HOME": str(self.home / ".local/share"),
            "XDG_STATE_HOME": str(self.home / ".local/state"),
        }

    def preferences(self) -> dict[str, Any]:
        """The preferences as they are on the disk."""
        with open(self.preferences_file, "rb") as file:
            return plistlib.load(file)

    def write_preferences(self, data: bytes) -> None:
        self.configuration.mkdir(parents=True, exist_ok=True)
        self.preferences_file.write_bytes(data)

    def set_running_alarms(self, *alarms: Alarm) -> None:
        """What the last run left running."""
        contents = {RUNNING_ALARMS: archive(alarms)}
        self.write_preferences(plistlib.dumps(contents, fmt=plistlib.FMT_BINARY))

    def fill_rings(self) -> None:
        """As an earlier run has left it: the program's own sounds in the user's folder."""
        shutil.copytree(ping_path().parent, self.rings)

    def running_alarms(self) -> list[dict[str, Any]]:
        """The alarms that the last orderly quit stored."""
        return alarms_of(self.preferences()[RUNNING_ALARMS])


class Program:
    """One run of Dorvane."""

    def __init__(
        self,
        processes: Processes,
        env: Mapping[str, str],
        user: User,
        log_name: str,
        *arguments: str,
    ) -> None:
        self._processes = processes
        self._log = processes.log_path(log_name)
        command = [str(program_path()), *arguments]
        self._process = processes.start(command, {**env, **user.environment()}, log_name)

    @property
    def pid(self) -> int:
        return self._process.pid

    def is_running(self) -> bool:
        return self._process.poll() is None

    def log(self) -> str:
        return self._log.read_text(encoding="utf-8", errors="replace")

    def wait_for_log(self, text: str, seconds: float = 5.0) -> None:
        try:
            wait_for(f"{text!r} in the log", lambda: text in self.log(), seconds)
        except AssertionError as error:
            raise AssertionError(f"{error}; it says:\n{self.log()}") from None

    def send(self, signal_number: signal.Signals) -> None:
        self._process.send_signal(signal_number)

    def wait_for_exit(self, seconds: float = 5.0) -> int:
        """Its exit status; negative for the signal that killed it."""
        try:
            return self._process.wait(seconds)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"still running after {seconds:g} s") from None

    def quit(self) -> int:
        """An orderly quit, as at the end of a session."""
        self.send(signal.SIGTERM)
        return self.wait_for_exit()

    def kill(self) -> None:
        """A crash: nothing is stored."""
        self._process.kill()
        self._process.wait()

    def stop(self) -> None:
        self._processes.stop(self._process)
