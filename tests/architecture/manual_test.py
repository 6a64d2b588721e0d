#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Every page of the manual is in its contents, and every file and place that a page names exists."""

import re
import sys
from pathlib import Path

MANUAL = Path(__file__).resolve().parents[2] / "resources/manual"
NAMES = re.compile(r'(?:href|src|srcset)="(?!https?:|mailto:)([^"#]*)(?:#([^"]*))?"')


def faults_of(page: Path) -> list[str]:
    faults = []
    for file, place in NAMES.findall(page.read_text(encoding="utf-8")):
        target = MANUAL / file if file else page
        if not target.exists():
            faults.append(f"{page.name}: {file} does not exist")
        elif place and f'id="{place}"' not in target.read_text(encoding="utf-8"):
            faults.append(f"{page.name}: {file}#{place} does not exist")
    return faults


def main() -> int:
    pages = sorted(MANUAL.glob("*.html"))
    faults = [fault for page in pages for fault in faults_of(page)]
    faults += [f"{page.name}: {other.name} is not in the contents" for page in pages
               for other in pages if f'href="{other.name}"' not in page.read_text(encoding="utf-8")]
    print("\n".join(faults))
    return 1 if faults or not pages else 0


if __name__ == "__main__":
    sys.exit(main())
