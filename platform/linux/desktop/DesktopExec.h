// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// The value of a desktop file's Exec key that starts the program, given by its full path, with one
// address. Whatever the path holds, the desktop's reader finds that path in it.
[[nodiscard]] QString desktopExec(const QString& program);

// The program that such a value starts, as it stands there; empty where there is none.
[[nodiscard]] QString programOfDesktopExec(const QString& value);

} // namespace dorvane
