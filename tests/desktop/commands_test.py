# SPDX-License-Identifier: GPL-3.0-or-later
"""The terminal and the bus: from a timer to its ring, snooze and end, and callers of all manners."""

from __future__ import annotations

import json
import re
import time

from gi.repository import Gio, GLib

from desktop_case import DesktopTest, main
from virtual_desktop import wait_for
from virtual_desktop.archive import Alarm
from virtual_desktop.program import BUS_NAME

PATH, INTERFACE = "/com/brackenfold/Dorvane", "com.brackenfold.Dorvane1"


class CommandsTest(DesktopTest):
    has_panel = False

    def state(self) -> str:
        return json.loads(self.run_command("status", "--json"))["class"]

    def test_a_timer_from_the_terminal_to_its_end(self) -> None:
        self.run_command("status", status=3)
        self.user.set_running_alarms(Alarm("Tea", time.time() + 4, snooze_minutes=5))
        program = self.start()
        wait_for("the name on the bus", lambda: self.desktop.session_bus.connection.owner(BUS_NAME))
        follower = self.start("status", "--follow")
        identity, when, _, title = self.run_command("timer", "25", "Egg & soup").split("  ", 3)
        self.assertEqual(title.strip(), "Egg & soup")
        self.assertIn(",", when)
        wait_for("the ring", lambda: self.state() == "ringing")
        self.wait_for_ringing(program)
        self.run_command("snooze", "Egg & soup", status=1)
        self.assertEqual(self.run_command("snooze", "--ringing"), "Tea is snoozed\n")
        wait_for("the follower's line", lambda: follower.log().count("Tea") == 3)
        self.assertEqual(self.ringing(program), [])
        self.run_command("clear", "Tea")
        wait_for("the follower's line", lambda: "Egg" in follower.log())  # not joined with the next
        self.assertEqual([alarm["id"] for alarm in json.loads(self.run_command("list", "--json"))],
                         [identity])
        self.run_command("add", "Late", "--at", "10:00", "--date", "2020-01-01", status=1)
        self.run_command("add", "Late", "--in", "soon", status=2)
        self.run_command("delete", identity)
        self.assertEqual(self.state(), "idle")
        wait_for("the follower's line", lambda: "No alarms" in follower.log())
        program.stop()
        wait_for("the follower's last line", lambda: "not run" in follower.log())
        lines = [re.sub(r"^(\w+, )?[0-9:]+ ", "", line) for line in follower.log().splitlines()]
        self.assertEqual(lines, ["Tea", "Tea rings", "Tea", "Egg & soup", "No alarms",
                                 "Dorvane does not run"])

    def test_callers_that_flood_and_vanish_keep_nothing_from_ringing(self) -> None:
        due = time.time() + 6
        self.user.set_running_alarms(Alarm("Train", due))
        program = self.start()
        wait_for("the name on the bus", lambda: self.desktop.session_bus.connection.owner(BUS_NAME))
        caller = Gio.DBusConnection.new_for_address_sync(
            self.desktop.session_bus.address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
            Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        number = 0
        while time.time() < due - 0.5:
            call = Gio.DBusMessage.new_method_call(BUS_NAME, PATH, INTERFACE, "AddAlarm")
            alarm = {"title": GLib.Variant("s", f"{number % 200}"), "minutes": GLib.Variant("u", 900)}
            call.set_body(GLib.Variant("(a{sv})", (alarm,)))
            caller.send_message(call, Gio.DBusSendMessageFlags.NONE)
            number += 1
        caller.close_sync(None)
        self.wait_for_ringing(program, seconds=4.0)
        self.assertLess(time.time() - due, 1.5, "it rang late")


if __name__ == "__main__":
    main()
