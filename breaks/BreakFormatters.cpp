// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/BreakFormatters.h"

#include <QRegularExpression>

#include <limits>
#include <utility>

namespace dorvane {

namespace {

QRegularExpressionMatch numberAtStart(const QString& text) {
    static const QRegularExpression number(QStringLiteral("^\\s*([+-]?)([0-9]+)(\\s*$)?"));
    return number.match(text);
}

bool isWhole(const QRegularExpressionMatch& number) {
    return number.hasMatch() && number.capturedEnd() == number.capturedEnd(3);
}

} // namespace

int integerValue(const QString& text) {
    const QRegularExpressionMatch number = numberAtStart(text);
    qint64 value = 0;
    for (const QChar digit : number.captured(2))
        value = std::min<qint64>(value * 10 + digit.digitValue(), std::numeric_limits<int>::max());
    return static_cast<int>(number.captured(1) == QStringLiteral("-") ? -value : value);
}

BreakFormatter::BreakFormatter(int lowest, int limit, std::function<void()> beep, QObject* parent)
    : QValidator(parent), m_lowest(lowest), m_limit(limit), m_beep(std::move(beep)) {}

BreakFormatter::Verdict BreakFormatter::verdictOn(const QString& text) const {
    if (text.isEmpty())
        return Verdict::Accepted;
    const int value = integerValue(text);
    if (value < m_lowest)
        return Verdict::Refused;
    if (!isWhole(numberAtStart(text)))
        return Verdict::RefusedWithBeep;
    return value < m_limit ? Verdict::Accepted : Verdict::Refused;
}

QValidator::State BreakFormatter::validate(QString& text, int& /*cursor*/) const {
    const Verdict verdict = verdictOn(text);
    if (verdict == Verdict::RefusedWithBeep)
        m_beep();
    return verdict == Verdict::Accepted ? Acceptable : Invalid;
}

} // namespace dorvane
