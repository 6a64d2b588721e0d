# SPDX-License-Identifier: GPL-3.0-or-later
"""Private message buses, and mocks of the services that a real desktop has on them."""

from __future__ import annotations

import socket as sockets
import sys
import time
from pathlib import Path
from typing import Any, Mapping

from gi.repository import Gio, GLib

from .processes import Processes, find_program, wait_for

_BUS, _BUS_PATH = "org.freedesktop.DBus", "/org/freedesktop/DBus"

_CONFIGURATION = Path(__file__).parents[2] / "support/bus.conf"


class Connection:
    """A connection to a bus, with calls whose results are plain Python values."""

    def __init__(self, address: str) -> None:
        flags = Gio.DBusConnectionFlags
        self._gio = Gio.DBusConnection.new_for_address_sync(
            address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)
        self._gio.set_exit_on_close(False)

    def call(self, service: str, path: str, method: str, arguments: Any = None) -> Any:
        """Calls `interface.Method`; a result of one value comes without its tuple."""
        interface, _, member = method.rpartition(".")
        reply = self._gio.call_sync(service, path, interface, member, arguments, None,
                                    Gio.DBusCallFlags.NO_AUTO_START, 5000, None).unpack()
        return reply[0] if len(reply) == 1 else reply

    def flood(self, service: str, path: str, method: str, arguments: Any, until: float) -> None:
        """Calls as fast as the bus takes it until then, and throws the answers away."""
        interface, _, member = method.rpartition(".")
        message = Gio.DBusMessage.new_method_call(service, path, interface, member)
        message.set_serial(2)
        if arguments:
            message.set_body(arguments)
        while time.time() < until:
            for _ in range(200):
                self._gio.send_message(message, Gio.DBusSendMessageFlags.PRESERVE_SERIAL)
            self._gio.flush_sync(None)

    def property(self, service: str, path: str, name: str) -> Any:
        """The value of `interface.Property`."""
        interface, _, member = name.rpartition(".")
        return self.call(service, path, "org.freedesktop.DBus.Properties.Get",
                         GLib.Variant("(ss)", (interface, member)))

    def owner(self, service: str) -> str | None:
        """The unique name of the program behind a service name."""
        try:
            return self.call(_BUS, _BUS_PATH, f"{_BUS}.GetNameOwner",
                             GLib.Variant("(s)", (service,)))
        except GLib.Error:
            return None

    def process_of(self, service: str) -> int:
        return self.call(_BUS, _BUS_PATH, f"{_BUS}.GetConnectionUnixProcessID",
                         GLib.Variant("(s)", (service,)))

    def wait_for_owner(self, service: str) -> None:
        wait_for(f"{service} on the bus", lambda: self.owner(service))

    def subscribe(self, interface: str, member: str, signals: list[tuple[str, str, Any]]) -> None:
        """Collects (sender, path, arguments) of each such signal; see dispatch()."""
        self._gio.signal_subscribe(
            None, interface, member, None, None, Gio.DBusSignalFlags.NONE,
            lambda _bus, sender, path, _interface, _member, arguments:
                signals.append((sender, path, arguments.unpack())))

    @staticmethod
    def dispatch() -> None:
        """Delivers the signals that have arrived."""
        while GLib.MainContext.default().iteration(False):
            pass


def _answers(path: Path) -> bool:
    with sockets.socket(sockets.AF_UNIX) as client:
        return client.connect_ex(str(path)) == 0


class Bus:
    """A bus daemon of our own."""

    def __init__(self, processes: Processes, folder: Path, env: Mapping[str, str],
                 name: str) -> None:
        socket = folder / name
        self.address = f"unix:path={socket}"
        self._process = processes.start(
            [find_program("dbus-daemon"), "--nofork", "--nopidfile",
             f"--config-file={_CONFIGURATION}", f"--address={self.address}"], env, name)
        wait_for(f"the {name} bus", lambda: _answers(socket))  # it is there before it answers
        self.connection = Connection(self.address)

    def kill(self) -> None:
        self._process.kill()
        self._process.wait()


class Mock:
    """A made-up service on a bus, run by dbusmock."""

    SERVICE, PATH, INTERFACE = "", "", ""

    def __init__(self, processes: Processes, env: Mapping[str, str], bus: Bus) -> None:
        self._connection = bus.connection
        # As a session bus, whichever it is: that spares the mock the choice.
        processes.start([sys.executable, "-m", "dbusmock", "--session", self.SERVICE, self.PATH,
                         self.INTERFACE], {**env, "DBUS_SESSION_BUS_ADDRESS": bus.address},
                        self.SERVICE)
        bus.connection.wait_for_owner(self.SERVICE)

    def _mock(self, method: str, signature: str, *arguments: Any) -> None:
        self._connection.call(self.SERVICE, self.PATH, f"org.freedesktop.DBus.Mock.{method}",
                              GLib.Variant(signature, (self.INTERFACE, *arguments)))


class NotificationDaemon(Mock):
    """Somebody who can show notifications."""

    SERVICE, PATH = "org.freedesktop.Notifications", "/org/freedesktop/Notifications"
    INTERFACE = SERVICE

    def refuse(self) -> None:
        refusal = "raise dbus.exceptions.DBusException('No.', name='org.example.Refused')"
        self._mock("AddMethod", "(sssss)", "GetCapabilities", "", "as", "ret = ['sound']")
        self._mock("AddMethod", "(sssss)", "Notify", "susssasa{sv}i", "u", refusal)


class AppearancePortal(Mock):
    """The desktop's light or dark setting; to be set before it is asked for."""

    SERVICE, PATH = "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"
    INTERFACE = "org.freedesktop.portal.Settings"

    def set_dark(self, dark: bool) -> None:
        # The portal's Read wraps its answer in a variant twice.
        answer = f"ret = dbus.UInt32({int(dark)}, variant_level=2)"
        self._mock("AddMethod", "(sssss)", "Read", "ss", "v", answer)
        names = [GLib.Variant("s", name) for name in ("org.freedesktop.appearance", "color-scheme")]
        values = [*names, GLib.Variant("v", GLib.Variant("u", int(dark)))]
        self._mock("EmitSignal", "(sssav)", "SettingChanged", "ssv", values)
