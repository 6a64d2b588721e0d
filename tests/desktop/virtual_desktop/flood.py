# SPDX-License-Identifier: GPL-3.0-or-later
"""A caller on a bus that asks as fast as the socket takes it, and throws the answers away."""

from __future__ import annotations

import multiprocessing
import os
import socket
import time
from typing import Sequence

from gi.repository import Gio, GLib

Call = tuple[str, str, str, GLib.Variant | None]  # path, interface, method, arguments


def _message(name: str, call: Call, serial: int) -> bytes:
    path, interface, method, arguments = call
    message = Gio.DBusMessage.new_method_call(name, path, interface, method)
    message.set_serial(serial)
    if arguments is not None:
        message.set_body(arguments)
    return bytes(message.to_blob(Gio.DBusCapabilityFlags.NONE))


def _join(address: str) -> socket.socket:
    path = dict(part.split("=", 1) for part in address.split(":", 1)[1].split(","))["path"]
    bus = socket.socket(socket.AF_UNIX)
    bus.connect(path)
    bus.sendall(b"\0AUTH EXTERNAL " + str(os.getuid()).encode().hex().encode() + b"\r\n")
    bus.recv(1000)
    daemon = "org.freedesktop.DBus"
    bus.sendall(b"BEGIN\r\n" + _message(daemon, ("/org/freedesktop/DBus", daemon, "Hello", None), 1))
    bus.recv(1000)
    bus.setblocking(False)
    return bus


def _flood(address: str, name: str, calls: Sequence[Call], moments: Sequence[float]) -> None:
    bus = _join(address)
    for call, until in zip(calls, moments):
        text = _message(name, call, 2) * 200
        rest = text
        while time.time() < until:
            try:
                rest = rest[bus.send(rest):] or text
            except BlockingIOError:
                time.sleep(0.0005)
            try:
                while bus.recv(1 << 20):
                    pass
            except BlockingIOError:
                pass
        bus.setblocking(True)
        bus.sendall(rest)  # or the next call would begin inside this one
        bus.setblocking(False)


def start_flood(address: str, name: str, calls: Sequence[Call],
                moments: Sequence[float]) -> multiprocessing.Process:
    """Makes each of the calls until its moment, one after the other; a process of its own."""
    process = multiprocessing.Process(target=_flood, args=(address, name, calls, moments), daemon=True)
    process.start()
    return process
