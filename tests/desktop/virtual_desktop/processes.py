# SPDX-License-Identifier: GPL-3.0-or-later
"""Starting programs, waiting for what they do, and ending them by process id."""

from __future__ import annotations

import contextlib
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


def wait_for(what: str, probe: Callable[[], T | None], seconds: float = 10.0,
             step: float = 0.02) -> T:
    """Polls until the probe answers something true, and returns that; for longer where many others
    share the machine."""
    deadline = time.monotonic() + seconds * max(1.0, 2 * os.getloadavg()[0] / (os.cpu_count() or 1))
    while not (answer := probe()):
        if time.monotonic() > deadline:
            raise AssertionError(f"waited {seconds:g} s in vain for {what}")
        time.sleep(step)
    return answer


def find_program(name: str, *more_places: str) -> str:
    """The full path of a program that the desktop is made of."""
    found = shutil.which(name, path=os.pathsep.join(["/usr/bin", "/bin", *more_places]))
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

    def start(self, command: Sequence[str], env: Mapping[str, str], log_name: str,
              stdout: Path | None = None, pass_fds: Sequence[int] = (),
              user: str | None = None) -> subprocess.Popen[bytes]:
        """Starts a program; what it says goes to the log `log_name`, unless `stdout` takes it.

        Root can have it run as another user, who sees nothing of the desktop's folder.
        """
        log_path = self.log_path(log_name)
        with open(log_path, "ab") as log, open(stdout or log_path, "ab") as output:
            process = subprocess.Popen(
                command, env=dict(env), stdin=subprocess.DEVNULL, stdout=output, stderr=log,
                start_new_session=True, preexec_fn=_follow_parent, pass_fds=pass_fds, user=user,
                group="nogroup" if user else None, extra_groups=[] if user else None,
                cwd="/" if user else None)
        self._running.append(process)
        return process

    def log_path(self, log_name: str) -> Path:
        return self._log_folder / f"{log_name}.log"

    def stop(self, process: subprocess.Popen[bytes], seconds: float = 3.0) -> None:
        """Ends a program, by force when it does not listen, and its helpers."""
        process.terminate()
        try:
            process.wait(seconds)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
        with contextlib.suppress(ProcessLookupError):
            os.killpg(process.pid, signal.SIGKILL)
        if process in self._running:
            self._running.remove(process)

    def stop_all(self) -> None:
        """Ends everything, the last started first."""
        while self._running:
            self.stop(self._running[-1], seconds=1.0)
