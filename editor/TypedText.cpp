// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/TypedTime.h"

#include "core/DateHelpers.h"

#include <QRegularExpression>

#include <algorithm>

namespace dorvane {

namespace {

constexpr int noon = 12;
constexpr int lastHour = 23;

const QRegularExpression& oldMark() {
    static const QRegularExpression expression(QStringLiteral("\\s*[AP]M$"));
    return expression;
}

const QRegularExpression& oldMinutes() {
    static const QRegularExpression expression(QStringLiteral("^:\\d+"));
    return expression;
}

bool isDigit(QChar character) {
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

bool isSeparator(QChar character) {
    return character == QLatin1Char(':') || character == QLatin1Char('.');
}

// The hour of the day; nothing for one that does not go with its mark.
std::optional<int> hourOf(int hour, QStringView mark, QTime before, bool isTwelveHours) {
    const bool isEitherHalf = hour >= 1 && hour <= noon;
    if (mark.isEmpty() && !(isTwelveHours && isEitherHalf))
        return hour;
    const bool isAfternoon = mark.isEmpty()
                                 ? before.hour() >= noon
                                 : mark.compare(QLatin1Char('p'), Qt::CaseInsensitive) == 0;
    if (isEitherHalf)
        return hour % noon + (isAfternoon ? noon : 0);
    return (hour > noon) == isAfternoon ? std::optional(hour) : std::nullopt;
}

// The text behind the cursor after a digit was typed into the hours, which makes them `hours`.
QString behindHours(QString after, const QString& hours) {
    const int hour = hours.toInt();
    if (hours.size() > 2 || hour > lastHour)
        return after.remove(oldMinutes());
    const bool isOfTwentyFour = hour > noon || hours == QLatin1String("00");
    return isOfTwentyFour ? after.remove(oldMark()) : after;
}

} // namespace

QString timeShown(QTime time, bool isTwelveHours) {
    return dateLanguage().toString(time, isTwelveHours ? QStringLiteral("h:mm AP")
                                                       : QStringLiteral("HH:mm"));
}

TimeReading timeRead(const QString& text, QTime before, bool isTwelveHours) {
    static const QRegularExpression expression(
        QStringLiteral("^\\s*(\\d{1,2})(?:\\s?[:.h ]\\s?(\\d{2})|(\\d{2}))?\\s*"
                       "(?:([ap])\\.?(?:m\\.?)?)?\\s*$"),
        QRegularExpression::CaseInsensitiveOption);
    const auto match = expression.match(text, 0, QRegularExpression::PartialPreferCompleteMatch);
    if (!match.hasMatch())
        return {std::nullopt, match.hasPartialMatch()};
    const std::optional<int> hour =
        hourOf(match.capturedView(1).toInt(), match.capturedView(4), before, isTwelveHours);
    const int minute = (match.captured(2) + match.captured(3)).toInt(); // one of them is empty
    const QTime time(hour.value_or(-1), minute);
    // 73 is the beginning of 730.
    const bool isBeginning = text.size() <= 2 && match.capturedLength(1) == text.size();
    return time.isValid() ? TimeReading{time, true} : TimeReading{std::nullopt, isBeginning};
}

TextPart partAt(const QString& text, qsizetype position) {
    static const QRegularExpression part(QStringLiteral("\\d+|[AP]M"));
    TextPart found;
    auto matches = part.globalMatch(text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        if (match.capturedStart() <= position || found.length == 0)
            found = {match.capturedStart(), match.capturedLength()};
    }
    return found;
}

TypedTime timeTyped(const TypedTime& field, QChar character) {
    const auto [start, length] = field.selection;
    QString before = field.text.left(start);
    QString after = field.text.mid(start + length);
    if (isSeparator(character)) {
        if (!before.isEmpty() && before.toInt() == 0)
            after.remove(oldMark()); // no hour of a half
        if (const auto minutes = oldMinutes().match(after); minutes.hasMatch())
            return {field.text.left(start + length) + after,
                    {start + length + 1, minutes.capturedLength() - 1}};
    } else if (isDigit(character)) {
        if (before.isEmpty() && after.isEmpty()) // typed over everything, it still has its half
            after = oldMark().match(field.text).captured();
        if (std::all_of(before.cbegin(), before.cend(), isDigit))
            after = behindHours(after, before + character);
    } else if (oldMark().match(after).capturedLength() == after.size()) {
        after.clear();
    }
    before += character;
    return {before + after, {before.size(), 0}};
}

} // namespace dorvane
