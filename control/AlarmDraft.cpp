// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/AlarmDraft.h"

#include "core/AlarmKeys.h"
#include "core/WrittenTime.h"
#include "core/WrittenWeekdays.h"

#include <algorithm>
#include <array>
#include <limits>

namespace dorvane {

namespace {

using Draft = AlarmDraft;

Outcome wrongType(const QString& key, const char* wanted) {
    return keyRefusal("WrongType", key, QStringLiteral("must be ") + QString::fromLatin1(wanted));
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
        return keyRefusal("TooLong", key,
                          QStringLiteral("is %1 characters long; %2 is the most")
                              .arg(QString::number(text.size()), QString::number(longest)));
    if (std::any_of(text.begin(), text.end(), isControl))
        return invalidKey(key, QStringLiteral("must be one line of plain text"));
    draft.*Field = text;
    return std::nullopt;
}

Outcome readTime(const QString& key, const QVariant& value, Draft& draft) {
    if (value.typeId() != QMetaType::QString)
        return wrongType(key, "a text such as 07:30");
    draft.time = timeRead(value.toString(), {}, false).time;
    if (!draft.time)
        return invalidKey(key, QStringLiteral("must be a time of day from 00:00 to 23:59"));
    return std::nullopt;
}

Outcome readWeekdays(const QString& key, const QVariant& value, Draft& draft) {
    if (value.typeId() != QMetaType::QStringList)
        return wrongType(key, "a list of texts such as mon");
    draft.weekdays = weekdaysRead(value.toStringList().join(u','), QLocale::system());
    if (!draft.weekdays)
        return invalidKey(key, QStringLiteral("must name days, such as mon and thu, or mon-fri"));
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
    Key{key::untilAnswered, readFlag<&Draft::untilAnswered>},
    Key{key::softly, readFlag<&Draft::softly>},
    Key{key::voice, readText<&Draft::voice, longestName>},
    Key{key::snooze, readNumber<&Draft::snooze>},
    Key{key::store, readFlag<&Draft::store>},
};

} // namespace

Outcome keyRefusal(const char* name, const QString& key, const QString& reason) {
    return Refusal{QString::fromLatin1(name), QStringLiteral("\"%1\": %2").arg(key, reason)};
}

Outcome invalidKey(const QString& key, const QString& reason) {
    return keyRefusal("InvalidValue", key, reason);
}

Outcome readInto(AlarmDraft& draft, const QVariantMap& description) {
    for (auto entry = description.begin(); entry != description.end(); ++entry) {
        const auto known = std::find_if(keys.begin(), keys.end(),
                                        [&](const Key& key) { return key.name == entry.key(); });
        if (known == keys.end())
            return keyRefusal("UnknownKey", entry.key().left(longestTitle),
                              QStringLiteral("is no key of an alarm"));
        if (Outcome outcome = known->read(entry.key(), entry.value(), draft))
            return outcome;
    }
    return std::nullopt;
}

Outcome conflictIn(const AlarmDraft& draft) {
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
            return keyRefusal("Conflict", rule.key,
                              QStringLiteral("does not go with \"%1\"").arg(rule.other));
    if (draft.everyWeek && !isWeekly)
        return keyRefusal("Conflict", key::everyWeek, QStringLiteral("needs \"weekdays\""));
    return std::nullopt;
}

} // namespace dorvane
