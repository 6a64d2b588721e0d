// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/WrittenTime.h"

#include "core/DateHelpers.h"

#include <QRegularExpression>

namespace dorvane {

namespace {

constexpr int noon = 12;

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

} // namespace dorvane
