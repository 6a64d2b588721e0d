#!/usr/bin/python3 -B
# SPDX-License-Identifier: GPL-3.0-or-later
"""Reads the #include lines for what the linker cannot see.

A folder uses only what its arrow reaches, only app/ names concrete platform classes, core/ stays
on Qt Core, what becomes a loadable module is included by nobody else and includes nothing that the
program links, and time comes from the run loop alone.
"""

from __future__ import annotations

import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

# What each folder may use directly; the rest follows.
ARROWS = {
    "platform": set(),
    "checks": {"core"},
    "cli": {"core"},
    "control": {"core"},
    "core": {"platform"},
    "journal": {"core"},
    "overview": {"core", "widgets"},
    "sounds": {"core", "widgets"},
    "firing": {"core", "sounds"},
    "editor": {"core", "sounds", "firing"},
    "breaks": {"core", "sounds", "firing"},
    "menubar": {"core", "firing", "editor", "breaks"},
    "relocate": {"platform"},
    "widgets": {"platform"},
    "platform/linux": {"platform"},
}
FOLDERS = [*ARROWS, "app"]
MODULE = re.compile(r"platform/linux/\w+/module/")
# What the program and a module agree on, all of it without code.
MODULE_FACE = re.compile(r"platform/linux/\w+/\w+(Module|Types)\.h$")

# Qt's own headers that a folder on Qt Core alone may use are those that Qt Core installs.
QT_CORE = Path("/usr/include/x86_64-linux-gnu/qt6/QtCore")
CLOCKS = re.compile(
    r"\bQTimer\b|\bQBasicTimer\b|startTimer\(|singleShot\(|currentDateTime|currentDate\(|"
    r"currentTime\(\)\s*\.|QTime::currentTime|currentMSecsSinceEpoch|currentSecsSinceEpoch|"
    r"system_clock::now|steady_clock::now|\bgettimeofday\b|\bstd::time\("
)
CLOCK_OWNER = "platform/linux/session/QtRunLoop"


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


def crosses_a_module(name: str, include: str) -> bool:
    """Whether a module and what the program links meet elsewhere than in the module's face."""
    own, other = MODULE.match(name), MODULE.match(include)
    if other:
        return not own or own[0] != other[0]
    return bool(own) and include.startswith("platform/linux/") and not MODULE_FACE.match(include)


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
            if crosses_a_module(name, match[1]):
                faults.append(f"{name}:{line}: {match[1]} lies beyond the module's border")
        if match := re.match(r"#include <(Q\w+)>", include):
            on_core = folder in ("cli", "control", "core", "platform")
            if on_core and QT_CORE.is_dir() and not (QT_CORE / match[1]).exists():
                faults.append(f"{name}:{line}: {folder} stays on Qt Core, not {match[1]}")
    code = re.sub(r"//.*", "", text)
    if not name.startswith(CLOCK_OWNER):
        faults += [f"{name}: {word} is the run loop's alone" for word in set(CLOCKS.findall(code))]
    return faults


def main() -> int:
    tops = {folder.split("/")[0] for folder in FOLDERS}
    files = [f for top in sorted(tops) for f in (ROOT / top).rglob("*.*")
             if f.suffix in (".cpp", ".h")]
    faults = [fault for file in files for fault in faults_of(file)]
    print("\n".join(faults))
    print(f"{len(files)} files, {len(faults)} faults")
    return 1 if faults or not files else 0


if __name__ == "__main__":
    sys.exit(main())
