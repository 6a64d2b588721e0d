// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QValidator>

#include <functional>

namespace dorvane {

// Lets nothing into a field but digits, and lets it be empty; anything else is refused with a beep.
// A number outside the range may be typed, since it may be on the way to one inside: the field is
// to take the nearest one instead, and to say so.
class BreakFormatter : public QValidator {
    Q_OBJECT

public:
    BreakFormatter(int lowest, int highest, std::function<void()> beep, QObject* parent);

    State validate(QString& text, int& cursor) const override;

    // Whether the text is a number inside the range, and the number inside that is nearest to it.
    [[nodiscard]] bool takes(const QString& text) const;
    [[nodiscard]] int nearest(const QString& text) const;

    // For a person: "5 to 300", and "not 400: at most 300".
    [[nodiscard]] QString range() const;
    [[nodiscard]] QString objection(const QString& text) const;

private:
    const int m_lowest;
    const int m_highest;
    const std::function<void()> m_beep;
};

// Minutes between breaks.
class BreakEveryFormatter final : public BreakFormatter {
public:
    BreakEveryFormatter(std::function<void()> beep, QObject* parent)
        : BreakFormatter(5, 300, std::move(beep), parent) {}
};

// Minutes of a break.
class BreakDurationFormatter final : public BreakFormatter {
public:
    BreakDurationFormatter(std::function<void()> beep, QObject* parent)
        : BreakFormatter(2, 60, std::move(beep), parent) {}
};

// Number of breaks.
class BreakRepeatFormatter final : public BreakFormatter {
public:
    BreakRepeatFormatter(std::function<void()> beep, QObject* parent)
        : BreakFormatter(2, 30, std::move(beep), parent) {}
};

} // namespace dorvane
