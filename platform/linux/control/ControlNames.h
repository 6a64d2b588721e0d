// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Where the program stands on the session bus.
namespace dorvane::bus {

inline const QString service = QStringLiteral("com.brackenfold.Dorvane");
inline const QString path = QStringLiteral("/com/brackenfold/Dorvane");
inline const QString interface = QStringLiteral("com.brackenfold.Dorvane1");
inline const QString errorPrefix = QStringLiteral("com.brackenfold.Dorvane1.Error.");

} // namespace dorvane::bus
