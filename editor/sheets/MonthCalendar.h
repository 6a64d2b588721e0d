// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCalendarWidget>

namespace dorvane {

// A calendar on which one thing alone looks chosen: the selected day. Days that cannot be chosen
// are pale on light and dark ground. Speaks English, with the territory's first day of the week.
class MonthCalendar final : public QCalendarWidget {
    Q_OBJECT

public:
    explicit MonthCalendar(QWidget* parent = nullptr);

protected:
    void paintCell(QPainter* painter, const QRect& cell, QDate date) const override;

private:
    const QWidget* m_days;
};

} // namespace dorvane
