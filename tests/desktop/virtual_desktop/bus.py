# SPDX-License-Identifier: GPL-3.0-or-later
"""Private message buses, and mocks of the services that a real desktop has on them."""

from __future__ import annotations

import sys
from pathlib import Path
from typing import Any, Mapping

from gi.repository import Gio, GLib

from .processes import Processes, find_program, wait_for

# No service folders: nothing of the real desktop can be started on such a bus by accident.
_CONFIGURATION = """<busconfig>
  <type>session</type>
  <listen>unix:path={socket}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


class Connection:
    """A connection to a bus, with calls whose results are plain Python values."""

    def __init__(self, address: str) -> None:
        flags = Gio.DBusConnectionFlags
        self._gio = Gio.DBusConnection.new_for_address_sync(
            address,
            flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION,
            None,
            None,
        )
        self._gio.set_exit_on_close(False)

    def call(
        self,
        service: str,
        path: str,
        method: str,
        arguments: Any = None,
        seconds: float = 5.0,
    ) -> Any:
        """Calls `interface.Method`; a result of one value comes without its tuple."""
        interface, _, member = method.rpartition(".")
        reply = self._gio.call_sync(
            service,
            path,
            interface,
            member,
            arguments,
            None,
            Gio.DBusCallFlags.NO_AUTO_START,
            int(seconds * 1000),
            None,
        ).unpack()
        return reply[0] if len(reply) == 1 else reply

    def property(self, service: str, path: str, name: str) -> Any:
        """The value of `interface.Property`."""
        interface, _, member = name.rpartition(".")
        arguments = GLib.Variant("(ss)", (interface, member))
        return self.call(service, path, "org.freedesktop.DBus.Properties.Get", arguments)

    def owner(self, service: str) -> str | None:
        """The unique name of the program behind a service name."""
        arguments = GLib.Variant("(s)", (service,))
        bus = "org.freedesktop.DBus"
        try:
            return self.call(bus, "/org/freedesktop/DBus", f"{bus}.GetNameOwner", arguments)
        except GLib.Error:
            return None

    def wait_for_owner(self, service: str, seconds: float = 10.0) -> None:
        wait_for(f"{service} on the bus", lambda: self.owner(service), seconds)

    def subscribe(self, interface: str, member: str, signals: list[tuple[str, str, Any]]) -> None:
        """Collects (sender, path, arguments) of each such signal; see dispatch()."""
        self._gio.signal_subscribe(
            None,
            interface,
            member,
            None,
            None,
            Gio.DBusSignalFlags.NONE,
            lambda _connection, sender, path, _interface, _member, arguments: signals.append(
                (sender, path, arguments.unpack())
            ),
        )

    @staticmethod
    def dispatch() -> None:
        """Delivers the signals that have arrived."""
        while GLib.MainContext.default().iteration(False):
            pass


class Bus:
    """A bus daemon of our own."""

    def __init__(
        self, processes: Processes, folder: Path, env: Mapping[str, str], name: str
    ) -> None:
        socket = folder / name
        configuration = folder / f"{name}.conf"
        configuration.write_text(_CONFIGURATION.format(socket=socket), encoding="utf-8")
        command = [find_program("dbus-daemon"), "--nofork", "--nopidfile"]
        processes.start([*command, f"--config-file={configuration}"], env, name)
        wait_for(f"the {name} bus", socket.exists)
        self.address = f"unix:path={socket}"
        self.connection = Connection(self.address)


class Mock:
    """A made-up service on a bus, run by dbusmock."""

    INTERFACE = "org.freedesktop.DBus.Mock"

    def __init__(
        self,
        processes: Processes,
        env: Mapping[str, str],
        bus: Bus,
        service: str,
        path: str,
        interface: str,
    ) -> None:
        self._connection, self._service, self._path = bus.connection, service, path
        self._own_interface = interface
        # As a session bus, whichever it is: that spares the mock the choice.
        env = {**env, "DBUS_SESSION_BUS_ADDRESS": bus.address}
        command = [sys.executable, "-m", "dbusmock", "--session", service, path, interface]
        processes.start(command, env, service)
        bus.connection.wait_for_owner(service)

    def add_method(self, name: str, takes: str, returns: str, code: str) -> None:
        """Adds or replaces a method whose answer is computed by Python code."""
        arguments = (self._own_interface, name, takes, returns, code)
        self._call("AddMethod", GLib.Variant("(sssss)", arguments))

    def emit(self, name: str, signature: str, arguments: list[GLib.Variant]) -> None:
        values = (self._own_interface, name, signature, arguments)
        self._call("EmitSignal", GLib.Variant("(sssav)", values))

    def _call(self, method: str, arguments: GLib.Variant) -> None:
        self._connection.call(
            self._service, self._path, f"{self.INTERFACE}.{method}", arguments
        )


class SleepService:
    """The part of logind that tells programs about sleep."""

    def __init__(self, processes: Processes, env: Mapping[str, str], system_bus: Bus) -> None:
        name = "org.freedesktop.login1"
        path = "/org/freedesktop/login1"
        self._mock = Mock(processes, env, system_bus, name, path, f"{name}.Manager")

    def announce(self, falling_asleep: bool) -> None:
        self._mock.emit("PrepareForSleep", "b", [GLib.Variant("b", falling_asleep)])


class AppearancePortal:
    """The desktop's light or dark setting."""

    NAMESPACE = "org.freedesktop.appearance"
    KEY = "color-scheme"

    def __init__(self, processes: Processes, env: Mapping[str, str], session_bus: Bus) -> None:
        name = "org.freedesktop.portal.Desktop"
        path = "/org/freedesktop/portal/desktop"
        interface = "org.freedesktop.portal.Settings"
        self._mock = Mock(processes, env, session_bus, name, path, interface)
        self._answer(dark=False)

    def set_dark(self, dark: bool) -> None:
        self._answer(dark)
        value = GLib.Variant("v", GLib.Variant("u", int(dark)))
        names = [GLib.Variant("s", self.NAMESPACE), GLib.Variant("s", self.KEY)]
        self._mock.emit("SettingChanged", "ssv", [*names, value])

    def _answer(self, dark: bool) -> None:
        # The portal's Read wraps its answer in a variant twice.
        answer = f"ret = dbus.UInt32({int(dark)}, variant_level=2)"
        self._mock.add_method("Read", "ss", "v", answer)
