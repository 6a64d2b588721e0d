// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/DatePicker.h"

#include "core/DateHelpers.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace dorvane {

namespace {

// Alarms can be set beyond this century.
QString dateFormat(const QLocale& locale) {
    QString format = locale.dateFormat(QLocale::ShortFormat);
    if (!format.contains(QStringLiteral("yyyy")))
        format.replace(QStringLiteral("yy"), QStringLiteral("yyyy"));
    return format;
}

} // namespace

DatePicker::DatePicker(QWidget* parent) : QDateEdit(parent) {
    // A date alone is no moment: no night on which clocks are set may refuse it.
    setTimeSpec(Qt::UTC);
    setLocale(dateLanguage());
    setDisplayFormat(dateFormat(QLocale::system()));
    setFocusPolicy(Qt::StrongFocus);
    lineEdit()->installEventFilter(this);
    connect(this, &QDateEdit::dateChanged, this, [this] {
        setRemark({});
        m_hasJumped = false;
        Q_EMIT chosenDateChanged();
    });
    connect(this, &QDateEdit::editingFinished, this, &DatePicker::settle);
}

QDate DatePicker::chosenDate() const {
    return m_earliest ? std::max(date(), *m_earliest) : date();
}

void DatePicker::setChosenDate(QDate date) {
    setRemark({});
    m_hasJumped = false;
    const QSignalBlocker blocker(this);
    setDate(date);
}

bool DatePicker::takeUnseenJump() {
    settle();
    return std::exchange(m_hasJumped, false);
}

void DatePicker::setEarliest(std::optional<QDate> earliest) {
    m_earliest = earliest;
    if (!hasFocus())
        settle();
}

void DatePicker::stepBy(int steps) {
    QDateEdit::stepBy(steps);
    settle();
}

void DatePicker::settle() {
    if (date() == chosenDate())
        return;
    setDate(chosenDate());
    m_hasJumped = true;
    setRemark(QStringLiteral("That day has passed"));
}

void DatePicker::setRemark(const QString& remark) {
    if (std::exchange(m_remark, remark) != remark)
        Q_EMIT remarkChanged();
}

// A click selects the part that it points at.
bool DatePicker::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease && !lineEdit()->hasSelectedText())
        setSelectedSection(currentSection());
    return QDateEdit::eventFilter(watched, event);
}

// What is typed over the whole date begins with its first part. A part that is full has moved on to
// the next by itself: the separator that people type then must not move on once more.
void DatePicker::keyPressEvent(QKeyEvent* event) {
    const QChar key = event->text().isEmpty() ? QChar() : event->text()[0];
    if (key.isDigit() && lineEdit()->selectedText() == lineEdit()->text())
        setSelectedSection(sectionAt(0));
    if (key.isPunct() && lineEdit()->hasSelectedText())
        return;
    QDateEdit::keyPressEvent(event);
}

// A turn of the wheel while the pointer passes is meant for the window.
void DatePicker::wheelEvent(QWheelEvent* event) {
    if (hasFocus())
        QDateEdit::wheelEvent(event);
    else
        event->ignore();
}

} // namespace dorvane
