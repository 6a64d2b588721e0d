// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QString;

namespace dorvane {

// The whole of a process that shows one announcement, which an earlier run scheduled, and ends. It
// needs no display and asks nothing of the program that may be running. Gives the exit status.
[[nodiscard]] int announce(int argc, char** argv, const QString& id);

} // namespace dorvane
