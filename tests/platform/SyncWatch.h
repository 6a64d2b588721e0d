// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace dorvane::testing {

// Called before each fsync() of the test program, on the thread that syncs, while it is set.
extern std::function<void(int descriptor)> beforeSync;

} // namespace dorvane::testing
