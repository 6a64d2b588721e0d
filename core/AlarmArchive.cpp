// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AlarmArchive.h"

#include "core/KeyedArchiver.h"
#include "core/KeyedUnarchiver.h"
#include "platform/PropertyList.h"

#include <QHash>

#include <type_traits>
#include <vector>

namespace dorvane {

namespace {

constexpr QLatin1String alarmClass("Alarm");

using Object = KeyedUnarchiver::Object;

// One value of the record: the key that existing preferences know it by, how it is written and how
// it is read.
struct Field {
    QString key;
    void (*encode)(const Alarm& alarm, KeyedArchiver& coder, const QString& key);
    void (*decode)(Alarm& alarm, Object& coder, const QString& key);
    // Without it nobody knows when the alarm would ring.
    bool decidesDue = false;
};

template<typename Value>
void encode(KeyedArchiver& coder, const Value& value, const QString& key) {
    if constexpr (std::is_same_v<Value, bool>)
        coder.encodeBool(value, key);
    else if constexpr (std::is_same_v<Value, qint64>)
        coder.encodeInteger(value, key);
    else
        coder.encodeObject(value, key);
}

template<typename Value>
Value decode(Object& coder, const QString& key) {
    if constexpr (std::is_same_v<Value, bool>)
        return coder.decodeBool(key);
    else if constexpr (std::is_same_v<Value, qint64>)
        return coder.decodeInteger(key);
    else if constexpr (std::is_same_v<Value, QDateTime>)
        return coder.decodeDate(key);
    else
        return coder.decodeString(key);
}

template<auto get, auto set>
Field field(const QString& key, bool decidesDue = false) {
    using Value = std::remove_cvref_t<std::invoke_result_t<decltype(get), const Alarm&>>;
    return {key,
            [](const Alarm& alarm, KeyedArchiver& coder, const QString& name) {
                encode<Value>(coder, (alarm.*get)(), name);
            },
            [](Alarm& alarm, Object& coder, const QString& name) {
                (alarm.*set)(decode<Value>(coder, name));
            },
            decidesDue};
}

// The record has always had a snooze time of 32 bits; the field is wider.
Field snoozeTimeField() {
    return {QStringLiteral("snoozeTime"),
            [](const Alarm& alarm, KeyedArchiver& coder, const QString& key) {
                coder.encodeInt(static_cast<qint32>(alarm.snoozeTime()), key);
            },
            [](Alarm& alarm, Object& coder, const QString& key) {
                alarm.setSnoozeTime(coder.decodeInt(key));
            }};
}

// Keys of our own, which other readers pass over, and which most alarms are without.
template<bool (Alarm::*get)() const, void (Alarm::*set)(bool)>
Field ownFlag(const QString& key) {
    Field own = field<get, set>(key);
    own.encode = [](const Alarm& alarm, KeyedArchiver& coder, const QString& name) {
        if ((alarm.*get)())
            coder.encodeBool(true, name);
    };
    return own;
}

Field wishedTimeField() {
    static const QString format = QStringLiteral("HH:mm");
    return {QStringLiteral("wishedTimeOfDay"),
            [](const Alarm& alarm, KeyedArchiver& coder, const QString& key) {
                if (alarm.wishedTime().isValid())
                    coder.encodeObject(alarm.wishedTime().toString(format), key);
            },
            [](Alarm& alarm, Object& coder, const QString& key) {
                alarm.setWishedTime(QTime::fromString(coder.decodeString(key), format));
            }};
}

// In the order in which the format's own archiver would write them.
const std::vector<Field>& fields() {
    using A = Alarm;
    static const std::vector<Field> all{
        field<&A::title, &A::setTitle>(QStringLiteral("title")),
        field<&A::storedTime, &A::setTime>(QStringLiteral("time")),
        field<&A::isTimeWithDate, &A::setIsTimeWithDate>(QStringLiteral("isTimeWithDate"), true),
        field<&A::ringWithinUnits, &A::setRingWithinUnits>(QStringLiteral("ringWithinUnits"), true),
        field<&A::isMinuteUnits, &A::setIsMinuteUnits>(QStringLiteral("isMinuteUnits"), true),
        field<&A::storedRunTime, &A::setRunTime>(QStringLiteral("runTime")),
        snoozeTimeField(),
        field<&A::soundPath, &A::setSoundPath>(QStringLiteral("soundPath")),
        field<&A::isPlaySound, &A::setIsPlaySound>(QStringLiteral("isPlaySound")),
        field<&A::shouldFadeIn, &A::setShouldFadeIn>(QStringLiteral("shouldFadeIn")),
        field<&A::isExisInActiveAlarmList, &A::setIsExisInActiveAlarmList>(
            QStringLiteral("isExisInActiveAlarmList")),
        field<&A::isDefaultAlarm, &A::setIsDefaultAlarm>(QStringLiteral("isDefaultAlarm")),
        field<&A::isSpeakAlarmName, &A::setIsSpeakAlarmName>(QStringLiteral("isSpeakAlarmName")),
        field<&A::voiceName, &A::setVoiceName>(QStringLiteral("voiceName")),
        field<&A::shouldRepeat, &A::setShouldRepeat>(QStringLiteral("shouldRepeat")),
        field<&A::shouldUseEveryDay, &A::setShouldUseEveryDay>(QStringLiteral("shouldUseEveryDay")),
        field<&A::selRowNo, &A::setSelRowNo>(QStringLiteral("selRowNo"), true),
        field<&A::isRunOnMon, &A::setIsRunOnMon>(QStringLiteral("RunOnMonday")),
        field<&A::isRunOnTue, &A::setIsRunOnTue>(QStringLiteral("RunOnTuesday")),
        field<&A::isRunOnWed, &A::setIsRunOnWed>(QStringLiteral("RunOnWednesday")),
        field<&A::isRunOnThu, &A::setIsRunOnThu>(QStringLiteral("RunOnThursday")),
        field<&A::isRunOnFri, &A::setIsRunOnFri>(QStringLiteral("RunOnFriday")),
        field<&A::isRunOnSat, &A::setIsRunOnSat>(QStringLiteral("RunOnSaturday")),
        field<&A::isRunOnSun, &A::setIsRunOnSun>(QStringLiteral("RunOnSunday")),
        field<&A::shouldUseForever, &A::setShouldUseForever>(QStringLiteral("ShouldUseForever")),
        wishedTimeField(),
        ownFlag<&A::ringsUntilAnswered, &A::setRingsUntilAnswered>(
            QStringLiteral("ringsUntilAnswered")),
        ownFlag<&A::startsSoftly, &A::setStartsSoftly>(QStringLiteral("startsSoftly")),
    };
    return all;
}

const QSet<QString>& fieldKeys() {
    static const QSet<QString> keys = [] {
        QSet<QString> all;
        for (const Field& field : fields())
            all.insert(field.key);
        return all;
    }();
    return keys;
}

AlarmPtr alarmOf(Object& record) {
    AlarmPtr alarm = Alarm::create();
    bool hasDue = true;
    for (const Field& field : fields()) {
        const int unreadableBefore = record.unreadable();
        field.decode(*alarm, record, field.key);
        hasDue = hasDue && !(field.decidesDue && record.unreadable() > unreadableBefore);
    }
    alarm->setOtherValues(record.decodeOthers(fieldKeys()));
    if (!hasDue)
        alarm->forgetDue();
    return alarm;
}

} // namespace

AlarmArchive::AlarmArchive(const PropertyListFormat& format) : m_format(format) {}

QByteArray AlarmArchive::archivedData(const std::vector<AlarmPtr>& alarms) const {
    std::vector<KeyedArchiver::Object> objects;
    objects.reserve(alarms.size());
    for (const AlarmPtr& alarm : alarms)
        objects.push_back({.identity = alarm.get(),
                           .classes = {alarmClass, QStringLiteral("NSObject")},
                           .encode = [&alarm](KeyedArchiver& coder) {
                               for (const Field& field : fields())
                                   field.encode(*alarm, coder, field.key);
                               const QVariantMap& others = alarm->otherValues();
                               for (auto each = others.cbegin(); each != others.cend(); ++each)
                                   coder.encodeOther(each.value(), each.key());
                           }});
    return m_format.binary(KeyedArchiver::archivedList(objects)).value_or(QByteArray());
}

AlarmArchive::Unarchived AlarmArchive::unarchive(const QByteArray& data) const {
    const QVariant archive = m_format.parse(data).value_or(QVariant());
    const KeyedUnarchiver::List list = KeyedUnarchiver(archive).decodeList(alarmClass);
    Unarchived unarchived{.alarms = {}, .isComplete = list.isComplete};
    QHash<quint64, AlarmPtr> decoded; // an alarm that is listed twice is one alarm
    for (KeyedUnarchiver::Object object : list.objects) {
        AlarmPtr& alarm = decoded[object.identity()];
        if (!alarm) {
            alarm = alarmOf(object);
            unarchived.isComplete = unarchived.isComplete && object.unreadable() == 0;
        }
        unarchived.alarms.push_back(alarm);
    }
    return unarchived;
}

} // namespace dorvane
