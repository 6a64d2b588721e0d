# SPDX-License-Identifier: GPL-3.0-or-later
"""The terminal and the bus: from a timer to its ring, snooze and end."""

from __future__ import annotations

import json
import re
import signal
import time

from desktop_case import DesktopTest, main
from virtual_desktop import wait_for
from virtual_desktop.archive import Alarm
from virtual_desktop.program import BUS_NAME


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
        program.send(signal.SIGSTOP)
        caller = self.start("timer", "5", "Given up")
        time.sleep(0.5)  # until it has asked
        caller.kill()
        program.send(signal.SIGCONT)
        self.assertNotIn("Given up", self.run_command("list"))
        self.run_command("delete", identity)
        self.assertEqual(self.state(), "idle")
        wait_for("the follower's line", lambda: "No alarms" in follower.log())
        program.stop()
        wait_for("the follower's last line", lambda: "not run" in follower.log())
        lines = [re.sub(r"^(\w+, )?[0-9:]+ ", "", line) for line in follower.log().splitlines()]
        self.assertEqual(lines, ["Tea", "Tea rings", "Tea", "Egg & soup", "No alarms",
                                 "Dorvane does not run"])


if __name__ == "__main__":
    main()
