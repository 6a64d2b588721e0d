# SPDX-License-Identifier: GPL-3.0-or-later
"""The X server, the pointer and the keyboard, and the windows on the screen."""

from __future__ import annotations

import os
import subprocess
from dataclasses import dataclass
from pathlib import Path
from typing import Mapping

import numpy as np

from .picture import Picture, Rect, crop
from .processes import Processes, find_program, wait_for

SCALE = int(os.environ.get("VIRTUAL_DESKTOP_SCALE", "1"))
"""Pixels of the screen to one of the programs': 2 for pictures that are to be shown sharp."""
SIZE = (1280 * SCALE, 800 * SCALE)
_BACKGROUND = "#5b7083"


@dataclass(frozen=True)
class Window:
    """A window as the X server has it; `rect` is without the window manager's frame."""

    id: int
    rect: Rect


class Screen:
    """A virtual screen of its own, whose pixels are read straight from the server's memory."""

    def __init__(self, processes: Processes, folder: Path, env: Mapping[str, str]) -> None:
        self._xdotool = find_program("xdotool")
        frame_folder = folder / "screen"
        frame_folder.mkdir()
        read_end, write_end = os.pipe()
        self._process = processes.start(
            [find_program("Xvfb"), "-displayfd", str(write_end), "-noreset", "-screen", "0",
             f"{SIZE[0]}x{SIZE[1]}x24", "-nolisten", "tcp", "-fbdir", str(frame_folder)],
            env, "screen", pass_fds=[write_end])
        os.close(write_end)
        with open(read_end, encoding="ascii") as number:
            self.display = f":{number.readline().strip()}"
        self._env = {**env, "DISPLAY": self.display}
        frame_file = frame_folder / "Xvfb_screen0"
        wait_for("the screen's memory", lambda: frame_file.exists() and frame_file.stat().st_size)
        self._pixels = self._map(frame_file)
        subprocess.run([find_program("xsetroot"), "-solid", _BACKGROUND], env=self._env, check=True)

    def kill(self) -> None:
        self._process.kill()
        self._process.wait()

    @staticmethod
    def _map(frame_file: Path) -> Picture:
        """The live frame buffer: an X window dump with header, colour table and BGRX pixels."""
        memory = np.memmap(frame_file, np.uint8, "r")
        header = memory[:100].view(">u4")
        size, width, height, line, colours = (int(header[n]) for n in (0, 4, 5, 12, 19))
        lines = memory[size + colours * 12 :][: line * height].reshape(height, line)
        return lines[:, : width * 4].reshape(height, width, 4)

    def picture(self, rect: Rect | None = None) -> Picture:
        """What the screen shows now, whole or a part of it."""
        pixels = crop(self._pixels, rect) if rect else self._pixels
        return np.ascontiguousarray(pixels[:, :, 2::-1])

    def click(self, position: tuple[int, int]) -> None:
        self.move_to(position)
        self._do("click", "1")

    def move_to(self, position: tuple[int, int]) -> None:
        self._do("mousemove", "--sync", str(position[0]), str(position[1]))

    def press_key(self, *keys: str) -> None:
        """Presses keys named as in X, for example "Down" or "Escape"."""
        self._do("key", "--delay", "30", *keys)

    def go_to_workspace(self, number: int) -> None:
        """Counted from 0; the first time, one is added to the first."""
        self._do("set_num_desktops", "2")
        self._do("set_desktop", str(number))

    def windows(self, title: str = "", pid: int | None = None) -> list[Window]:
        """The visible windows whose title matches and that belong to the process."""
        owner = [] if pid is None else ["--pid", str(pid)]
        found = self._do("search", "--onlyvisible", "--all", *owner, "--name", title, check=False)
        return [window for line in found.split() if (window := self._window(int(line)))]

    def _window(self, window_id: int) -> Window | None:
        geometry = self._do("getwindowgeometry", "--shell", str(window_id), check=False)
        fields = dict(line.split("=") for line in geometry.split())
        if "WIDTH" not in fields:  # gone since it was listed
            return None
        rect = Rect(*(int(fields[name]) for name in ("X", "Y", "WIDTH", "HEIGHT")))
        return Window(window_id, rect)

    def _do(self, *arguments: str, check: bool = True) -> str:
        """Runs the pointer, keyboard and window tool."""
        return subprocess.run([self._xdotool, *arguments], env=self._env, check=check,
                              capture_output=True, text=True, timeout=20).stdout
