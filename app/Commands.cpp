// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Commands.h"

#include "app/MissedCommand.h"

namespace dorvane {

const std::vector<Command>& commands() {
    static const std::vector<Command> table{missedCommand()};
    return table;
}

} // namespace dorvane
