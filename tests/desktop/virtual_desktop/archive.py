# SPDX-License-Identifier: GPL-3.0-or-later
"""Alarms as they stand in the preferences: keyed archives, written and read independently of the
program so that a fault in its own reader and writer cannot cancel out."""

from __future__ import annotations

import plistlib
import time
from dataclasses import dataclass, field
from plistlib import UID
from typing import Any, Sequence

_EPOCH_2001 = 978307200
RELATIVE, DATED, WEEKLY = range(3)
_DAYS = ("Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday")


@dataclass
class Alarm:
    """An alarm due at a moment of its own, to the second. Such is the weekday kind; without days
    it rings once. A relative one counts its minutes from the program's start."""

    title: str
    due: float = field(default_factory=time.time)
    sound: str = ""
    snooze_minutes: int = 5
    days: Sequence[str] = ()
    kind: int = WEEKLY
    minutes: int = 0
    repeats: bool = False

    @classmethod
    def overdue(cls, title: str, seconds: float, **rest: Any) -> Alarm:
        """Rings at the program's first tick, with its due time that far in the past.

        A weekday alarm of today only, once: at the start the day is used up, no other is left,
        and the alarm keeps its time.
        """
        today = time.strftime("%A", time.gmtime())
        return cls(title, time.time() - seconds, days=[today], **rest)

    def fields(self) -> dict[str, Any]:
        """The archive's keys and values in the order in which they are written."""
        return {
            "title": self.title, "time": self.due, "isTimeWithDate": self.kind == DATED,
            "ringWithinUnits": self.minutes, "isMinuteUnits": True, "runTime": self.due,
            "snoozeTime": self.snooze_minutes, "soundPath": self.sound,
            "isPlaySound": bool(self.sound), "shouldFadeIn": False,
            "isExisInActiveAlarmList": False, "isDefaultAlarm": False, "isSpeakAlarmName": False,
            "voiceName": None, "shouldRepeat": self.repeats, "shouldUseEveryDay": self.repeats,
            "selRowNo": self.kind, **{f"RunOn{day}": day in self.days for day in _DAYS},
            "ShouldUseForever": self.repeats,
        }


def archive(alarms: Sequence[Alarm]) -> bytes:
    """A keyed archive whose root is a list of alarms, with each class in its table once."""
    names = (("Alarm",), ("NSDate",), ("NSMutableArray", "NSArray"))
    alarm_class, date_class, list_class = UID(2), UID(3), UID(4)
    objects: list[Any] = ["$null", {}, *({"$classes": [*each, "NSObject"], "$classname": each[0]}
                                         for each in names)]

    def add(value: Any) -> UID:
        objects.append(value)
        return UID(len(objects) - 1)

    def encode(key: str, value: Any) -> Any:
        """Numbers and truths stand in the record itself, everything else in the table."""
        if key in ("time", "runTime"):
            return add({"NS.time": value - _EPOCH_2001, "$class": date_class})
        return UID(0) if value is None else add(value) if isinstance(value, str) else value

    objects[1] = {"NS.objects": [
        add({**{key: encode(key, value) for key, value in alarm.fields().items()},
             "$class": alarm_class}) for alarm in alarms], "$class": list_class}
    contents = {"$version": 100000, "$archiver": "NSKeyedArchiver", "$top": {"root": UID(1)},
                "$objects": objects}
    return plistlib.dumps(contents, fmt=plistlib.FMT_BINARY, sort_keys=False)


def alarms_of(data: bytes) -> list[dict[str, Any]]:
    """The records of an archived list of alarms, with dates as seconds since 1970."""
    contents = plistlib.loads(data)
    objects = contents["$objects"]

    def decode(value: Any) -> Any:
        found = objects[value.data] if isinstance(value, UID) else value
        if isinstance(found, dict) and "NS.time" in found:
            return found["NS.time"] + _EPOCH_2001
        return None if found == "$null" else found

    root = objects[contents["$top"]["root"].data]
    return [{key: decode(value) for key, value in objects[place.data].items() if key != "$class"}
            for place in root["NS.objects"]]
