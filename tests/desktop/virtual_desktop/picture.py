# SPDX-License-Identifier: GPL-3.0-or-later
"""Pictures of the screen as numpy arrays of height x width x RGB bytes."""

from __future__ import annotations

import subprocess
from dataclasses import dataclass
from pathlib import Path

import numpy as np
from numpy.typing import NDArray

from .processes import find_program

Picture = NDArray[np.uint8]


@dataclass(frozen=True)
class Rect:
    """A rectangle on the screen, in pixels."""

    x: int
    y: int
    width: int
    height: int

    @property
    def right(self) -> int:
        return self.x + self.width

    @property
    def bottom(self) -> int:
        return self.y + self.height

    @property
    def centre(self) -> tuple[int, int]:
        return self.x + self.width // 2, self.y + self.height // 2


def crop(picture: Picture, rect: Rect) -> Picture:
    return picture[max(rect.y, 0) : rect.bottom, max(rect.x, 0) : rect.right]


def changed_rect(before: Picture, after: Picture, within: Rect) -> Rect | None:
    """The smallest rectangle of the given one that holds everything that changed."""
    rows, columns = np.nonzero((crop(before, within) != crop(after, within)).any(axis=2))
    if rows.size == 0:
        return None
    x, y = int(columns.min()), int(rows.min())
    return Rect(within.x + x, within.y + y, int(columns.max()) - x + 1, int(rows.max()) - y + 1)


def changed_pixels(before: Picture, after: Picture) -> int:
    """How many pixels differ by more than a rounding error."""
    return int((np.abs(before.astype(np.int16) - after).max(axis=2) > 16).sum())


def save_png(picture: Picture, path: Path) -> None:
    path.parent.mkdir(parents=True, exist_ok=True)
    size = f"{picture.shape[1]}x{picture.shape[0]}"
    subprocess.run([find_program("ffmpeg"), "-loglevel", "error", "-y", "-f", "rawvideo",
                    "-pix_fmt", "rgb24", "-s", size, "-i", "-", "-frames:v", "1", str(path)],
                   input=picture.tobytes(), check=True)
