# SPDX-License-Identifier: GPL-3.0-or-later
"""The copy of a menu that a program hands to the panel, used as panels use it."""

from __future__ import annotations

import time
from dataclasses import dataclass
from typing import Any

from .bus import Bus, GLib

_WATCHER = "org.kde.StatusNotifierWatcher"


@dataclass(frozen=True)
class Row:
    """A row of the copy, with the rows of its submenu."""

    id: int
    text: str
    enabled: bool
    rows: list[Row]

    def child(self, text: str) -> Row:
        return next(row for row in self.rows if row.text.startswith(text))


class ExportedMenu:
    """The menu of the first icon in the panel."""

    def __init__(self, session: Bus) -> None:
        self._connection = session.connection
        items = self._connection.property(
            _WATCHER, "/StatusNotifierWatcher", f"{_WATCHER}.RegisteredStatusNotifierItems")
        self._service, _, path = items[0].partition("/")
        self._path = self._connection.property(
            self._service, f"/{path}", "org.kde.StatusNotifierItem.Menu")

    def root(self) -> Row:
        """The menu as it is when it opens."""
        self._call("AboutToShow", "(i)", 0)
        return _row(self._call("GetLayout", "(iias)", 0, -1, ["label", "enabled"])[1])

    def choose(self, row: Row) -> None:
        """As a click on the row."""
        self._call("Event", "(isvu)", row.id, "clicked", GLib.Variant("i", 0), int(time.time()))

    def _call(self, method: str, signature: str, *arguments: Any) -> Any:
        return self._connection.call(self._service, self._path, f"com.canonical.dbusmenu.{method}",
                                     GLib.Variant(signature, arguments))


def _row(layout: tuple[int, dict[str, Any], list[Any]]) -> Row:
    number, properties, children = layout
    text = properties.get("label", "").replace("_", "")  # marks the mnemonic
    return Row(number, text, properties.get("enabled", True), [_row(child) for child in children])
