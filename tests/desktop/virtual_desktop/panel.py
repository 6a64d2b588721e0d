# SPDX-License-Identifier: GPL-3.0-or-later
"""Panels with a status area, and the window manager."""

from __future__ import annotations

import subprocess
from glob import glob
from pathlib import Path
from typing import Any, Callable, Mapping

from gi.repository import GLib

from .bus import Bus
from .picture import Rect
from .processes import Processes, find_program, wait_for
from .screen import SCALE, SIZE, Screen

PANEL_HEIGHT = 30

_WATCHER, _WATCHER_PATH = "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher"

# One panel along the top: empty space, then the status area at the right end.
_XFCE_PANEL = f"""<channel name="xfce4-panel" version="1.0">
<property name="configver" type="int" value="2"/>
<property name="panels" type="array"><value type="int" value="1"/>
  <property name="panel-1" type="empty">
    <property name="position" type="string" value="p=6;x=0;y=0"/>
    <property name="position-locked" type="bool" value="true"/>
    <property name="length" type="uint" value="100"/>
    <property name="size" type="uint" value="{PANEL_HEIGHT}"/>
    <property name="plugin-ids" type="array">
      <value type="int" value="1"/><value type="int" value="2"/></property>
  </property>
</property>
<property name="plugins" type="empty">
  <property name="plugin-1" type="string" value="separator">
    <property name="expand" type="bool" value="true"/><property name="style" type="uint" value="0"/>
  </property>
  <property name="plugin-2" type="string" value="systray"/>
</property>
</channel>
"""

_TINT2 = f"""rounded = 0
background_color = #f0f0f0 100
panel_background_id = 1
panel_items = FS
panel_position = top center horizontal
panel_size = 100% {PANEL_HEIGHT}
panel_layer = top
strut_policy = follow_size
systray_icon_size = 22
systray_monitor = primary
"""


class WindowManager:
    """xfwm4, together with the settings daemon that it and the panel read."""

    def __init__(self, processes: Processes, env: Mapping[str, str], bus: Bus) -> None:
        channels = Path(env["XDG_CONFIG_HOME"], "xfce4/xfconf/xfce-perchannel-xml")
        channels.mkdir(parents=True)
        (channels / "xfce4-panel.xml").write_text(_XFCE_PANEL, encoding="utf-8")
        settings = find_program("xfconfd", *glob("/usr/lib/*/xfce4/xfconf"))
        processes.start([settings], env, "settings")
        bus.connection.wait_for_owner("org.xfce.Xfconf")
        processes.start([find_program("xfwm4"), "--compositor=off"], env, "window-manager")
        check = [find_program("xprop"), "-root", "_NET_SUPPORTING_WM_CHECK"]
        wait_for("the window manager", lambda: b"window id" in subprocess.run(
            check, env=dict(env), capture_output=True, check=False).stdout)


class Panel:
    """A panel along the top of the screen."""

    AREA = Rect(0, 0, SIZE[0], PANEL_HEIGHT * SCALE)
    is_ready: Callable[[], bool]  # to take icons
    icon_count: Callable[[], int]

    def __init__(self, processes: Processes, env: Mapping[str, str], *command: str) -> None:
        self._processes, self._env, self._command = processes, env, command
        self._process: subprocess.Popen[bytes] | None = None

    def start(self) -> None:
        command = [find_program(self._command[0]), *self._command[1:]]
        self._process = self._processes.start(command, self._env, type(self).__name__)
        wait_for("the panel", self.is_ready)

    def stop(self) -> None:
        if self._process:
            self._processes.stop(self._process)
            self._process = None

    def wait_for_icon(self) -> None:
        wait_for("an icon in the panel", lambda: self.icon_count() > 0, 5.0)


class XfcePanel(Panel):
    """xfce4-panel, whose status area speaks StatusNotifierItem."""

    def __init__(self, processes: Processes, env: Mapping[str, str], bus: Bus) -> None:
        super().__init__(processes, env, "xfce4-panel", "--disable-wm-check")
        self._connection = bus.connection

    def is_ready(self) -> bool:
        return bool(self._property("IsStatusNotifierHostRegistered"))

    def icon_count(self) -> int:
        return len(self._property("RegisteredStatusNotifierItems") or [])

    def _property(self, name: str) -> Any:
        """None while there is no watcher, or while it goes."""
        try:
            return self._connection.property(_WATCHER, _WATCHER_PATH, f"{_WATCHER}.{name}")
        except GLib.Error:
            return None


class Tint2(Panel):
    """tint2, whose status area takes windows of the programs (XEmbed)."""

    def __init__(self, processes: Processes, env: Mapping[str, str], screen: Screen) -> None:
        configuration = Path(env["XDG_CONFIG_HOME"], "tint2rc")
        configuration.write_text(_TINT2, encoding="utf-8")
        super().__init__(processes, env, "tint2", "-c", str(configuration))
        self._screen = screen

    def is_ready(self) -> bool:
        return bool(self._screen.windows("tint2"))

    def icon_count(self) -> int:
        """The icons are small windows within the panel."""
        rects = [window.rect for window in self._screen.windows()]
        return sum(8 < rect.width <= 48 and rect.bottom <= PANEL_HEIGHT for rect in rects)
