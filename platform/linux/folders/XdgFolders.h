// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/UserFolders.h"

namespace dorvane {

// The user's folders by the XDG base directory rules, from the environment: a relative path counts
// as not set, and the home folder is then the one of the account. Reads the environment, so call it
// before other threads could change that.
[[nodiscard]] UserFolders xdgFolders();

} // namespace dorvane
