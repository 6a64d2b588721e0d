// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Announce.h"

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

// What for this process is to be the announcer, where it was started as that.
[[nodiscard]] std::optional<AnnounceAt> announcingIn(const QStringList& arguments);

} // namespace dorvane
