// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include <optional>

namespace dorvane {

// What is answered from the command line alone, without a display: --version and --help, and what
// is neither an option nor an address of ours. Writes the answer and gives the exit status; nothing
// when the program is to start.
[[nodiscard]] std::optional<int> answerCommandLine(const QStringList& arguments,
                                                   const QStringList& schemes);

// With this the program is started at a login, beside nothing else.
inline const QString loginOption = QStringLiteral("--login");

// The announcement that this process is to show, where it was started for that.
[[nodiscard]] std::optional<QString> announcementIn(const QStringList& arguments);

} // namespace dorvane
