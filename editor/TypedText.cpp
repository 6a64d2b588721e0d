// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/TypedText.h"

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

// What stands between the cursor and the end of the next part.
const QRegularExpression& nextPart() {
    static const QRegularExpression expression(QStringLiteral("^([^\\d\\p{L}]+)(\\d+|\\p{L}+)"));
    return expression;
}

bool isDigit(QChar character) {
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

bool areDigits(const QString& text) {
    return std::all_of(text.cbegin(), text.cend(), isDigit);
}

bool isTimeSeparator(QChar character) {
    return character == QLatin1Char(':') || character == QLatin1Char('.');
}

bool isDateSeparator(QChar character) {
    return character.isSpace() || QStringLiteral("./-,").contains(character);
}

// The text behind the cursor after a digit was typed into the hours, which makes them `hours`.
QString behindHours(QString after, const QString& hours) {
    const int hour = hours.toInt();
    if (hours.size() > 2 || hour > lastHour)
        return after.remove(oldMinutes());
    const bool isOfTwentyFour = hour > noon || hours == QLatin1String("00");
    return isOfTwentyFour ? after.remove(oldMark()) : after;
}

TypedText withCursorBehind(const QString& before, const QString& after) {
    return {before + after, {.start = before.size()}};
}

// Whether no digit has room in the part of the date that ends the text.
bool isFull(const QString& before, const QString& order) {
    const TextPart part = partAt(before, before.size());
    if (part.start + part.length != before.size() || part.index >= order.size())
        return false;
    return part.length >= (order[part.index] == u'y' ? 4 : 2);
}

} // namespace

TextPart partAt(const QString& text, qsizetype position) {
    static const QRegularExpression part(QStringLiteral("\\d+|\\p{L}+"));
    TextPart found;
    qsizetype index = 0;
    for (auto matches = part.globalMatch(text); matches.hasNext(); ++index) {
        const QRegularExpressionMatch match = matches.next();
        if (match.capturedStart() <= position || index == 0)
            found = {match.capturedStart(), match.capturedLength(), index};
    }
    return found;
}

TypedText timeTyped(const TypedText& field, QChar character) {
    const qsizetype start = field.selection.start;
    const qsizetype length = field.selection.length;
    const QString before = field.text.left(start);
    QString after = field.text.mid(start + length);
    if (isTimeSeparator(character)) {
        if (!before.isEmpty() && before.toInt() == 0)
            after.remove(oldMark()); // no hour of a half
        if (const auto minutes = oldMinutes().match(after); minutes.hasMatch())
            return {field.text.left(start + length) + after,
                    {.start = start + length + 1, .length = minutes.capturedLength() - 1}};
    } else if (isDigit(character)) {
        if (before.isEmpty() && after.isEmpty()) // typed over everything, it still has its half
            after = oldMark().match(field.text).captured();
        if (areDigits(before))
            after = behindHours(after, before + character);
    } else if (areDigits(before) || oldMark().match(after).capturedLength() == after.size()) {
        after.clear();
    }
    return withCursorBehind(before + character, after);
}

TypedText dateTyped(const TypedText& field, QChar character, const QString& order) {
    const qsizetype start = field.selection.start;
    const qsizetype length = field.selection.length;
    QString before = field.text.left(start);
    QString after = field.text.mid(start + length);
    const QRegularExpressionMatch next = nextPart().match(after);
    if (isDateSeparator(character)) {
        if (next.hasMatch())
            return {field.text.left(start + length) + after,
                    {.start = start + length + next.capturedLength(1),
                     .length = next.capturedLength(2)}};
    } else if (isDigit(character)) {
        if (isFull(before, order) && next.hasMatch()) {
            before += next.captured(1);
            after = after.mid(next.capturedLength());
        }
    } else if (before.trimmed().isEmpty()) {
        after.clear();
    } else if (isDigit(before.back()) && next.hasMatch()) {
        after = after.mid(next.capturedLength()); // the name of a month in its place
    }
    return withCursorBehind(before + character, after);
}

} // namespace dorvane
