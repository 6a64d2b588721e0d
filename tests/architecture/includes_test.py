#!/usr/bin/python3 -B
# SPDX-License-Identifier: GPL-3.0-or-later
"""Reads the #include lines for what the linker cannot see.

A folder uses only what its arrow reaches, only app/ names concrete platform classes, core/ stays
on Qt Core, and time comes from the run loop alone.
"""

from __future__ import annotations

import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

# What each folder may use directly; the rest follows.
ARROWS = {
    "platform": set(),
    "core": {"platform"},
    "sounds": {"core"},
    "firing": {"core", "sounds"},
    "editor": {"core", "sounds", "firing"},
    "breaks": {"core", "sounds", "firing"},
    "menubar": {"core", "firing", "editor", "breaks"},
    "relocate": {"platform"},
    "platform/linux": {"platform"},
}
FOLDERS = [*ARROWS, "app"]

# Qt's own headers that a folder on Qt Core alone may use are those that Qt Core installs.
QT_CORE = Path("/usr/include/x86_64-linux-gnu/qt6/QtCore")
CLOCKS = re.compile(
    r"\bQTimer\b|\bQBasicTimer\b|startTimer\(|singleShot\(|currentDateTime|currentDate\(|"
    r"currentTime\(\)\s*\.|QTime::currentTime|currentMSecsSinceEpoch|currentSecsSinceEpoch|"
    r"system_clock::now|steady_clock::now|\bgettimeofday\b|\bstd::time\("
)
CLOCK_OWNER = "platform/linux/QtRunLoop"


def reach(folder: str) -> set[str]:
    """The folder itself and everything its arrows lead to."""
    found = {folder}
    for other in ARROWS[folder]:
        found |= reach(other)
    return found


def folder_of(path: str) -> str | None:
    """The folder of the house a path below the root lies in, the longest name first."""
    for folder in sorted(FOLDERS, key=len, reverse=True):
        if path.startswith(folder + "/"):
            return folder
    return None


def faults_of(file: Path) -> list[str]:
    name = str(file.relative_to(ROOT))
    folder = folder_of(name)
    text = file.read_text()
    faults = []
    for line, include in enumerate(text.splitlines(), 1):
        if match := re.match(r'#include "([^"]+)"', include):
            target = folder_of(match[1])
            if target and folder != "app" and target not in reach(folder):
                faults.append(f"{name}:{line}: {folder} may not use {match[1]}")
        if match := re.match(r"#include <(Q\w+)>", include):
            on_core = folder in ("core", "platform")
            if on_core and QT_CORE.is_dir() and not (QT_CORE / match[1]).exists():
                faults.append(f"{name}:{line}: {folder} stays on Qt Core, not {match[1]}")
    code = re.sub(r"//.*", "", text)
    if not name.startswith(CLOCK_OWNER):
        faults += [f"{name}: {word} is the run loop's alone" for word in set(CLOCKS.findall(code))]
    return faults


def main() -> int:
    files = [f for folder in FOLDERS for f in (ROOT / folder).glob("*.*")
             if f.suffix in (".cpp", ".h")]
    files += (ROOT / "platform/linux/sound").glob("*.*")
    faults = [fault for file in files if file.suffix in (".cpp", ".h") for fault in faults_of(file)]
    print("\n".join(faults))
    print(f"{len(files)} files, {len(faults)} faults")
    return 1 if faults or not files else 0


if __name__ == "__main__":
    sys.exit(main())
