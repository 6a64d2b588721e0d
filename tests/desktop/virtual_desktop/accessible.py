# SPDX-License-Identifier: GPL-3.0-or-later
"""What a screen reader sees: the windows, menus and controls of a program by name."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Any, Iterator, Mapping

from .bus import Bus, Connection, GLib
from .picture import Rect
from .processes import Processes, find_program, wait_for
from .screen import Screen

_REGISTRY = "org.a11y.atspi.Registry"
_ROOT = "/org/a11y/atspi/accessible/root"
_SCREEN_COORDINATES = 0


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
        references = self._call("Accessible.GetChildren")
        return [Accessible(self.connection, *reference) for reference in references]

    @property
    def rect(self) -> Rect:
        coordinates = GLib.Variant("(u)", (_SCREEN_COORDINATES,))
        return Rect(*self._call("Component.GetExtents", coordinates))

    def press(self) -> None:
        """What the object does when it is activated."""
        self._call("Action.DoAction", GLib.Variant("(i)", (0,)))

    def descendants(self) -> Iterator[Accessible]:
        for child in self.children:
            yield child
            yield from child.descendants()

    def find(self, name: str) -> Accessible | None:
        """The first descendant of that name."""
        return next((item for item in self.descendants() if item.name == name), None)

    def _property(self, name: str) -> Any:
        name = f"org.a11y.atspi.Accessible.{name}"
        return self.connection.property(self.service, self.path, name)

    def _call(self, method: str, arguments: GLib.Variant | None = None) -> Any:
        method = f"org.a11y.atspi.{method}"
        return self.connection.call(self.service, self.path, method, arguments)


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
        for item in self._accessible.children:
            if item.name.startswith(text):
                return item
        raise AssertionError(f"the menu has no row {text!r}, only {self.rows()}")


class ScreenReader:
    """A client of the accessibility bus. Menus are found by the focus that they announce."""

    def __init__(
        self, processes: Processes, env: Mapping[str, str], session: Bus, screen: Screen
    ) -> None:
        self._screen = screen
        launcher = find_program("at-spi-bus-launcher", "/usr/libexec", "/usr/lib/at-spi2-core")
        processes.start([launcher, "--launch-immediately"], env, "accessibility")
        session.connection.wait_for_owner("org.a11y.Bus")
        address = session.connection.call("org.a11y.Bus", "/org/a11y/bus",
                                          "org.a11y.Bus.GetAddress")
        self._connection = Connection(address)
        self._start_registry(processes, env, address)
        self._signals: list[tuple[str, str, Any]] = []
        self._connection.subscribe("org.a11y.atspi.Event.Object", "StateChanged", self._signals)
        self._connection.call(
            _REGISTRY,
            "/org/a11y/atspi/registry",
            f"{_REGISTRY}.RegisterEvent",
            GLib.Variant("(sass)", ("object:state-changed:focused", [], "")),
        )

    def _start_registry(
        self, processes: Processes, env: Mapping[str, str], address: str
    ) -> None:
        registry = find_program("at-spi2-registryd", "/usr/libexec", "/usr/lib/at-spi2-core")
        env = {**env, "AT_SPI_BUS_ADDRESS": address}
        processes.start([registry], env, "accessibility-registry")
        self._connection.wait_for_owner(_REGISTRY)

    def program(self, pid: int) -> Accessible | None:
        """The root of a program's tree."""
        bus = "org.freedesktop.DBus"
        for item in Accessible(self._connection, _REGISTRY, _ROOT).children:
            name = GLib.Variant("(s)", (item.service,))
            method = f"{bus}.GetConnectionUnixProcessID"
            if self._connection.call(bus, "/org/freedesktop/DBus", method, name) == pid:
                return item
        return None

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
            if arguments[0] == "focused" and arguments[1] == 1:
                item = Accessible(self._connection, sender, path)
                if "menu item" in item.role:
                    return item
        return None
