// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/TimePicker.h"

#include "core/DateHelpers.h"

#include <QSignalBlocker>

#include <algorithm>

namespace dorvane {

TimePicker::TimePicker(QWidget* parent) : QTimeEdit(parent) {
    // A time on the clock's face is no moment: no night on which clocks are set may refuse it.
    setTimeSpec(Qt::UTC);
    setDisplayFormat(usesTwelveHourClock(QLocale::system()) ? QStringLiteral("h:mm AP")
                                                            : QStringLiteral("HH:mm"));
    setWrapping(true);
    connect(this, &QTimeEdit::timeChanged, this, [this](QTime time) {
        m_wanted = time;
        Q_EMIT chosenTimeChanged();
    });
    connect(this, &QTimeEdit::editingFinished, this, [this] { settle(); });
}

QTime TimePicker::chosenTime() const {
    return m_earliest ? std::max(m_wanted, *m_earliest) : m_wanted;
}

void TimePicker::setChosenTime(QTime time) {
    m_wanted = QTime(time.hour(), time.minute());
    settle();
}

void TimePicker::setEarliestOn(QDate date, const std::optional<QDateTime>& earliest) {
    std::optional<QTime> bound;
    if (earliest && earliest->date() == date)
        bound = QTime(earliest->time().hour(), earliest->time().minute());
    if (bound == m_earliest)
        return;
    m_earliest = bound;
    settle();
    Q_EMIT chosenTimeChanged();
}

void TimePicker::stepBy(int steps) {
    QTimeEdit::stepBy(steps);
    settle();
}

// Shows the time that counts; the wanted one is kept.
void TimePicker::settle() {
    const QSignalBlocker blocker(this);
    setTime(chosenTime());
}

} // namespace dorvane
