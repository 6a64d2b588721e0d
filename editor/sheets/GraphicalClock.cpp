// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/sheets/GraphicalClock.h"

#include "editor/sheets/ClockFace.h"
#include "editor/TimePicker.h"

#include <QVBoxLayout>

namespace dorvane {

GraphicalClock::GraphicalClock(QWidget* parent)
    : QWidget(parent), m_face(new ClockFace(this)), m_field(new TimePicker(this)) {
    m_face->setObjectName(QStringLiteral("clockFace"));
    m_field->setObjectName(QStringLiteral("timeField"));
    m_field->setAccessibleName(QStringLiteral("Time"));
    m_field->setAlignment(Qt::AlignCenter);
    const auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_face, 1);
    layout->addWidget(m_field, 0, Qt::AlignHCenter);
    setFocusProxy(m_field);
    setTabOrder(m_field, m_face);

    connect(m_field, &TimePicker::chosenTimeChanged, this, [this] { followField(); });
    connect(m_field, &TimePicker::editingFinished, this, [this] { followField(); });
    connect(m_face, &ClockFace::timeChanged, this,
            [this](QTime time) { m_field->setChosenTime(time); });
    connect(m_face, &ClockFace::dragFinished, this, [this] { followField(); });
}

QTime GraphicalClock::time() const {
    return m_field->chosenTime();
}

void GraphicalClock::setTime(QTime time) {
    m_field->setChosenTime(time);
    followField();
}

void GraphicalClock::setEarliestOn(QDate date, const std::optional<QDateTime>& earliest) {
    m_field->setEarliestOn(date, earliest);
}

void GraphicalClock::followField() {
    m_face->setTime(m_field->chosenTime());
}

} // namespace dorvane
