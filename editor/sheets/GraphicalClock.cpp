// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/sheets/GraphicalClock.h"

#include "editor/sheets/ClockFace.h"
#include "editor/TimePicker.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace dorvane {

GraphicalClock::GraphicalClock(QWidget* parent)
    : QWidget(parent)
    , m_face(new ClockFace(this))
    , m_field(new TimePicker(this))
    , m_morning(addHalf(QStringLiteral("AM")))
    , m_afternoon(addHalf(QStringLiteral("PM")))
    , m_remark(new QLabel(this)) {
    m_face->setObjectName(QStringLiteral("clockFace"));
    m_field->setObjectName(QStringLiteral("timeField"));
    m_field->setAccessibleName(QStringLiteral("Time"));
    m_remark->setTextFormat(Qt::PlainText);
    m_remark->setAlignment(Qt::AlignHCenter);
    const auto row = new QHBoxLayout;
    row->setSpacing(6);
    row->addStretch();
    row->addWidget(m_field);
    row->addWidget(m_morning);
    row->addWidget(m_afternoon);
    row->addStretch();
    const auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(m_face, 1);
    layout->addLayout(row);
    layout->addWidget(m_remark);
    setFocusProxy(m_field);
    setTabOrder(m_field, m_morning);
    setTabOrder(m_morning, m_afternoon);
    setTabOrder(m_afternoon, m_face);

    connect(m_field, &TimePicker::chosenChanged, this, [this] {
        follow();
        Q_EMIT changed();
    });
    connect(m_field, &TimePicker::remarkChanged, this,
            [this] { m_remark->setText(m_field->remark()); });
    connect(m_face, &ClockFace::timeChanged, this, [this](QTime time) {
        m_field->setChosenTime(time);
        Q_EMIT changed();
    });
    connect(m_face, &ClockFace::dragFinished, this, &GraphicalClock::follow);
    connect(m_morning, &QPushButton::clicked, this, [this] { chooseHalf(true); });
    connect(m_afternoon, &QPushButton::clicked, this, [this] { chooseHalf(false); });
}

QPushButton* GraphicalClock::addHalf(const QString& name) {
    const auto button = new QPushButton(name, this);
    button->setObjectName(name);
    button->setCheckable(true);
    button->setAutoExclusive(true);
    button->setFixedWidth(button->fontMetrics().horizontalAdvance(name) * 2);
    return button;
}

QTime GraphicalClock::time() const {
    return m_field->chosenTime();
}

void GraphicalClock::setTime(QTime time) {
    m_field->setChosenTime(time);
    follow();
}

bool GraphicalClock::isReadable() const {
    return m_field->isReadable();
}

void GraphicalClock::setEarliestOn(QDate date, const std::optional<QDateTime>& earliest) {
    m_field->setEarliestOn(date, earliest);
}

void GraphicalClock::chooseHalf(bool isMorning) {
    setTime(isMorning == (time().hour() < 12) ? time() : inOtherHalfOfDay(time()));
    Q_EMIT changed();
}

void GraphicalClock::follow() {
    m_face->setTime(time());
    const bool isMorning = time().hour() < 12;
    (isMorning ? m_morning : m_afternoon)->setChecked(true);
    // A pressed button alone is hard to tell on dark ground.
    QPalette chosen;
    chosen.setColor(QPalette::Button, palette().color(QPalette::Highlight));
    chosen.setColor(QPalette::ButtonText, palette().color(QPalette::HighlightedText));
    m_morning->setPalette(isMorning ? chosen : QPalette());
    m_afternoon->setPalette(isMorning ? QPalette() : chosen);
}

} // namespace dorvane
