# SPDX-License-Identifier: GPL-3.0-or-later
"""The terminal and the bus: from a timer to its ring, snooze and end, and callers of all manners."""

from __future__ import annotations

import json
import multiprocessing
import plistlib
import re
import subprocess
import time

from gi.repository import GLib

from desktop_case import DesktopTest, main
from virtual_desktop import wait_for
from virtual_desktop.archive import Alarm
from virtual_desktop.bus import Connection
from virtual_desktop.program import BUS_NAME

PATH, INTERFACE = "/com/brackenfold/Dorvane", "com.brackenfold.Dorvane1"
_FLOOD = {"title": GLib.Variant("s", "Flood"), "minutes": GLib.Variant("u", 900)}
CALLS = [(PATH, "org.freedesktop.DBus.Properties.GetAll", GLib.Variant("(s)", (INTERFACE,))),
         (PATH, "org.freedesktop.DBus.Introspectable.Introspect", None),
         (PATH + "/Checks", INTERFACE + ".Checks.Run", GLib.Variant("(b)", (False,))),
         (PATH, INTERFACE + ".ListRunning", None),
         (PATH, INTERFACE + ".ListNext", GLib.Variant("(u)", (100,))),
         (PATH, INTERFACE + ".StartStored", GLib.Variant("(s)", ("none",))),
         (PATH, INTERFACE + ".StopBreaks", None),
         (PATH, "org.freedesktop.Application.ActivateAction",
          GLib.Variant("(sava{sv})", ("create-alarm", [], {}))),
         (PATH, INTERFACE + ".AddAlarm", GLib.Variant("(a{sv})", (_FLOOD,)))]


def flood(address: str, moments: dict[str, float]) -> None:
    """Makes each of the calls until a second and a half after its moment."""
    caller = Connection(address)
    for call in CALLS:
        caller.flood(BUS_NAME, *call, moments[call[1]] + 1.5)


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
        self.assertEqual(len(self.desktop.session_bus.connection.call(
            BUS_NAME, PATH, INTERFACE + ".ListNext", GLib.Variant("(u)", (1,)))), 1)
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
        subprocess.run(["dbus-send", f"--bus={self.desktop.session_bus.address}", "--type=method_call",
                        f"--dest={BUS_NAME}", PATH, INTERFACE + ".AddTimer", "uint32:900", "string:Sent"],
                       check=True)
        wait_for("the timer of who does not wait for an answer", lambda: "Sent" in self.run_command("list"))
        self.run_command("edit", "Sent", "--title", "Soup", "--at", "7:45", "--on", "sat-sun", "--sound", "Brook")
        self.assertRegex(self.run_command("list"), r"Soup +Sat Sun\n")
        self.run_command("delete", "Soup")
        self.run_command("add", "Late", "--at", "10:00", "--date", "2020-01-01", status=1)
        self.run_command("delete", identity)
        self.assertEqual(self.state(), "idle")
        wait_for("the follower's line", lambda: "No alarms" in follower.log())
        program.stop()
        wait_for("the follower's last line", lambda: "not run" in follower.log())
        lines = [re.sub(r"^(\w+, )?[0-9:]+ ", "", line) for line in follower.log().splitlines()]
        self.assertEqual(lines, ["Tea", "Tea rings", "Tea", "Egg & soup", "No alarms",
                                 "Dorvane does not run"])

    def test_floods_keep_nothing_from_ringing_and_do_not_pile_up(self) -> None:
        """Two callers who wait for no answer, with every kind of call; then the bus answers still."""
        first = int(time.time()) + 10
        moments = {call[1]: first + 4 * i for i, call in enumerate(CALLS)}
        later = [Alarm(f"Later\n\x1b[2J{i}\x9b\u05d0", first + 90_000 + i) for i in range(2000)]
        self.user.set_running_alarms(*later, *(Alarm(name, due) for name, due in moments.items()))
        program = self.start()
        bus = self.desktop.session_bus
        wait_for("the name on the bus", lambda: bus.connection.owner(BUS_NAME))
        spawn = multiprocessing.get_context("spawn")
        floods = [spawn.Process(target=flood, args=(bus.address, moments), daemon=True) for _ in range(2)]
        for each in floods:
            each.start()
        for each in floods:
            each.join(first + 4 * len(CALLS) + 20 - time.time())
        listed = self.run_command("list")
        self.assertEqual(listed.count("\u2068"), 2000)  # each title turns its own letters round alone
        for line in listed.split("\n")[:-1]:
            self.assertRegex(line, r"^[a-z0-9]{4}  [^\x00-\x1f\x7f-\x9f]+$")  # nothing steers a terminal
        peak = program.peak_memory()
        self.assertLess(peak, 150 << 20)
        self.assertEqual(program.quit(), 0)
        journal = plistlib.loads((self.user.home / ".local/state/Dorvane/journal.plist").read_bytes())
        late = {title: int(when) / 1000 - moments[title] for when, _, what, title in
                (line.split(" ", 3) for line in journal["events"].splitlines()) if what == "rang"}
        print("seconds late:", late, "peak MiB:", peak >> 20)
        self.assertEqual(sorted(late), sorted(moments))
        self.assertLess(max(late.values()), 1.0)


if __name__ == "__main__":
    main()
