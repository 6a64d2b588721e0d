#!/usr/bin/python3 -B
# SPDX-License-Identifier: GPL-3.0-or-later
"""Text that comes from outside is shown as it stands.

Qt reads what looks like rich text as such, and a picture in it opens a file on the main thread.
Tool tips and the second text of a message go through escapedText(); labels whose text is set in
the code have a text format, and so have the messages.
"""

from __future__ import annotations

import re
import sys
import xml.etree.ElementTree as Xml
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
FOLDERS = ("app", "breaks", "editor", "firing", "journal", "menubar", "platform", "relocate", "sounds")
# An icon's own tool tip is plain text until whoever shows it calls one of these.
CALLS = re.compile(
    r"(?<!m_item\.)(?<!m_notifier->)(?<!::)(?<!void )"
    r"\b(setToolTip|setInformativeText|setWhatsThis|showText)\((?!(?:\w+, )?escapedText\()")
MADE = re.compile(r"(?:new|make_unique<)\s*(QLabel|QMessageBox)\b")


def faults_in_code(name: str, code: str) -> list[str]:
    code = re.sub(r"\(\s+", "(", re.sub(r"//.*", "", code))
    faults = [f"{name}: {match[1]}() without escapedText()" for match in CALLS.finditer(code)]
    if len(MADE.findall(code)) > code.count("setTextFormat("):
        faults.append(f"{name}: a label or message without a text format")
    if "ToolTipRole" in code:
        faults.append(f"{name}: a tool tip that is not setToolTip()'s")
    return faults


def faults_in_form(form: Path, code: str) -> list[str]:
    return [f"{form.name}: {widget.get('name')} has no text format"
            for widget in Xml.parse(form).iter("widget")
            if widget.get("class") == "QLabel"
            and not any(entry.get("name") == "textFormat" for entry in widget)
            and re.search(rf"\b{widget.get('name')}->setText\(", code)]


def texts_without_german(form: Path, catalogue: str) -> list[str]:
    context = catalogue.partition(f"<name>{form.stem}</name>")[2].partition("</context>")[0]
    known = [message.text for message in Xml.fromstring(f"<c>{context}</c>").iter("source")]
    return [f"{form.name}: {text.text!r} is not in the catalogue" for text in Xml.parse(form).iter("string")
            if text.get("notr") != "true" and text.text not in known]


def main() -> int:
    sources = {str(file.relative_to(ROOT)): file.read_text()
               for folder in FOLDERS for file in (ROOT / folder).rglob("*.*") if file.suffix in (".cpp", ".h")}
    forms = list((ROOT / "resources/forms").glob("*.ui"))
    code = "".join(sources.values())
    faults = [fault for name, text in sources.items() for fault in faults_in_code(name, text)]
    faults += [fault for form in forms for fault in faults_in_form(form, code)]
    catalogue = (ROOT / "resources/translations/dorvane_de.ts").read_text()
    faults += [fault for form in forms for fault in texts_without_german(form, catalogue)]
    print("\n".join(faults))
    print(f"{len(sources)} files, {len(forms)} forms, {len(faults)} faults")
    return 1 if faults or not sources or not forms else 0


if __name__ == "__main__":
    sys.exit(main())
