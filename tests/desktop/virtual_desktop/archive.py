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
_RELATIVE, _WEEKDAY = 0, 2
_DAYS = ("Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday")
_CLASSES = {
    "Alarm": ["Alarm", "NSObject"],
    "NSDate": ["NSDate", "NSObject"],
    "NSMutableArray": ["NSMutableArray", "NSArray", "NSObject"],
}


@dataclass
class Alarm:
    """An alarm due at a moment of its own, to the second. Such is the weekday kind; without days
    it rings once."""

    title: str
    due: float = field(default_factory=time.time)
    sound: str = ""
    snooze_minutes: int = 5
    days: Sequence[str] = ()
    fades: bool = False

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
            "title": self.title,
            "time": _Date(self.due),
            "isTimeWithDate": False,
            "ringWithinUnits": 0,
            "isMinuteUnits": False,
            "runTime": _Date(self.due),
            "snoozeTime": self.snooze_minutes,
            "soundPath": self.sound,
            "isPlaySound": bool(self.sound),
            "shouldFadeIn": self.fades,
            "isExisInActiveAlarmList": False,
            "isDefaultAlarm": False,
            "isSpeakAlarmName": False,
            "voiceName": None,
            "shouldRepeat": False,
            "shouldUseEveryDay": False,
            "selRowNo": _WEEKDAY,
            **{f"RunOn{day}": day in self.days for day in _DAYS},
            "ShouldUseForever": False,
        }


@dataclass(frozen=True)
class _Date:
    unix_seconds: float


class _Archiver:
    """Lays objects out in the table of a keyed archive, each class and string once."""

    def __init__(self) -> None:
        self.objects: list[Any] = ["$null"]
        self._known: dict[str, UID] = {}

    def add(self, value: Any) -> UID:
        self.objects.append(value)
        return UID(len(self.objects) - 1)

    def add_class(self, name: str) -> UID:
        if name not in self._known:
            description = {"$classes": _CLASSES[name], "$classname": name}
            self._known[name] = self.add(description)
        return self._known[name]

    def encode(self, value: Any) -> Any:
        """Numbers and truths stand in the record itself, everything else in the table."""
        if value is None:
            return UID(0)
        if isinstance(value, _Date):
            date = {"NS.time": value.unix_seconds - _EPOCH_2001}
            return self.add({**date, "$class": self.add_class("NSDate")})
        if isinstance(value, str):
            return self.add(value)
        return value

    def add_alarm(self, alarm: Alarm) -> UID:
        record: dict[str, Any] = {}
        place = self.add(record)
        record.update({key: self.encode(value) for key, value in alarm.fields().items()})
        record["$class"] = self.add_class("Alarm")
        return place


def archive(alarms: Sequence[Alarm]) -> bytes:
    """A keyed archive whose root is a list of alarms."""
    archiver = _Archiver()
    root: dict[str, Any] = {}
    place = archiver.add(root)
    root["NS.objects"] = [archiver.add_alarm(alarm) for alarm in alarms]
    root["$class"] = archiver.add_class("NSMutableArray")
    contents = {
        "$version": 100000,
        "$archiver": "NSKeyedArchiver",
        "$top": {"root": place},
        "$objects": archiver.objects,
    }
    return plistlib.dumps(contents, fmt=plistlib.FMT_BINARY, sort_keys=False)


def alarms_of(data: bytes) -> list[dict[str, Any]]:
    """The records of an archived list of alarms, with dates as seconds since 1970."""
    contents = plistlib.loads(data)
    objects = contents["$objects"]

    def decode(value: Any) -> Any:
        if not isinstance(value, UID):
            return value
        found = objects[value.data]
        if found == "$null":
            return None
        if isinstance(found, dict) and "NS.time" in found:
            return found["NS.time"] + _EPOCH_2001
        return found

    root = objects[contents["$top"]["root"].data]
    records = [objects[place.data] for place in root["NS.objects"]]
    return [{key: decode(value) for key, value in r.items() if key != "$class"} for r in records]
