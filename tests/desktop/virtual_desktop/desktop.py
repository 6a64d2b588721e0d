# SPDX-License-Identifier: GPL-3.0-or-later
"""The parts put together."""

from __future__ import annotations

import os
import shutil
import tempfile
import time
from functools import cached_property
from pathlib import Path
from typing import Any

from .accessible import Accessible, Menu, ScreenReader
from .bus import AppearancePortal, Bus, GLib
from .panel import Panel, WindowManager, XfcePanel
from .picture import Picture, Rect, changed_rect
from .processes import Processes, wait_for
from .program import Program, User
from .screen import SCALE, SIZE, Screen, Window
from .sound import SoundServer

_AWAY = (10, SIZE[1] - 10)  # where the pointer touches nothing


# What is in a window, by name; the window itself is in it.
Parts = dict[str, Accessible]


class VirtualDesktop:
    """A screen with a window manager, buses, and a sound card; the panel is started by the test.

    Everything lives in a folder of its own below the temporary folder. close() ends what was
    started and removes the folder. `theme` is the one of the panel and of window frames.
    """

    def __init__(self, accessible: bool = True, theme: str = "Adwaita") -> None:
        self.folder = Path(tempfile.mkdtemp(prefix="dorvane-desktop-"))
        logs = self.folder / "logs"
        logs.mkdir()
        self.processes = Processes(logs)
        try:
            self._start(accessible, theme)
        except BaseException:
            self.close()
            raise

    def _start(self, accessible: bool, theme: str) -> None:
        run = self.folder / "run"
        run.mkdir(mode=0o700)
        desk = User(self.folder / "desk")
        self.env = {**desk.environment(), "PATH": "/usr/bin:/bin", "LANG": "C.UTF-8", "TZ": "UTC",
                    "USER": os.environ.get("USER", "user"), "XDG_RUNTIME_DIR": str(run),
                    "XDG_CURRENT_DESKTOP": "XFCE", "GTK_MODULES": "", "GTK_THEME": theme,
                    "GDK_SCALE": str(SCALE), "QT_SCALE_FACTOR": str(SCALE)}
        self.screen = Screen(self.processes, self.folder, self.env)
        self.env["DISPLAY"] = self.screen.display
        self.session_bus = Bus(self.processes, run, self.env, "session")
        system_bus = Bus(self.processes, run, self.env, "system")
        self.env["DBUS_SESSION_BUS_ADDRESS"] = self.session_bus.address
        self.env["DBUS_SYSTEM_BUS_ADDRESS"] = system_bus.address
        self.sound = SoundServer(self.processes, run, self.env)
        self.env["PULSE_SERVER"] = self.sound.address
        self._users = 0
        self.programs: list[Program] = []
        if accessible:
            self.reader = ScreenReader(self.processes, self.env, self.session_bus, self.screen)
            self.env["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        self._start_shell()

    def _start_shell(self) -> None:
        WindowManager(self.processes, self.env, self.session_bus)
        self.panel: Panel = XfcePanel(self.processes, self.env, self.session_bus)

    def close(self) -> None:
        self.processes.stop_all()
        shutil.rmtree(self.folder, ignore_errors=True)

    @cached_property
    def appearance(self) -> AppearancePortal:
        return AppearancePortal(self.processes, self.env, self.session_bus)

    def new_user(self) -> User:
        self._users += 1
        return User(self.folder / f"user{self._users}")

    def start(self, user: User, *arguments: str, **env: str) -> Program:
        """Starts Dorvane without waiting for anything; `env` overrides variables."""
        log = f"dorvane{len(self.programs) + 1}"
        program = Program(self.processes, {**self.env, **env}, user, log, *arguments)
        self.programs.append(program)
        return program

    def start_in_panel(self, user: User, **env: str) -> tuple[Program, Rect]:
        """Starts Dorvane and finds its icon, by what appears in the panel."""
        # The panel takes a moment to drop the icon of a program that has just ended.
        wait_for("the old icon to go", lambda: self.panel.icon_count() == 0)
        before = self._settled_picture()
        program = self.start(user, **env)
        self.panel.wait_for_icon()
        return program, wait_for("the icon on the screen", lambda: self._change_since(before))

    def _change_since(self, before: Picture) -> Rect | None:
        return changed_rect(before, self.screen.picture(), self.panel.AREA)

    def _settled_picture(self) -> Picture:
        """The screen once the panel has stopped changing."""
        picture = self.screen.picture()
        for _ in range(20):
            time.sleep(0.3)
            if self._change_since(picture) is None:
                break
            picture = self.screen.picture()
        return picture

    def open_menu(self, icon: Rect) -> Menu:
        """Clicks the icon."""
        self.screen.click(icon.centre)
        return self.opened_menu()

    def opened_menu(self) -> Menu:
        """The menu that has just popped up."""
        return self.reader.focused_menu("Down")

    def choose_in_panel(self, *texts: str) -> None:
        """Chooses a row of the menu's copy in the panel, in which nothing depends on how long a
        pointer rests; `texts` lead to it."""
        bus, watcher, item = self.session_bus.connection, "org.kde.StatusNotifierWatcher", "org.kde.StatusNotifierItem"
        (items,) = bus.property(watcher, "/StatusNotifierWatcher", f"{watcher}.RegisteredStatusNotifierItems")
        service, _, path = items.partition("/")
        menu = bus.property(service, f"/{path}", f"{item}.Menu")

        def call(method: str, signature: str, *arguments: Any) -> Any:
            return bus.call(service, menu, f"com.canonical.dbusmenu.{method}", GLib.Variant(signature, arguments))

        call("AboutToShow", "(i)", 0)
        row = call("GetLayout", "(iias)", 0, -1, ["label"])[1]
        for text in texts:  # "_" marks the mnemonic
            row = next(each for each in row[2] if each[1].get("label", "").replace("_", "").startswith(text))
        call("Event", "(isvu)", row[0], "clicked", GLib.Variant("i", 0), int(time.time()))

    def windows_of(self, program: Program, title: str = "") -> list[Window]:
        return self.screen.windows(title, program.pid)

    def look_at(self, icon: Rect) -> Picture:
        """The icon as it is without the pointer over it."""
        self.move_away()
        time.sleep(0.3)  # for the panel's own highlighting to fade
        return self.screen.picture(icon)

    def move_away(self) -> None:
        self.screen.move_to(_AWAY)

    def windows_with(self, program: Program, *names: str) -> list[Parts]:
        """The windows that have parts of all these names."""
        for _ in range(5):
            try:
                root = self.reader.program(program.pid)
                windows = [{part.name: part for part in (top, *top.descendants())}
                           for top in (root.children if root else [])]
                return [parts for parts in windows if parts.keys() >= set(names)]
            except GLib.Error:  # one closed while it was being looked at
                time.sleep(0.05)
        return []

    def ringing(self, program: Program) -> list[Parts]:
        """The snooze windows that are open."""
        return self.windows_with(program, "Snooze", "Clear")
