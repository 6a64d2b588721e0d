// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// A user's text made fit to stand among other text, whose letters it must not turn around: one that
// is written from right to left, or that says of itself that it is, is set apart. Any other is
// returned as it is.
[[nodiscard]] QString isolated(const QString& text);

} // namespace dorvane
