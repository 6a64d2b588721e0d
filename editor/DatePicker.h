// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateEdit>

#include <optional>

namespace dorvane {

// A field for a date, as the user's territory writes it but with the year in full. An earliest date
// is minded when the field is left and not while a date is being typed: on its way from one month
// to the next a date may lie anywhere.
class DatePicker final : public QDateEdit {
    Q_OBJECT

public:
    explicit DatePicker(QWidget* parent = nullptr);

    // The date that counts, also while one below the bound is still being typed.
    [[nodiscard]] QDate chosenDate() const;
    // Does not emit chosenDateChanged().
    void setChosenDate(QDate date);

    void setEarliest(std::optional<QDate> earliest);

    // Why the field does not show what was typed; empty when there is nothing to remark.
    [[nodiscard]] const QString& remark() const { return m_remark; }
    // Whether what was typed has been brought up to the bound since the last call.
    [[nodiscard]] bool takeUnseenJump();

    void stepBy(int steps) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void chosenDateChanged();
    void remarkChanged();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void settle();
    void setRemark(const QString& remark);

    std::optional<QDate> m_earliest;
    QString m_remark;
    bool m_hasJumped = false;
};

} // namespace dorvane
