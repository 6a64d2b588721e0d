# SPDX-License-Identifier: GPL-3.0-or-later
"""What a screen reader sees: the windows, menus and controls of a program by name."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Any, Iterator, Mapping

from .bus import Bus, Connection, GLib
from .picture import Rect
from .processes import Processes, find_program, wait_for
from .screen import SCALE, Screen

_ATSPI = "org.a11y.atspi"
_REGISTRY = f"{_ATSPI}.Registry"
_PLACES = ("/usr/libexec", "/usr/lib/at-spi2-core")
_ROOT = "/org/a11y/atspi/accessible/root"
_ON_SCREEN = 0


@dataclass(frozen=True)
class Accessible:
    """One object of the accessible tree."""

    connection: Connection
    service: str
    path: str

    @property
    def name(self) -> str:
        return self._property("Name")

    @property
    def role(self) -> str:
        return self._call("Accessible.GetRoleName")

    @property
    def parent(self) -> Accessible:
        return Accessible(self.connection, *self._property("Parent"))

    @property
    def children(self) -> list[Accessible]:
        found = self._call("Accessible.GetChildren")
        return [Accessible(self.connection, *reference) for reference in found]

    @property
    def rect(self) -> Rect:
        extents = self._call("Component.GetExtents", GLib.Variant("(u)", (_ON_SCREEN,)))
        return Rect(*(SCALE * extent for extent in extents))

    def descendants(self) -> Iterator[Accessible]:
        for child in self.children:
            yield child
            yield from child.descendants()

    def _property(self, name: str) -> Any:
        return self.connection.property(self.service, self.path, f"{_ATSPI}.Accessible.{name}")

    def _call(self, method: str, arguments: GLib.Variant | None = None) -> Any:
        return self.connection.call(self.service, self.path, f"{_ATSPI}.{method}", arguments)


class Menu:
    """A pop-up menu that is open."""

    def __init__(self, screen: Screen, reader: ScreenReader, accessible: Accessible) -> None:
        self._screen, self._reader, self._accessible = screen, reader, accessible

    def rows(self) -> list[str]:
        """The texts of the rows; a separator is an empty one."""
        return [item.name for item in self._accessible.children]

    def click(self, text: str) -> None:
        """Clicks the row that begins with the text."""
        self._screen.click(self._row(text).rect.centre)

    def open_submenu(self, text: str) -> Menu:
        """Opens the row's submenu with the keyboard, from where the pointer is."""
        self._screen.move_to(self._row(text).rect.centre)
        return self._reader.focused_menu("Right")

    def close(self) -> None:
        self._screen.press_key("Escape")

    def _row(self, text: str) -> Accessible:
        found = [item for item in self._accessible.children if item.name.startswith(text)]
        assert found, f"the menu has no row {text!r}, only {self.rows()}"
        return found[0]


class ScreenReader:
    """A client of the accessibility bus. Menus are found by the focus that they announce."""

    def __init__(self, processes: Processes, env: Mapping[str, str], session: Bus,
                 screen: Screen) -> None:
        self._screen = screen
        processes.start([find_program("at-spi-bus-launcher", *_PLACES), "--launch-immediately"],
                        env, "accessibility")
        bus = "org.a11y.Bus"
        session.connection.wait_for_owner(bus)
        address = session.connection.call(bus, "/org/a11y/bus", f"{bus}.GetAddress")
        self._connection = Connection(address)
        processes.start([find_program("at-spi2-registryd", *_PLACES)],
                        {**env, "AT_SPI_BUS_ADDRESS": address}, "accessibility-registry")
        self._connection.wait_for_owner(_REGISTRY)
        self._signals: list[tuple[str, str, Any]] = []
        self._connection.subscribe(f"{_ATSPI}.Event.Object", "StateChanged", self._signals)
        self._connection.call(
            _REGISTRY, "/org/a11y/atspi/registry", f"{_REGISTRY}.RegisterEvent",
            GLib.Variant("(sass)", ("object:state-changed:focused", [], "")))

    def program(self, pid: int) -> Accessible | None:
        """The root of a program's tree."""
        programs = Accessible(self._connection, _REGISTRY, _ROOT).children
        return next((program for program in programs
                     if self._connection.process_of(program.service) == pid), None)

    def focused_menu(self, *keys: str) -> Menu:
        """The menu in which the keys put the focus on a row."""
        self._connection.dispatch()
        self._signals.clear()
        self._screen.press_key(*keys)
        item = wait_for("the focus on a row of the menu", self._focused_item, 5.0)
        return Menu(self._screen, self, item.parent)

    def _focused_item(self) -> Accessible | None:
        self._connection.dispatch()
        for sender, path, arguments in reversed(self._signals):
            item = Accessible(self._connection, sender, path)
            if tuple(arguments[:2]) == ("focused", 1) and "menu item" in item.role:
                return item
        return None
