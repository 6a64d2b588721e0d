// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/BreakFormatters.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>
#include <utility>

namespace dorvane {

namespace {

bool isDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

// Held to what an int can be.
int numberOf(const QString& digits) {
    qint64 value = 0;
    for (const QChar digit : digits)
        value = std::min<qint64>(value * 10 + digit.digitValue(), std::numeric_limits<int>::max());
    return static_cast<int>(value);
}

QString translated(const char* text) {
    return QCoreApplication::translate("Breaks", text);
}

} // namespace

BreakFormatter::BreakFormatter(int lowest, int highest, std::function<void()> beep, QObject* parent)
    : QValidator(parent), m_lowest(lowest), m_highest(highest), m_beep(std::move(beep)) {}

// Acceptable where it is none of the range's, too, or the field would never say that it is
// finished.
QValidator::State BreakFormatter::validate(QString& text, int& /*cursor*/) const {
    if (std::all_of(text.cbegin(), text.cend(), isDigit))
        return Acceptable;
    m_beep();
    return Invalid;
}

bool BreakFormatter::takes(const QString& text) const {
    return !text.isEmpty() && nearest(text) == numberOf(text);
}

int BreakFormatter::nearest(const QString& text) const {
    return std::clamp(numberOf(text), m_lowest, m_highest);
}

QString BreakFormatter::range() const {
    return translated("%1 to %2").arg(m_lowest).arg(m_highest);
}

QString BreakFormatter::objection(const QString& text) const {
    const QString limit = numberOf(text) < m_lowest ? translated("at least %1").arg(m_lowest)
                                                    : translated("at most %1").arg(m_highest);
    return translated("not %1: %2").arg(text, limit);
}

} // namespace dorvane
