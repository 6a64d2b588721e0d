// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/AlarmRequest.h"

#include "core/AlarmBuilding.h"
#include "core/AlarmKeys.h"
#include "core/IntervalRule.h"
#include "core/WrittenDate.h"
#include "core/WrittenTime.h"
#include "core/WrittenWeekdays.h"

#include <algorithm>
#include <array>
#include <limits>

namespace dorvane {

namespace {

// What was said, and nothing that was not.
struct Draft {
    std::optional<QString> title, sound, voice;
    std::optional<qint64> seconds, minutes, hours, snooze;
    std::optional<QTime> time;
    std::optional<QString> date; // which day it means depends on the time
    std::optional<WeekdaySet> weekdays;
    std::optional<bool> repeat, everyDay, everyWeek, fade, store;
};

Outcome refusal(const char* name, const QString& key, const QString& reason) {
    return Refusal{QString::fromLatin1(name), QStringLiteral("\"%1\": %2").arg(key, reason)};
}

Outcome wrongType(const QString& key, const char* wanted) {
    return refusal("WrongType", key, QStringLiteral("must be ") + QString::fromLatin1(wanted));
}

Outcome invalid(const QString& key, const QString& reason) {
    return refusal("InvalidValue", key, reason);
}

bool isWholeNumber(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return true;
    default:
        return false;
    }
}

// A number too large for the type is as much too large as the largest.
template<std::optional<qint64> Draft::*Field>
Outcome readNumber(const QString& key, const QVariant& value, Draft& draft) {
    if (!isWholeNumber(value))
        return wrongType(key, "a whole number");
    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    draft.*Field = value.typeId() == QMetaType::ULongLong
                       ? qint64(std::min<quint64>(value.toULongLong(), quint64(largest)))
                       : value.toLongLong();
    return std::nullopt;
}

template<std::optional<bool> Draft::*Field>
Outcome readFlag(const QString& key, const QVariant& value, Draft& draft) {
    if (value.typeId() != QMetaType::Bool)
        return wrongType(key, "true or false");
    draft.*Field = value.toBool();
    return std::nullopt;
}

bool isControl(QChar character) {
    return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

template<std::optional<QString> Draft::*Field, qsizetype longest>
Outcome readText(const QString& key, const QVariant& value, Draft& draft) {
    if (value.typeId() != QMetaType::QString)
        return wrongType(key, "a text");
    const QString text = value.toString();
    if (text.size() > longest)
        return refusal("TooLong", key,
                       QStringLiteral("is %1 characters long; %2 is the most")
                           .arg(QString::number(text.size()), QString::number(longest)));
    if (std::any_of(text.begin(), text.end(), isControl))
        return invalid(key, QStringLiteral("must be one line of plain text"));
    draft.*Field = text;
    return std::nullopt;
}

Outcome readTime(const QString& key, const QVariant& value, Draft& draft) {
    if (value.typeId() != QMetaType::QString)
        return wrongType(key, "a text such as 07:30");
    draft.time = timeRead(value.toString(), {}, false).time;
    if (!draft.time)
        return invalid(key, QStringLiteral("must be a time of day from 00:00 to 23:59"));
    return std::nullopt;
}

Outcome readWeekdays(const QString& key, const QVariant& value, Draft& draft) {
    if (value.typeId() != QMetaType::QStringList)
        return wrongType(key, "a list of texts such as mon");
    draft.weekdays = weekdaysRead(value.toStringList().join(u','), QLocale::system());
    if (!draft.weekdays)
        return invalid(key, QStringLiteral("must name days, such as mon and thu, or mon-fri"));
    return std::nullopt;
}

struct Key {
    QString name;
    Outcome (*read)(const QString& key, const QVariant& value, Draft& draft);
};

const std::array keys{
    Key{key::title, readText<&Draft::title, longestTitle>},
    Key{key::seconds, readNumber<&Draft::seconds>},
    Key{key::minutes, readNumber<&Draft::minutes>},
    Key{key::hours, readNumber<&Draft::hours>},
    Key{key::repeat, readFlag<&Draft::repeat>},
    Key{key::time, readTime},
    Key{key::date, readText<&Draft::date, longestName>},
    Key{key::everyDay, readFlag<&Draft::everyDay>},
    Key{key::weekdays, readWeekdays},
    Key{key::everyWeek, readFlag<&Draft::everyWeek>},
    Key{key::sound, readText<&Draft::sound, longestName>},
    Key{key::fade, readFlag<&Draft::fade>},
    Key{key::voice, readText<&Draft::voice, longestName>},
    Key{key::snooze, readNumber<&Draft::snooze>},
    Key{key::store, readFlag<&Draft::store>},
};

Outcome readInto(Draft& draft, const QVariantMap& description) {
    for (auto entry = description.begin(); entry != description.end(); ++entry) {
        const auto known = std::find_if(keys.begin(), keys.end(),
                                        [&](const Key& key) { return key.name == entry.key(); });
        if (known == keys.end())
            return refusal("UnknownKey", entry.key().left(longestTitle),
                           QStringLiteral("is no key of an alarm"));
        if (Outcome outcome = known->read(entry.key(), entry.value(), draft))
            return outcome;
    }
    return std::nullopt;
}

// What was said that says nothing of an alarm of this kind.
Outcome conflictIn(const Draft& draft) {
    const bool isRelative = draft.seconds || draft.minutes || draft.hours;
    const bool isWeekly = draft.weekdays.has_value();
    const bool isOdd = draft.seconds.value_or(0) % 60 != 0; // which the next time would not be
    const QString unit = draft.hours ? key::hours : draft.minutes ? key::minutes : key::seconds;
    struct Rule {
        bool isBroken;
        QString key;
        QString other;
    };
    const std::array rules{
        Rule{draft.minutes && draft.hours, key::hours, key::minutes},
        Rule{draft.seconds && (draft.minutes || draft.hours), key::seconds, unit},
        Rule{isRelative && draft.time, key::time, unit},
        Rule{isRelative && draft.date, key::date, unit},
        Rule{isRelative && draft.everyDay, key::everyDay, unit},
        Rule{isRelative && isWeekly, key::weekdays, unit},
        Rule{isOdd && draft.repeat.value_or(false), key::repeat, unit},
        Rule{isOdd && draft.store.value_or(false), key::store, unit},
        Rule{!isRelative && draft.repeat, key::repeat, key::time},
        Rule{isWeekly && draft.date, key::date, key::weekdays},
        Rule{isWeekly && draft.everyDay, key::everyDay, key::weekdays},
    };
    for (const Rule& rule : rules)
        if (rule.isBroken)
            return refusal("Conflict", rule.key,
                           QStringLiteral("does not go with \"%1\"").arg(rule.other));
    if (draft.everyWeek && !isWeekly)
        return refusal("Conflict", key::everyWeek, QStringLiteral("needs \"weekdays\""));
    return std::nullopt;
}

Outcome missingIn(const Draft& draft) {
    if (!draft.title)
        return refusal("MissingKey", key::title, QStringLiteral("is needed"));
    if (draft.title->trimmed().isEmpty())
        return invalid(key::title, QStringLiteral("must not be empty"));
    if (!draft.seconds && !draft.minutes && !draft.hours && !draft.time)
        return refusal("MissingKey", key::time,
                       QStringLiteral("or \"minutes\" or \"hours\" is needed"));
    return std::nullopt;
}

// An alarm counts whole minutes: it began to before it was set.
Outcome takeSeconds(qint64 seconds, AlarmRequest& request) {
    constexpr qint64 minute = 60;
    if (seconds < 1 || seconds > longestInterval(true) * minute)
        return invalid(
            key::seconds,
            QStringLiteral("must be from 1 to %1 (a year)").arg(longestInterval(true) * minute));
    const qint64 minutes = (seconds + minute - 1) / minute;
    request.form.row = Alarm::Relative;
    request.form.interval = QString::number(minutes);
    request.counted = std::chrono::seconds(minutes * minute - seconds);
    return std::nullopt;
}

Outcome takeInterval(const Draft& draft, AlarmForm& form) {
    form.row = Alarm::Relative;
    form.isMinuteUnits = draft.minutes.has_value();
    const qint64 units = draft.minutes ? *draft.minutes : *draft.hours;
    const qint64 longest = longestInterval(form.isMinuteUnits);
    if (units < 1 || units > longest)
        return invalid(form.isMinuteUnits ? key::minutes : key::hours,
                       QStringLiteral("must be from 1 to %1 (a year)").arg(longest));
    form.interval = QString::number(units);
    return std::nullopt;
}

// Without a date, when the clock shows the time next.
Outcome takeMoment(const Draft& draft, const QDateTime& now, AlarmForm& form) {
    form.row = Alarm::Dated;
    form.atTimePicker = *draft.time;
    form.shouldUseEveryDay = draft.everyDay.value_or(false);
    const bool isAhead = fullDateWithTimeFrom(*draft.time, now.date(), now) > now;
    form.atDatePicker = now.date().addDays(isAhead ? 0 : 1);
    if (draft.date) {
        const auto date = dateRead(*draft.date, QLocale::system(), now, *draft.time).date;
        if (!date)
            return invalid(key::date, QStringLiteral("must be a date such as 2026-12-01"));
        form.atDatePicker = *date;
    }
    if (fullDateWithTimeFrom(form.atTimePicker, form.atDatePicker, now) <= now)
        return refusal("PastDate", key::date,
                       form.atDatePicker.toString(Qt::ISODate) +
                           form.atTimePicker.toString(QStringLiteral(" HH:mm")) +
                           QStringLiteral(" is past"));
    return std::nullopt;
}

void takeWeekdays(const Draft& draft, AlarmForm& form) {
    form.row = Alarm::Weekly;
    form.atAlarmTimePicker = *draft.time;
    form.weekdays = *draft.weekdays;
    form.shouldUseForever = draft.everyWeek.value_or(false);
}

Outcome takeSnooze(const Draft& draft, AlarmForm& form) {
    if (!draft.snooze)
        return std::nullopt;
    if (std::find(snoozeLengths.begin(), snoozeLengths.end(), *draft.snooze) ==
        snoozeLengths.end()) {
        auto sorted = snoozeLengths;
        std::sort(sorted.begin(), sorted.end());
        QStringList lengths;
        for (const qint64 length : sorted)
            lengths << QString::number(length);
        return invalid(key::snooze, QStringLiteral("must be of these minutes: ") +
                                        lengths.join(QStringLiteral(", ")));
    }
    form.snoozeTime = *draft.snooze;
    return std::nullopt;
}

Outcome takeWhen(const Draft& draft, const QDateTime& now, AlarmRequest& request) {
    request.form.shouldRepeat = draft.repeat.value_or(false);
    if (draft.seconds)
        return takeSeconds(*draft.seconds, request);
    if (!draft.time)
        return takeInterval(draft, request.form);
    if (!draft.weekdays)
        return takeMoment(draft, now, request.form);
    takeWeekdays(draft, request.form);
    return std::nullopt;
}

} // namespace

std::variant<AlarmRequest, Refusal> readRequest(const QVariantMap& description,
                                                const QDateTime& now) {
    Draft draft;
    AlarmRequest request;
    request.form = newAlarmForm(now, snoozeLengths.front());
    Outcome outcome = readInto(draft, description);
    if (!outcome)
        outcome = conflictIn(draft);
    if (!outcome)
        outcome = missingIn(draft);
    if (!outcome)
        outcome = takeWhen(draft, now, request);
    if (!outcome)
        outcome = takeSnooze(draft, request.form);
    if (outcome)
        return *outcome;
    request.form.title = *draft.title;
    request.form.shouldFadeIn = draft.fade.value_or(false);
    request.sound = draft.sound;
    request.voice = draft.voice.value_or(QString());
    request.isStored = draft.store.value_or(false);
    return request;
}

} // namespace dorvane
