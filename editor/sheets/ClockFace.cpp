// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/sheets/ClockFace.h"

#include "core/DateHelpers.h"
#include "core/WrittenTime.h"
#include "editor/sheets/ClockFacePainter.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace dorvane {

namespace {

constexpr int preferredEm = 15; // the face's side in heights of the font
constexpr int minutesPerHour = 60;

} // namespace

ClockFace::ClockFace(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAccessibleName(QStringLiteral("Clock"));
}

void ClockFace::setTime(QTime time) {
    m_time = QTime(time.hour(), time.minute());
    setAccessibleDescription(timeShown(m_time, usesTwelveHourClock(QLocale::system())));
    update();
}

QSize ClockFace::sizeHint() const {
    const int side = fontMetrics().height() * preferredEm;
    return {side, side};
}

QSize ClockFace::minimumSizeHint() const {
    return sizeHint() * 2 / 3;
}

QPointF ClockFace::onFace(QPointF position) const {
    const QPointF fromMiddle = position - QRectF(rect()).center();
    return fromMiddle / clockFaceRadius(size());
}

void ClockFace::choose(QTime time) {
    if (time == m_time)
        return;
    setTime(time);
    Q_EMIT timeChanged(m_time);
}

void ClockFace::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    paintClockFace(painter, rect(), {m_time, m_dragged, hasFocus(), palette(), font()});
}

void ClockFace::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const QPointF point = onFace(event->position());
    m_dragged = handAt(point, m_time);
    mouseMoveEvent(event);
    update();
}

void ClockFace::mouseMoveEvent(QMouseEvent* event) {
    choose(timeWithHandAt(m_time, m_dragged, angleOf(onFace(event->position()))));
}

void ClockFace::mouseReleaseEvent(QMouseEvent* /*event*/) {
    m_dragged = ClockHand::None;
    update();
    Q_EMIT dragFinished();
}

void ClockFace::wheelEvent(QWheelEvent* event) {
    m_wheelRest += event->angleDelta().y() != 0 ? event->angleDelta().y() : event->angleDelta().x();
    const int notches = m_wheelRest / QWheelEvent::DefaultDeltasPerStep;
    m_wheelRest %= QWheelEvent::DefaultDeltasPerStep;
    addMinutes(event->modifiers() & Qt::ShiftModifier ? notches * minutesPerHour : notches);
    event->accept();
}

void ClockFace::keyPressEvent(QKeyEvent* event) {
    const int step = event->modifiers() & Qt::ShiftModifier ? minutesPerHour : 1;
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Right:
        return addMinutes(step);
    case Qt::Key_Down:
    case Qt::Key_Left:
        return addMinutes(-step);
    case Qt::Key_PageUp:
        return addMinutes(minutesPerHour);
    case Qt::Key_PageDown:
        return addMinutes(-minutesPerHour);
    case Qt::Key_A:
        return choose(m_time.hour() < 12 ? m_time : inOtherHalfOfDay(m_time));
    case Qt::Key_P:
        return choose(m_time.hour() < 12 ? inOtherHalfOfDay(m_time) : m_time);
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace dorvane
