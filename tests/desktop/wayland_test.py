# SPDX-License-Identifier: GPL-3.0-or-later
"""The icon on Wayland, where only the panel can open a menu at it."""

from __future__ import annotations

import time
import unittest

from desktop_case import main
from virtual_desktop import Missing, wait_for
from virtual_desktop.picture import Picture, Rect, changed_rect
from virtual_desktop.wayland import WaylandDesktop


class WaybarTest(unittest.TestCase):
    def setUp(self) -> None:
        try:
            self.desktop = WaylandDesktop()
        except Missing as missing:
            raise unittest.SkipTest(str(missing)) from missing
        self.addCleanup(self.desktop.close)

    def test_a_left_click_opens_the_menu_and_a_row_acts(self) -> None:
        screen, panel = self.desktop.screen, self.desktop.panel.AREA
        screen.move_to((400, 500))
        before = screen.picture()
        program = self.desktop.start(self.desktop.new_user())
        self.desktop.panel.wait_for_icon()
        icon = wait_for("the icon", lambda: changed_rect(before, screen.picture(), panel))

        screen.move_to((500, panel.y + 10))  # the compositor paints the pointer
        time.sleep(0.3)
        before = screen.picture()
        screen.click(icon.centre)
        menu = self._settled(before, Rect(0, panel.bottom, panel.width, 730))
        screen.click((menu.x + menu.width // 2, menu.bottom - 20))  # "Quit"
        self.assertEqual(program.wait_for_exit(), 0)

    def _settled(self, before: Picture, within: Rect) -> Rect:
        """Where something has opened, once it has stopped growing."""
        sizes: list[Rect | None] = [None]

        def grown() -> bool:
            time.sleep(0.3)
            sizes.append(changed_rect(before, self.desktop.screen.picture(), within))
            return sizes[-1] is not None and sizes[-1] == sizes[-2]

        wait_for("the menu", grown)
        assert sizes[-1]
        return sizes[-1]


if __name__ == "__main__":
    main()
