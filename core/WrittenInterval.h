// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <chrono>
#include <optional>

namespace dorvane {

// How lengths of time are written: a function on text.

struct WrittenInterval {
    std::chrono::seconds length{0};
    bool isInHours = false; // in hours alone: as many hours of the clock's face
};

// The length that a text names, more than none and a year at most; nothing for any other text.
//
//   25  25m  25 min     minutes, as a number alone is
//   2h  1h30  1 h 30 m  hours, and what is left
//   30s  1m30s          seconds
[[nodiscard]] std::optional<WrittenInterval> intervalRead(const QString& text);

} // namespace dorvane
