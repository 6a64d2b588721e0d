// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QWidget>

#include <optional>

class QLabel;
class QPushButton;

namespace dorvane {

class ClockFace;
class TimePicker;

// A clock to set by its hands, with a field to type in and a switch for the half of the day below
// it; all show the same time.
class GraphicalClock final : public QWidget {
    Q_OBJECT

public:
    explicit GraphicalClock(QWidget* parent = nullptr);

    [[nodiscard]] QTime time() const;
    // Does not emit changed().
    void setTime(QTime time);

    // Whether what is typed in the field can be read; time() is the last that could.
    [[nodiscard]] bool isReadable() const;

    // On its day, a time before the earliest moment is brought up to it, once the hand is let go
    // of, with a remark why.
    void setEarliestOn(QDate date, const std::optional<QDateTime>& earliest);

Q_SIGNALS:
    // By the user or by the bound; also when isReadable() changes.
    void changed();

private:
    [[nodiscard]] QPushButton* addHalf(const QString& name);
    void chooseHalf(bool isMorning);
    void follow();

    ClockFace* m_face;
    TimePicker* m_field;
    QPushButton* m_morning;
    QPushButton* m_afternoon;
    QLabel* m_remark;
};

} // namespace dorvane
