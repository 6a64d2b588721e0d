# SPDX-License-Identifier: GPL-3.0-or-later
"""Pictures of the screen as numpy arrays of height x width x RGB bytes."""

from __future__ import annotations

import struct
import zlib
from dataclasses import dataclass
from pathlib import Path

import numpy as np
from numpy.typing import NDArray

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

    def grown(self, by: int) -> Rect:
        return Rect(self.x - by, self.y - by, self.width + 2 * by, self.height + 2 * by)


def crop(picture: Picture, rect: Rect) -> Picture:
    return picture[max(rect.y, 0) : rect.bottom, max(rect.x, 0) : rect.right]


def scale(picture: Picture, factor: int) -> Picture:
    """Enlarged with hard pixels, for a closer look."""
    return picture.repeat(factor, axis=0).repeat(factor, axis=1)


def changed_rect(before: Picture, after: Picture, within: Rect) -> Rect | None:
    """The smallest rectangle of the given one that holds everything that changed."""
    changed = (crop(before, within) != crop(after, within)).any(axis=2)
    rows, columns = np.nonzero(changed.any(axis=1))[0], np.nonzero(changed.any(axis=0))[0]
    if rows.size == 0:
        return None
    return Rect(
        within.x + int(columns[0]),
        within.y + int(rows[0]),
        int(columns[-1] - columns[0]) + 1,
        int(rows[-1] - rows[0]) + 1,
    )


def changed_pixels(before: Picture, after: Picture) -> int:
    """How many pixels differ by more than a rounding error."""
    difference = np.abs(before.astype(np.int16) - after.astype(np.int16)).max(axis=2)
    return int((difference > 16).sum())


def save_png(picture: Picture, path: Path) -> None:
    height, width, _ = picture.shape
    lines = np.zeros((height, 1 + width * 3), np.uint8)  # each line is led by its filter, none
    lines[:, 1:] = picture.reshape(height, width * 3)

    def chunk(kind: bytes, data: bytes) -> bytes:
        checksum = zlib.crc32(kind + data)
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", checksum)

    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(
        b"\x89PNG\r\n\x1a\n"
        + chunk(b"IHDR", header)
        + chunk(b"IDAT", zlib.compress(lines.tobytes(), 6))
        + chunk(b"IEND", b"")
    )
