// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTimeEdit>

#include <optional>

namespace dorvane {

// A field for a time of day, to the minute, on the locale's twelve- or twenty-four-hour clock.
// It can have an earliest time. A time that is typed below it is brought up to it, but comes back
// when the bound goes: a time may be typed before the day that makes it a time to come.
class TimePicker final : public QTimeEdit {
    Q_OBJECT

public:
    explicit TimePicker(QWidget* parent = nullptr);

    // The time that counts, also while one below the bound is still being typed.
    [[nodiscard]] QTime chosenTime() const;
    void setChosenTime(QTime time);

    // For a time on a date, where nothing may lie before `earliest`: it bounds the times of its own
    // day only.
    void setEarliestOn(QDate date, const std::optional<QDateTime>& earliest);

    void stepBy(int steps) override;

Q_SIGNALS:
    // By the user or by the bound, not by setChosenTime().
    void chosenTimeChanged();

private:
    void settle();

    QTime m_wanted;
    std::optional<QTime> m_earliest;
};

} // namespace dorvane
