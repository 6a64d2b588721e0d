# SPDX-License-Identifier: GPL-3.0-or-later
"""A Wayland desktop in a window of a virtual screen, so that its pointer is a real one."""

from __future__ import annotations

import json
import os
import shutil
import tempfile
from pathlib import Path
from typing import Mapping

from .bus import Bus
from .desktop import VirtualDesktop
from .panel import XfcePanel
from .picture import Rect, changed_rect
from .processes import Processes, find_program, wait_for

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


class WaylandDesktop(VirtualDesktop):
    """sway with waybar.

    sway refuses root. Of root's desktop it is the one part that somebody else runs: who that is can
    enter neither the desktop's folder nor, maybe, the one that the program was built in.
    """

    def __init__(self) -> None:
        self._run = Path(tempfile.mkdtemp(prefix="dorvane-sway-"))
        super().__init__(accessible=False)

    def _start_shell(self) -> None:
        self.env.update(XDG_CURRENT_DESKTOP="sway", GTK_A11Y="none", NO_AT_BRIDGE="1")
        configuration = self._run / "sway.conf"
        configuration.write_text(_SWAY, encoding="utf-8")
        env = {**self.env, "WLR_BACKENDS": "x11", "WLR_RENDERER": "pixman",
               "XDG_RUNTIME_DIR": str(self._run)}
        user = None if os.geteuid() else "nobody"
        if user:
            shutil.chown(self._run, user)
        command = [find_program("sway"), "--config", str(configuration)]
        self.processes.start(command, env, "compositor", user=user)
        sockets = lambda: [path for path in self._run.glob("wayland-*") if path.suffix != ".lock"]
        self.env["WAYLAND_DISPLAY"] = str(wait_for("the compositor", sockets)[0])
        wait_for("its window", lambda: len(self.screen.windows()) > 1)  # one is the root
        del self.env["DISPLAY"]
        self.panel = Waybar(self.processes, self.env, self.session_bus)
        empty, area = self.screen.picture(), self.panel.AREA
        self.panel.start()
        wait_for("the panel", lambda: changed_rect(empty, self.screen.picture(), area) == area)

    def close(self) -> None:
        super().close()
        shutil.rmtree(self._run, ignore_errors=True)
