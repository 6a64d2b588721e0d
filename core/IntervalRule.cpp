// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/IntervalRule.h"

#include <algorithm>
#include <limits>

namespace dorvane {

namespace {

// Not QChar::isDigit(), which takes the digits of every script.
bool isPlainDigit(QChar character) {
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

} // namespace

bool isValidInterval(QStringView text) {
    return canBecomeInterval(text) && intervalValue(text) != 0;
}

bool canBecomeInterval(QStringView text) {
    return std::all_of(text.begin(), text.end(), isPlainDigit);
}

qint64 intervalValue(QStringView text) {
    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    qint64 value = 0;
    for (const QChar character : text) {
        if (!isPlainDigit(character))
            break;
        const qint64 digit = character.unicode() - u'0';
        if (value > (largest - digit) / 10)
            return largest;
        value = value * 10 + digit;
    }
    return value;
}

} // namespace dorvane
