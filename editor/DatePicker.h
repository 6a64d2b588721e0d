// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/TypedField.h"

#include <QDateTime>
#include <QLocale>

#include <functional>
#include <optional>

namespace dorvane {

// A field for a date, as the user's territory writes it but with the year in full.
class DatePicker final : public TypedField {
    Q_OBJECT

public:
    explicit DatePicker(QWidget* parent = nullptr);

    // Where the present comes from, which tells which day is tomorrow. To be called first.
    void setNow(std::function<QDateTime()> now) { m_now = std::move(now); }
    // At first the user's.
    void setTerritory(const QLocale& territory);

    // The date that counts, also while one below the bound is still being typed; the last one that
    // could be read while isReadable() is false.
    [[nodiscard]] QDate chosenDate() const;
    void setChosenDate(QDate date);

    // The time of day that goes with the date: with another one a date that was typed without its
    // year, or as a weekday, may be another one.
    void setTimeOfDay(QTime time);

    void setEarliest(std::optional<QDate> earliest);

private:
    Reading read(const QString& text) override;
    QString show() override;
    [[nodiscard]] QString shown() const override;
    [[nodiscard]] QString widestText() const override;
    [[nodiscard]] QString jumpRemark() const override;
    [[nodiscard]] QString unreadableRemark() const override;
    [[nodiscard]] TypedText typed(const TypedText& field, QChar character) const override;
    void step(int steps, TextPart part) override;

    std::function<QDateTime()> m_now;
    QLocale m_territory;
    QTime m_time{0, 0};
    QDate m_wanted;
    QDate m_shown;
    QString m_written;     // what the wanted date was read from
    QDateTime m_writtenAt; // which a night may be past
    std::optional<QDate> m_earliest;
};

} // namespace dorvane
