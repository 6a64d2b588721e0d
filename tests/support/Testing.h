// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/Dates.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Trace.h"
#include "tests/support/VirtualRunLoop.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// What every test has at hand, and the one dialect in which all are written: a test file says
// `using namespace dorvane::testing` and nothing else.
namespace dorvane::testing {

using namespace dorvane; // for whoever uses this namespace
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::EndsWith;
using ::testing::StartsWith;

} // namespace dorvane::testing
