# SPDX-License-Identifier: GPL-3.0-or-later
"""The X server, the pointer and the keyboard, and the windows on the screen."""

from __future__ import annotations

import mmap
import os
import struct
import subprocess
from dataclasses import dataclass
from pathlib import Path
from typing import Mapping

import numpy as np

from .picture import Picture, Rect
from .processes import Processes, find_program, wait_for

SIZE = (1280, 800)
_BACKGROUND = "#5b7083"


@dataclass(frozen=True)
class Window:
    """A window as the X server has it; `rect` is without the window manager's frame."""

    id: int
    title: str
    rect: Rect


class Screen:
    """A virtual screen of its own, whose pixels are read straight from the server's memory."""

    def __init__(self, processes: Processes, folder: Path, env: Mapping[str, str]) -> None:
        self._xdotool = find_program("xdotool")
        frame_folder = folder / "screen"
        frame_folder.mkdir()
        read_end, write_end = os.pipe()
        command = [find_program("Xvfb"), "-displayfd", str(write_end), "-noreset"]
        command += ["-screen", "0", f"{SIZE[0]}x{SIZE[1]}x24", "-nolisten", "tcp"]
        command += ["-fbdir", str(frame_folder)]
        processes.start(command, env, "screen", pass_fds=[write_end])
        os.close(write_end)
        with open(read_end, encoding="ascii") as number:
            self.display = f":{number.readline().strip()}"
        self._env = {**env, "DISPLAY": self.display}
        frame_file = frame_folder / "Xvfb_screen0"
        wait_for("the screen's memory", lambda: frame_file.exists() and frame_file.stat().st_size)
        self._pixels = self._map(frame_file)
        setroot = [find_program("xsetroot"), "-solid", _BACKGROUND]
        subprocess.run(setroot, env=self._env, check=True, timeout=20)

    @staticmethod
    def _map(frame_file: Path) -> Picture:
        """The live frame buffer: an X window dump with header, colour table and BGRX pixels."""
        with open(frame_file, "rb") as file:
            memory = mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)
        header = struct.unpack(">25I", memory[:100])
        size, width, height = header[0], header[4], header[5]
        line, colours = header[12], header[19]
        offset = size + colours * 12
        lines = np.frombuffer(memory, np.uint8, line * height, offset).reshape(height, line)
        return lines[:, : width * 4].reshape(height, width, 4)

    def picture(self, rect: Rect | None = None) -> Picture:
        """What the screen shows now, whole or a part of it."""
        pixels = self._pixels
        if rect:
            pixels = pixels[max(rect.y, 0) : rect.bottom, max(rect.x, 0) : rect.right]
        return np.ascontiguousarray(pixels[:, :, 2::-1])

    def click(self, position: tuple[int, int], button: int = 1) -> None:
        self.move_to(position)
        self._do("click", str(button))

    def move_to(self, position: tuple[int, int]) -> None:
        self._do("mousemove", "--sync", str(position[0]), str(position[1]))

    def press_key(self, *keys: str) -> None:
        """Presses keys named as in X, for example "Down" or "Escape"."""
        self._do("key", "--delay", "30", *keys)

    def windows(self, title: str = "", pid: int | None = None) -> list[Window]:
        """The visible windows whose title matches and that belong to the process."""
        command = ["search", "--onlyvisible", "--all"]
        if pid is not None:
            command += ["--pid", str(pid)]
        found = self._do(*command, "--name", title, check=False)
        return [window for line in found.split() if (window := self._window(int(line)))]

    def _window(self, window_id: int) -> Window | None:
        geometry = self._do("getwindowgeometry", "--shell", str(window_id), check=False)
        fields = dict(line.split("=") for line in geometry.split())
        if "WIDTH" not in fields:  # gone since it was listed
            return None
        rect = Rect(*(int(fields[name]) for name in ("X", "Y", "WIDTH", "HEIGHT")))
        title = self._do("getwindowname", str(window_id), check=False).rstrip("\n")
        return Window(window_id, title, rect)

    def _do(self, *arguments: str, check: bool = True) -> str:
        """Runs the pointer, keyboard and window tool."""
        return subprocess.run(
            [self._xdotool, *arguments],
            env=self._env,
            check=check,
            capture_output=True,
            text=True,
            timeout=20,
        ).stdout
