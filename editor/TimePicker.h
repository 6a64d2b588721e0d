// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/TypedField.h"

#include <QDateTime>

#include <optional>

namespace dorvane {

// A field for a time of day, to the minute, on the twelve- or twenty-four-hour clock of the user's
// territory. A time may be typed before the day that makes it a time to come.
class TimePicker final : public TypedField {
    Q_OBJECT

public:
    explicit TimePicker(QWidget* parent = nullptr);

    // Which clock it is; at first that of the user's territory.
    void setTwelveHours(bool isTwelveHours);

    // The time that counts, also while one below the bound is still being typed; the last one that
    // could be read while isReadable() is false.
    [[nodiscard]] QTime chosenTime() const;
    void setChosenTime(QTime time);
    // The same, as if there were no bound.
    [[nodiscard]] QTime wantedTime() const { return m_wanted; }

    // For a time on a date, where nothing may lie before `earliest`: it bounds the times of its own
    // day only.
    void setEarliestOn(QDate date, const std::optional<QDateTime>& earliest);

private:
    Reading read(const QString& text) override;
    QString show() override;
    [[nodiscard]] QString shown() const override;
    [[nodiscard]] QString widestText() const override;
    [[nodiscard]] QString jumpRemark() const override;
    [[nodiscard]] QString unreadableRemark() const override;
    [[nodiscard]] TypedText typed(const TypedText& field, QChar character) const override;
    void step(int steps, TextPart part) override;

    bool m_isTwelveHours = false;
    QTime m_wanted{0, 0};
    QTime m_shown{0, 0}; // before the typing began
    std::optional<QTime> m_earliest;
};

} // namespace dorvane
