// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QWidget>

#include <optional>

namespace dorvane {

class ClockFace;
class TimePicker;

// A clock to set by its hands with a field to type in below it; both show the same time.
class GraphicalClock final : public QWidget {
    Q_OBJECT

public:
    explicit GraphicalClock(QWidget* parent = nullptr);

    [[nodiscard]] QTime time() const;
    void setTime(QTime time);

    // On its day, a time before the earliest moment is brought up to it, once the hand is let go
    // of.
    void setEarliestOn(QDate date, const std::optional<QDateTime>& earliest);

private:
    void followField();

    ClockFace* m_face;
    TimePicker* m_field;
};

} // namespace dorvane
