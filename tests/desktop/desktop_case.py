# SPDX-License-Identifier: GPL-3.0-or-later
"""The frame of every whole-program test."""

from __future__ import annotations

import os
import subprocess
import sys
import time
import unittest
from pathlib import Path

_SKIPPED = 77

try:
    from virtual_desktop import Missing, VirtualDesktop, wait_for
    from virtual_desktop.accessible import Accessible
    from virtual_desktop.desktop import Parts
    from virtual_desktop.picture import Rect, save_png
    from virtual_desktop.program import Program, program_path
    from virtual_desktop.sound import Recording
except ImportError as error:
    print(f"Skipped: {error} (scripts/deps test installs what is missing).")
    sys.exit(_SKIPPED)


class DesktopTest(unittest.TestCase):
    """One desktop for the tests of a class, a fresh user and recording for each test."""

    desktop: VirtualDesktop
    kind = VirtualDesktop
    has_panel = True
    _logs = ""

    @classmethod
    def setUpClass(cls) -> None:
        try:
            cls.desktop = cls.kind()
        except Missing as missing:
            raise unittest.SkipTest(str(missing)) from missing
        cls.addClassCleanup(cls.desktop.close)
        if cls.has_panel:
            cls.desktop.panel.start()

    def setUp(self) -> None:
        self.user = self.desktop.new_user()
        self.desktop.move_away()
        self.desktop.programs.clear()
        self.addCleanup(self._end_programs)

    def run(self, result: unittest.TestResult | None = None) -> unittest.TestResult | None:
        """Runs the test and, when it failed, shows what the programs said."""
        assert result is not None
        faults = len(result.errors) + len(result.failures)
        super().run(result)
        if len(result.errors) + len(result.failures) > faults:
            print(f"\n{self.id()}: the screen is in {self._output()}, the log:\n{self._logs}",
                  file=sys.stderr)
        return result

    def start(self, *arguments: str, **env: str) -> Program:
        return self.desktop.start(self.user, *arguments, **env)

    def run_command(self, *arguments: str, status: int = 0) -> str:
        """What the command prints; it needs no display."""
        environment = {**self.desktop.env, **self.user.environment(), "DISPLAY": ""}
        result = subprocess.run([program_path(), *arguments], env=environment, text=True,
                                capture_output=True, timeout=20, check=False)
        self.assertEqual(result.returncode, status, f"{arguments}: {result.stderr}")
        return result.stdout + result.stderr

    def start_in_panel(self, **env: str) -> tuple[Program, Rect]:
        """The program and where its icon is."""
        return self.desktop.start_in_panel(self.user, **env)

    def record(self) -> Recording:
        """Records what is heard until the test ends."""
        recording = self.desktop.sound.record(self.user.home / "recording")
        self.addCleanup(recording.stop)
        return recording

    def ringing(self, program: Program) -> list[Parts]:
        return self.desktop.ringing(program)

    def wait_for_ringing(self, program: Program, count: int = 1,
                         seconds: float = 5.0) -> list[Parts]:
        return wait_for(f"{count} snooze windows", lambda: windows if len(
            windows := self.ringing(program)) == count else None, seconds)

    def wait_until_quiet(self, program: Program) -> None:
        """Until no snooze window is open."""
        wait_for("the snooze windows to close", lambda: not self.ringing(program))

    def window(self, program: Program, name: str) -> Parts:
        """The window that is called so, or has a part that is, once it is up."""
        return wait_for(f"the window with {name}",
                        lambda: self.desktop.windows_with(program, name))[0]

    def click(self, part: Accessible) -> None:
        self.desktop.screen.click(part.rect.centre)

    def sleep_until(self, moment: float) -> None:
        time.sleep(max(0.0, moment - time.time()))

    def _end_programs(self) -> None:
        """Ends what the test started, and leaves the last screen and all logs behind."""
        output = self._output()
        save_png(self.desktop.screen.picture(), output / "screen.png")
        self._logs = "\n---\n".join(program.log() for program in self.desktop.programs)
        (output / "log").write_text(self._logs, encoding="utf-8")
        for program in self.desktop.programs:
            program.stop()

    def _output(self) -> Path:
        return Path(os.environ.get("DORVANE_TEST_OUTPUT", "/tmp/dorvane-tests")) / self.id()


def main() -> None:
    """Runs the tests of the calling file; skipped altogether has a status of its own."""
    result = unittest.main(module="__main__", exit=False, verbosity=2).result
    if not result.wasSuccessful():
        sys.exit(1)
    nothing_ran = bool(result.skipped) and len(result.skipped) >= result.testsRun
    sys.exit(_SKIPPED if nothing_ran else 0)
