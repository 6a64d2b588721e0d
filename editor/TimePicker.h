// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractSpinBox>
#include <QDateTime>

#include <optional>

namespace dorvane {

// A field for a time of day, to the minute, on the twelve- or twenty-four-hour clock of the user's
// territory. A time is typed as people write it, over a part of the shown one or over all of it;
// a click selects a part. What cannot be read stays in the field, looks it, and is never taken for
// another time.
//
// The field can have an earliest time. A time that is typed below it is brought up to it, with a
// remark why, but comes back when the bound goes: a time may be typed before the day that makes it
// a time to come.
class TimePicker final : public QAbstractSpinBox {
    Q_OBJECT

public:
    explicit TimePicker(QWidget* parent = nullptr);

    // Which clock it is; at first that of the user's territory.
    void setTwelveHours(bool isTwelveHours);

    // The time that counts, also while one below the bound is still being typed; the last one that
    // could be read while isReadable() is false.
    [[nodiscard]] QTime chosenTime() const;
    void setChosenTime(QTime time);

    [[nodiscard]] bool isReadable() const { return m_isReadable; }

    // Why the field does not show what was typed, or cannot use it; empty when there is nothing to
    // remark.
    [[nodiscard]] const QString& remark() const { return m_remark; }

    // Whether what was typed has been brought up to the bound since the last call: nothing should
    // be decided on a time that the user may not have seen yet.
    [[nodiscard]] bool takeUnseenJump();

    // For a time on a date, where nothing may lie before `earliest`: it bounds the times of its own
    // day only.
    void setEarliestOn(QDate date, const std::optional<QDateTime>& earliest);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
    [[nodiscard]] QValidator::State validate(QString& text, int& cursor) const override;
    void stepBy(int steps) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    // By the user or by the bound, not by setChosenTime(); also when isReadable() changes.
    void chosenTimeChanged();
    void remarkChanged();

protected:
    [[nodiscard]] StepEnabled stepEnabled() const override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void type(QChar character);
    void readText();
    void settle();
    void setRemark(const QString& remark);
    void showReadable(bool isReadable);
    void select(qsizetype position);

    bool m_isTwelveHours = false;
    QTime m_wanted{0, 0};
    QTime m_shown{0, 0}; // before the typing began
    std::optional<QTime> m_earliest;
    bool m_isReadable = true;
    bool m_isBeingTyped = false;
    bool m_hasJumped = false;
    QString m_remark;
    QString m_description; // the accessible one, which a remark takes the place of
};

} // namespace dorvane
