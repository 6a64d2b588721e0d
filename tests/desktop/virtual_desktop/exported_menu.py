# SPDX-License-Identifier: GPL-3.0-or-later
"""The copy of a menu that a program hands to the panel, used as panels use it."""

from __future__ import annotations

import time
from dataclasses import dataclass
from typing import Any

from .bus import Bus, GLib

_MENU = "com.canonical.dbusmenu"
_WATCHER = "org.kde.StatusNotifierWatcher"


@dataclass(frozen=True)
class Row:
    """A row of the copy, with the rows of its submenu."""

    id: int
    text: str
    enabled: bool
    rows: list[Row]

    def child(self, text: str) -> Row:
        for row in self.rows:
            if row.text.startswith(text):
                return row
        raise AssertionError(f"no row {text!r}, only {[row.text for row in self.rows]}")


class ExportedMenu:
    """The menu of the first icon in the panel."""

    def __init__(self, session: Bus) -> None:
        self._connection = session.connection
        items = self._connection.property(
            _WATCHER, "/StatusNotifierWatcher", f"{_WATCHER}.RegisteredStatusNotifierItems"
        )
        self._service, _, path = items[0].partition("/")
        menu = "org.kde.StatusNotifierItem.Menu"
        self._path = self._connection.property(self._service, f"/{path}", menu)

    def root(self) -> Row:
        """The menu as it is when it opens."""
        self._call("AboutToShow", GLib.Variant("(i)", (0,)))
        properties = ["label", "enabled"]
        _revision, layout = self._call("GetLayout", GLib.Variant("(iias)", (0, -1, properties)))
        return _row(layout)

    def choose(self, row: Row) -> None:
        """As a click on the row."""
        now = int(time.time()) & 0xFFFFFFFF
        event = (row.id, "clicked", GLib.Variant("i", 0), now)
        self._call("Event", GLib.Variant("(isvu)", event))

    def _call(self, method: str, arguments: GLib.Variant) -> Any:
        return self._connection.call(self._service, self._path, f"{_MENU}.{method}", arguments)


def _row(layout: tuple[int, dict[str, Any], list[Any]]) -> Row:
    number, properties, children = layout
    text = properties.get("label", "").replace("_", "")  # marks the mnemonic
    enabled = properties.get("enabled", True)
    return Row(number, text, enabled, [_row(child) for child in children])
