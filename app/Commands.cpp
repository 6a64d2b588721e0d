// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Commands.h"

namespace dorvane {

const std::vector<Command>& commands() {
    static const std::vector<Command> table;
    return table;
}

} // namespace dorvane
