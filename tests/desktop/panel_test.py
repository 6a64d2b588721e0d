# SPDX-License-Identifier: GPL-3.0-or-later
"""The icon on panels of both kinds, on panels that come late or go, and without any."""

from __future__ import annotations

import time

from desktop_case import DesktopTest, main
from virtual_desktop import VirtualDesktop, wait_for
from virtual_desktop.archive import Alarm
from virtual_desktop.panel import Tint2
from virtual_desktop.picture import changed_pixels, changed_rect


class XfcePanelTest(DesktopTest):
    def test_the_icon_comes_back_to_a_restarted_panel(self) -> None:
        self.start_in_panel()
        self.desktop.panel.stop()
        self.desktop.panel.start()
        self.desktop.panel.wait_for_icon()
        self.assertEqual(self.desktop.panel.icon_count(), 1)

    def test_the_icon_follows_light_and_dark(self) -> None:
        self.desktop.appearance.set_dark(False)
        _, icon = self.start_in_panel()
        light = self.desktop.look_at(icon)
        for dark, differs in ((True, True), (False, False)):
            self.desktop.appearance.set_dark(dark)
            changed = bool(changed_pixels(light, self.desktop.look_at(icon)))
            self.assertEqual(changed, differs, f"dark is {dark}")


class Tint2Desktop(VirtualDesktop):
    def _start_shell(self) -> None:
        super()._start_shell()
        self.panel = Tint2(self.processes, self.env, self.screen)


class Tint2Test(DesktopTest):
    kind = Tint2Desktop

    def test_the_menu_opens_under_the_icon_and_the_snooze_window_too(self) -> None:
        self.user.set_running_alarms(Alarm("Tea", time.time() + 5))
        program, icon = self.start_in_panel()
        menu = self.desktop.open_menu(icon)
        self.assertEqual(menu.rows()[0], "Active alarms:")
        menu.close()
        self.wait_for_ringing(program, seconds=8)
        window = max(self.desktop.windows_of(program), key=lambda window: window.rect.width)
        self.assertLessEqual(window.rect.x, icon.x)
        self.assertTrue(0 <= window.rect.y - self.desktop.panel.AREA.bottom <= 40)


class NoPanelTest(DesktopTest):
    has_panel = False

    def test_a_floating_clock_stands_in_until_a_panel_comes(self) -> None:
        before = self.desktop.screen.picture()
        program = self.start()
        (clock,) = wait_for("the clock", lambda: self.desktop.windows_of(program), 7.0)
        self.assertIsNotNone(changed_rect(before, self.desktop.screen.picture(), clock.rect))
        menu = self.desktop.open_menu(clock.rect)
        self.assertEqual(menu.rows()[0], "Active alarms:")
        menu.close()

        self.addCleanup(self.desktop.panel.stop)
        self.desktop.panel.start()
        self.desktop.panel.wait_for_icon()
        wait_for("the clock to go", lambda: not self.desktop.windows_of(program))


if __name__ == "__main__":
    main()
