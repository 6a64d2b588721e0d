# SPDX-License-Identifier: GPL-3.0-or-later
"""Starting programs, waiting for what they do, and ending them by process id."""

from __future__ import annotations

import ctypes
import os
import shutil
import signal
import subprocess
import time
from pathlib import Path
from typing import Callable, Mapping, Sequence, TypeVar

T = TypeVar("T")

_PR_SET_PDEATHSIG = 1
_libc = ctypes.CDLL(None, use_errno=True)


class Missing(Exception):
    """This machine lacks a part of the desktop; the text says which."""


def wait_for(
    what: str, probe: Callable[[], T | None], seconds: float = 10.0, step: float = 0.02
) -> T:
    """Polls until the probe answers something true, and returns that."""
    deadline = time.monotonic() + seconds
    while True:
        answer = probe()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise AssertionError(f"waited {seconds:g} s in vain for {what}")
        time.sleep(step)


def find_program(name: str, *more_places: str) -> str:
    """The full path of a program that the desktop is made of."""
    path = os.pathsep.join(["/usr/bin", "/bin", *more_places])
    found = shutil.which(name, path=path)
    if not found:
        raise Missing(f"{name} is not installed (scripts/deps test installs it)")
    return found


def _follow_parent() -> None:
    """In the child: do not outlive the test, even if it is killed."""
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGKILL)


class Processes:
    """The programs of one desktop. Each leads a process group, so that its helpers end with it."""

    def __init__(self, log_folder: Path) -> None:
        self._log_folder = log_folder
        self._running: list[subprocess.Popen[bytes]] = []

    def start(
        self,
        command: Sequence[str],
        env: Mapping[str, str],
        log_name: str,
        stdout: Path | None = None,
        pass_fds: Sequence[int] = (),
    ) -> subprocess.Popen[bytes]:
        """Starts a program; what it says goes to the log `log_name`, unless `stdout` takes it."""
        with open(self.log_path(log_name), "ab") as log:
            output = open(stdout, "wb") if stdout else log
            try:
                process = subprocess.Popen(
                    command,
                    env=dict(env),
                    stdin=subprocess.DEVNULL,
                    stdout=output,
                    stderr=log,
                    start_new_session=True,
                    preexec_fn=_follow_parent,
                    pass_fds=pass_fds,
                )
            finally:
                if stdout:
                    output.close()
        self._running.append(process)
        return process

    def log_path(self, log_name: str) -> Path:
        return self._log_folder / f"{log_name}.log"

    def stop(self, process: subprocess.Popen[bytes], seconds: float = 3.0) -> int:
        """Ends a program, by force when it does not listen, and returns its status."""
        if process.poll() is None:
            process.terminate()
            try:
                process.wait(seconds)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        self._kill_group(process)
        if process in self._running:
            self._running.remove(process)
        return process.returncode

    def stop_all(self) -> None:
        """Ends everything, the last started first."""
        while self._running:
            self.stop(self._running[-1], seconds=1.0)

    @staticmethod
    def _kill_group(process: subprocess.Popen[bytes]) -> None:
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
