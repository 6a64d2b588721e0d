# SPDX-License-Identifier: GPL-3.0-or-later
"""A whole desktop for one test: screen, panel, buses, sound card, and nothing of the real one."""

from .desktop import VirtualDesktop
from .processes import Missing, wait_for

__all__ = ["Missing", "VirtualDesktop", "wait_for"]
