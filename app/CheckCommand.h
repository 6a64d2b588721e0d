// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <memory>

namespace dorvane {

class CheckObject;
class ServedBus;

// `dorvane check`: asks the running instance whether alarms will ring, or where none runs finds out
// what it can by itself, and prints the answers.
[[nodiscard]] ExitStatus runCheck(const QCommandLineParser& parser);

// Offers the checks of this instance to others on the bus.
[[nodiscard]] std::unique_ptr<CheckObject> offerChecks(ServedBus& bus);

} // namespace dorvane
