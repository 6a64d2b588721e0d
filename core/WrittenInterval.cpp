// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/WrittenInterval.h"

#include "core/IntervalRule.h"

#include <QRegularExpression>

namespace dorvane {

using namespace std::chrono;

std::optional<WrittenInterval> intervalRead(const QString& text) {
    // Numbers are taken whole, so that no digit of one is taken for another unit.
    static const QRegularExpression form(
        QStringLiteral("^\\s*(?:([0-9]{1,9}+)\\s*h(?:(?:ou)?rs?)?)?"
                       "\\s*(?:([0-9]{1,9}+)\\s*(?:(m(?:in(?:ute)?s?)?)|(?=\\s*$)))?"
                       "\\s*(?:([0-9]{1,9}+)\\s*s(?:ec(?:ond)?s?)?)?\\s*$"),
        QRegularExpression::CaseInsensitiveOption);
    const auto match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const auto number = [&](int part) { return match.capturedView(part).toLongLong(); };
    const seconds length = hours(number(1)) + minutes(number(2)) + seconds(number(4));
    if (length <= seconds(0) || length > minutes(longestInterval(true)))
        return std::nullopt;
    const bool isInHours = match.capturedLength(2) == 0 && match.capturedLength(4) == 0;
    return WrittenInterval{length, isInHours};
}

} // namespace dorvane
