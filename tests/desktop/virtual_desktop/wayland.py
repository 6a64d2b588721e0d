# SPDX-License-Identifier: GPL-3.0-or-later
"""A Wayland desktop in a window of a virtual screen, so that its pointer is a real one."""

from __future__ import annotations

import json
import shutil
import tempfile
from pathlib import Path
from typing import Mapping

from .bus import Bus
from .panel import Panel, XfcePanel
from .picture import Rect, changed_rect
from .processes import Processes, find_program, wait_for
from .program import Program, User
from .screen import Screen

_SWAY = """xwayland disable
output * bg #5b7083 solid_color
"""
_WAYBAR = {"layer": "top", "position": "top", "height": 30, "modules-right": ["tray"]}
_STYLE = "* { font-size: 13px; min-height: 0; } window { background: #303030; }"


class Waybar(XfcePanel):
    """A panel for Wayland, whose status area speaks StatusNotifierItem too."""

    AREA = Rect(0, 0, 1024, 30)  # at the top of the compositor's window

    def __init__(self, processes: Processes, env: Mapping[str, str], bus: Bus) -> None:
        super().__init__(processes, env, bus)
        folder = Path(env["XDG_CONFIG_HOME"])
        (folder / "waybar.json").write_text(json.dumps(_WAYBAR), encoding="utf-8")
        (folder / "waybar.css").write_text(_STYLE, encoding="utf-8")
        files = ("-c", str(folder / "waybar.json"), "-s", str(folder / "waybar.css"))
        self._command = ("waybar", *files)


class WaylandDesktop:
    """sway with waybar on a bus of its own. Not for root, whom sway refuses."""

    def __init__(self) -> None:
        self.folder = Path(tempfile.mkdtemp(prefix="dorvane-wayland-"))
        (self.folder / "logs").mkdir()
        self.processes = Processes(self.folder / "logs")
        try:
            self._start()
        except BaseException:
            self.close()
            raise

    def _start(self) -> None:
        self._run = self.folder / "run"
        self._run.mkdir(mode=0o700)
        self.user = User(self.folder / "user")
        self.env = {
            **self.user.environment(),
            "PATH": "/usr/bin:/bin",
            "LANG": "C.UTF-8",
            "TZ": "UTC",
            "XDG_RUNTIME_DIR": str(self._run),
            "XDG_CURRENT_DESKTOP": "sway",
            "GTK_A11Y": "none",
            "NO_AT_BRIDGE": "1",
        }
        self.screen = Screen(self.processes, self.folder, self.env)
        self.session_bus = Bus(self.processes, self._run, self.env, "session")
        self.env["DBUS_SESSION_BUS_ADDRESS"] = self.session_bus.address
        self.env["DBUS_SYSTEM_BUS_ADDRESS"] = self.session_bus.address
        self._start_compositor()
        self.panel: Panel = Waybar(self.processes, self.env, self.session_bus)
        empty = self.screen.picture()
        self.panel.start()
        area = self.panel.AREA
        wait_for("the panel", lambda: changed_rect(empty, self.screen.picture(), area) == area)

    def _start_compositor(self) -> None:
        configuration = self.folder / "sway.conf"
        configuration.write_text(_SWAY, encoding="utf-8")
        env = {"DISPLAY": self.screen.display, "WLR_BACKENDS": "x11", "WLR_RENDERER": "pixman"}
        command = [find_program("sway"), "--config", str(configuration)]
        self.processes.start(command, {**self.env, **env}, "compositor")
        sockets = lambda: [path for path in self._run.glob("wayland-*") if path.suffix != ".lock"]
        self.env["WAYLAND_DISPLAY"] = wait_for("the compositor", sockets)[0].name
        wait_for("its window", lambda: len(self.screen.windows()) > 1)  # one is the root

    def start(self) -> Program:
        return Program(self.processes, self.env, self.user, "dorvane")

    def close(self) -> None:
        self.processes.stop_all()
        shutil.rmtree(self.folder, ignore_errors=True)
