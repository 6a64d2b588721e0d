// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QValidator>

#include <functional>

namespace dorvane {

// Lets nothing into a field but a number from `lowest` to below `limit`, and lets it be empty. That
// goes for every text on the way to the number as well: with a lowest value of 2, "10" cannot be
// begun with its 1. What is refused is refused in silence, but a number with something behind it
// with a beep.
class BreakFormatter : public QValidator {
    Q_OBJECT

public:
    enum class Verdict { Accepted, Refused, RefusedWithBeep };

    BreakFormatter(int lowest, int limit, std::function<void()> beep, QObject* parent);

    [[nodiscard]] Verdict verdictOn(const QString& text) const;

    State validate(QString& text, int& cursor) const override;

private:
    const int m_lowest;
    const int m_limit;
    const std::function<void()> m_beep;
};

// Minutes between breaks.
class BreakEveryFormatter final : public BreakFormatter {
public:
    BreakEveryFormatter(std::function<void()> beep, QObject* parent)
        : BreakFormatter(5, 301, std::move(beep), parent) {}
};

// Minutes of a break.
class BreakDurationFormatter final : public BreakFormatter {
public:
    BreakDurationFormatter(std::function<void()> beep, QObject* parent)
        : BreakFormatter(2, 61, std::move(beep), parent) {}
};

// Number of breaks.
class BreakRepeatFormatter final : public BreakFormatter {
public:
    BreakRepeatFormatter(std::function<void()> beep, QObject* parent)
        : BreakFormatter(2, 31, std::move(beep), parent) {}
};

// The number that the text begins with, 0 when it begins with none; held to what an int can be.
[[nodiscard]] int integerValue(const QString& text);

} // namespace dorvane
