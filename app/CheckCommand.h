// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <memory>

class QDBusConnection;

namespace dorvane {

class CheckObject;

// `dorvane check`: asks the running instance whether alarms will ring, or where none runs finds out
// what it can by itself, and prints the answers.
[[nodiscard]] Command checkCommand();

// Offers the checks of this instance to others on the bus.
[[nodiscard]] std::unique_ptr<CheckObject> offerChecks(const QDBusConnection& bus);

} // namespace dorvane
