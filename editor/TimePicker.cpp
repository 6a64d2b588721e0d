// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/TimePicker.h"

#include "core/DateHelpers.h"
#include "editor/TypedTime.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QStyleOptionSpinBox>

#include <algorithm>
#include <utility>

namespace dorvane {

namespace {

constexpr int secondsPerMinute = 60;
constexpr int secondsPerHour = 60 * secondsPerMinute;

// Stands out from the field's own text on light and dark ground.
QColor warningColor(const QPalette& palette) {
    return palette.color(QPalette::Base).lightnessF() > 0.5F ? QColor(0xb0, 0x00, 0x20)
                                                             : QColor(0xff, 0x8a, 0x80);
}

} // namespace

TimePicker::TimePicker(QWidget* parent) : QAbstractSpinBox(parent) {
    setKeyboardTracking(false);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    lineEdit()->installEventFilter(this);
    setTwelveHours(usesTwelveHourClock(QLocale::system()));
    connect(lineEdit(), &QLineEdit::textEdited, this, &TimePicker::readText);
    connect(this, &QAbstractSpinBox::editingFinished, this, &TimePicker::settle);
}

void TimePicker::setTwelveHours(bool isTwelveHours) {
    m_isTwelveHours = isTwelveHours;
    updateGeometry();
    settle();
}

QTime TimePicker::chosenTime() const {
    return m_earliest ? std::max(m_wanted, *m_earliest) : m_wanted;
}

void TimePicker::setChosenTime(QTime time) {
    m_wanted = QTime(time.hour(), time.minute());
    m_isReadable = true;
    m_isBeingTyped = m_hasJumped = false;
    settle();
}

bool TimePicker::takeUnseenJump() {
    settle();
    return std::exchange(m_hasJumped, false);
}

void TimePicker::setEarliestOn(QDate date, const std::optional<QDateTime>& earliest) {
    std::optional<QTime> bound;
    if (earliest && earliest->date() == date)
        bound = QTime(earliest->time().hour(), earliest->time().minute());
    if (bound == m_earliest)
        return;
    m_earliest = bound;
    if (!m_isBeingTyped)
        settle();
    Q_EMIT chosenTimeChanged();
}

QSize TimePicker::sizeHint() const {
    ensurePolished();
    const QString widest = timeShown(QTime(20, 0), m_isTwelveHours) + QLatin1Char(' ');
    const QSize text(fontMetrics().horizontalAdvance(widest) + 2, lineEdit()->sizeHint().height());
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    return style()->sizeFromContents(QStyle::CT_SpinBox, &option, text, this);
}

// Everything can be typed; what it means is settled when the field is left.
QValidator::State TimePicker::validate(QString& /*text*/, int& /*cursor*/) const {
    return QValidator::Acceptable;
}

QAbstractSpinBox::StepEnabled TimePicker::stepEnabled() const {
    return StepUpEnabled | StepDownEnabled;
}

void TimePicker::stepBy(int steps) {
    const QLineEdit& edit = *lineEdit();
    const qsizetype position =
        edit.hasSelectedText() ? edit.selectionStart() : edit.cursorPosition();
    const QString shown = timeShown(m_shown, m_isTwelveHours);
    const TextPart part = partAt(shown, position);
    const int unit = shown[part.start].isLetter() ? 12 * secondsPerHour
                     : part.start > 0             ? secondsPerMinute
                                                  : secondsPerHour;
    setChosenTime(chosenTime().addSecs(steps * unit));
    select(lineEdit()->text().size() - (shown.size() - part.start)); // the hours may grow or shrink
    Q_EMIT chosenTimeChanged();
}

// A click that selects nothing itself selects the part that it points at.
bool TimePicker::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease && !m_isBeingTyped &&
        !lineEdit()->hasSelectedText())
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (!m_isBeingTyped && !lineEdit()->hasSelectedText())
                    select(lineEdit()->cursorPosition());
            },
            Qt::QueuedConnection);
    return QAbstractSpinBox::eventFilter(watched, event);
}

void TimePicker::keyPressEvent(QKeyEvent* event) {
    const QString text = event->text();
    constexpr Qt::KeyboardModifiers commands =
        Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (text.size() == 1 && text[0].isPrint() && !(event->modifiers() & commands))
        return type(text[0]);
    QAbstractSpinBox::keyPressEvent(event);
}

// A turn of the wheel while the pointer passes is meant for the window.
void TimePicker::wheelEvent(QWheelEvent* event) {
    if (hasFocus())
        QAbstractSpinBox::wheelEvent(event);
    else
        event->ignore();
}

void TimePicker::type(QChar character) {
    QLineEdit& edit = *lineEdit();
    TextPart selection{edit.cursorPosition(), 0};
    if (edit.hasSelectedText())
        selection = {edit.selectionStart(), edit.selectionLength()};
    const TypedTime typed = timeTyped({edit.text(), selection}, character);
    edit.selectAll();
    edit.insert(typed.text); // so that it can be undone
    edit.setSelection(int(typed.selection.start), int(typed.selection.length));
    if (typed.selection.length == 0)
        edit.setCursorPosition(int(typed.selection.start));
}

void TimePicker::readText() {
    const TimeReading reading = timeRead(lineEdit()->text(), m_shown, m_isTwelveHours);
    m_isBeingTyped = true;
    m_hasJumped = false;
    m_isReadable = reading.time.has_value();
    m_wanted = reading.time.value_or(m_wanted);
    showReadable(reading.canBecomeTime);
    setRemark(reading.canBecomeTime ? QString() : QStringLiteral("Not a time"));
    Q_EMIT chosenTimeChanged();
}

// Shows the time that counts; the wanted one is kept.
void TimePicker::settle() {
    showReadable(m_isReadable);
    if (!m_isReadable)
        return setRemark(QStringLiteral("Not a time"));
    m_shown = chosenTime();
    if (const QString text = timeShown(m_shown, m_isTwelveHours); text != lineEdit()->text())
        lineEdit()->setText(text);
    const bool isBelow = m_wanted < m_shown;
    m_hasJumped = isBelow && (m_hasJumped || m_isBeingTyped);
    m_isBeingTyped = false;
    setRemark(isBelow ? timeShown(m_wanted, m_isTwelveHours) + QStringLiteral(" has passed")
                      : QString());
}

void TimePicker::setRemark(const QString& remark) {
    if (m_remark == remark)
        return;
    if (m_remark.isEmpty())
        m_description = accessibleDescription();
    m_remark = remark;
    setAccessibleDescription(remark.isEmpty() ? m_description : remark);
    Q_EMIT remarkChanged();
}

void TimePicker::showReadable(bool isReadable) {
    QPalette colors; // those of the form
    if (!isReadable)
        colors.setColor(QPalette::Text, warningColor(palette()));
    lineEdit()->setPalette(colors);
}

void TimePicker::select(qsizetype position) {
    const TextPart part = partAt(lineEdit()->text(), position);
    lineEdit()->setSelection(int(part.start), int(part.length));
}

} // namespace dorvane
