// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AlarmArchive.h"

#include "core/KeyedArchiver.h"
#include "core/KeyedUnarchiver.h"
#include "platform/PropertyList.h"

#include <QHash>

namespace dorvane {

namespace {

constexpr QLatin1String alarmClass("Alarm");

// Existing preferences hold these keys, so they keep their spelling. A 32-bit snooze time is what
// the record has always had; the field is wider.

void encode(const Alarm& alarm, KeyedArchiver& coder) {
    coder.encodeObject(alarm.title(), QStringLiteral("title"));
    coder.encodeObject(alarm.storedTime(), QStringLiteral("time"));
    coder.encodeBool(alarm.isTimeWithDate(), QStringLiteral("isTimeWithDate"));
    coder.encodeInteger(alarm.ringWithinUnits(), QStringLiteral("ringWithinUnits"));
    coder.encodeBool(alarm.isMinuteUnits(), QStringLiteral("isMinuteUnits"));
    coder.encodeObject(alarm.storedRunTime(), QStringLiteral("runTime"));
    coder.encodeInt(static_cast<qint32>(alarm.snoozeTime()), QStringLiteral("snoozeTime"));
    coder.encodeObject(alarm.soundPath(), QStringLiteral("soundPath"));
    coder.encodeBool(alarm.isPlaySound(), QStringLiteral("isPlaySound"));
    coder.encodeBool(alarm.shouldFadeIn(), QStringLiteral("shouldFadeIn"));
    coder.encodeBool(alarm.isExisInActiveAlarmList(), QStringLiteral("isExisInActiveAlarmList"));
    coder.encodeBool(alarm.isDefaultAlarm(), QStringLiteral("isDefaultAlarm"));
    coder.encodeBool(alarm.isSpeakAlarmName(), QStringLiteral("isSpeakAlarmName"));
    coder.encodeObject(alarm.voiceName(), QStringLiteral("voiceName"));
    coder.encodeBool(alarm.shouldRepeat(), QStringLiteral("shouldRepeat"));
    coder.encodeBool(alarm.shouldUseEveryDay(), QStringLiteral("shouldUseEveryDay"));
    coder.encodeInteger(alarm.selRowNo(), QStringLiteral("selRowNo"));
    coder.encodeBool(alarm.isRunOnMon(), QStringLiteral("RunOnMonday"));
    coder.encodeBool(alarm.isRunOnTue(), QStringLiteral("RunOnTuesday"));
    coder.encodeBool(alarm.isRunOnWed(), QStringLiteral("RunOnWednesday"));
    coder.encodeBool(alarm.isRunOnThu(), QStringLiteral("RunOnThursday"));
    coder.encodeBool(alarm.isRunOnFri(), QStringLiteral("RunOnFriday"));
    coder.encodeBool(alarm.isRunOnSat(), QStringLiteral("RunOnSaturday"));
    coder.encodeBool(alarm.isRunOnSun(), QStringLiteral("RunOnSunday"));
    coder.encodeBool(alarm.shouldUseForever(), QStringLiteral("ShouldUseForever"));
}

void decode(Alarm& alarm, const KeyedUnarchiver::Object& coder) {
    alarm.setTitle(coder.decodeString(QStringLiteral("title")));
    alarm.setTime(coder.decodeDate(QStringLiteral("time")));
    alarm.setIsTimeWithDate(coder.decodeBool(QStringLiteral("isTimeWithDate")));
    alarm.setRingWithinUnits(coder.decodeInteger(QStringLiteral("ringWithinUnits")));
    alarm.setIsMinuteUnits(coder.decodeBool(QStringLiteral("isMinuteUnits")));
    alarm.setRunTime(coder.decodeDate(QStringLiteral("runTime")));
    alarm.setSnoozeTime(coder.decodeInt(QStringLiteral("snoozeTime")));
    alarm.setSoundPath(coder.decodeString(QStringLiteral("soundPath")));
    alarm.setIsPlaySound(coder.decodeBool(QStringLiteral("isPlaySound")));
    alarm.setShouldFadeIn(coder.decodeBool(QStringLiteral("shouldFadeIn")));
    alarm.setIsExisInActiveAlarmList(coder.decodeBool(QStringLiteral("isExisInActiveAlarmList")));
    alarm.setIsDefaultAlarm(coder.decodeBool(QStringLiteral("isDefaultAlarm")));
    alarm.setIsSpeakAlarmName(coder.decodeBool(QStringLiteral("isSpeakAlarmName")));
    alarm.setVoiceName(coder.decodeString(QStringLiteral("voiceName")));
    alarm.setShouldRepeat(coder.decodeBool(QStringLiteral("shouldRepeat")));
    alarm.setShouldUseEveryDay(coder.decodeBool(QStringLiteral("shouldUseEveryDay")));
    alarm.setSelRowNo(coder.decodeInteger(QStringLiteral("selRowNo")));
    alarm.setIsRunOnMon(coder.decodeBool(QStringLiteral("RunOnMonday")));
    alarm.setIsRunOnTue(coder.decodeBool(QStringLiteral("RunOnTuesday")));
    alarm.setIsRunOnWed(coder.decodeBool(QStringLiteral("RunOnWednesday")));
    alarm.setIsRunOnThu(coder.decodeBool(QStringLiteral("RunOnThursday")));
    alarm.setIsRunOnFri(coder.decodeBool(QStringLiteral("RunOnFriday")));
    alarm.setIsRunOnSat(coder.decodeBool(QStringLiteral("RunOnSaturday")));
    alarm.setIsRunOnSun(coder.decodeBool(QStringLiteral("RunOnSunday")));
    alarm.setShouldUseForever(coder.decodeBool(QStringLiteral("ShouldUseForever")));
}

} // namespace

AlarmArchive::AlarmArchive(const PropertyListFormat& format, const RunLoop& runLoop)
    : m_format(format), m_runLoop(runLoop) {}

QByteArray AlarmArchive::archivedData(const std::vector<AlarmPtr>& alarms) const {
    std::vector<KeyedArchiver::Object> objects;
    objects.reserve(alarms.size());
    for (const AlarmPtr& alarm : alarms)
        objects.push_back({.identity = alarm.get(),
                           .classes = {alarmClass, QStringLiteral("NSObject")},
                           .encode = [&alarm](KeyedArchiver& coder) { encode(*alarm, coder); }});
    return m_format.binary(KeyedArchiver::archivedList(objects)).value_or(QByteArray());
}

AlarmArchive::Unarchived AlarmArchive::unarchive(const QByteArray& data) const {
    const QVariant archive = m_format.parse(data).value_or(QVariant());
    const KeyedUnarchiver::List list = KeyedUnarchiver(archive).decodeList(alarmClass);
    Unarchived unarchived{.alarms = {}, .isComplete = list.isComplete};
    QHash<quint64, AlarmPtr> decoded; // an alarm that is listed twice is one alarm
    for (const KeyedUnarchiver::Object& object : list.objects) {
        AlarmPtr& alarm = decoded[object.identity()];
        if (!alarm) {
            alarm = Alarm::create(m_runLoop);
            decode(*alarm, object);
        }
        unarchived.alarms.push_back(alarm);
    }
    return unarchived;
}

} // namespace dorvane
