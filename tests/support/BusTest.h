// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/PrivateBus.h"

#include <gtest/gtest.h>

namespace dorvane::testing {

// A test on a private bus: `m_ours` is the program's connection, `m_theirs` that of the services
// which the test plays.
class BusTest : public ::testing::Test {
protected:
    BusTest() : m_ours(m_bus.join()), m_theirs(m_bus.join()) {}

    void SetUp() override {
        if (!m_bus.isRunning())
            GTEST_SKIP() << "dbus-daemon is not installed";
    }

    PrivateBus m_bus;
    QDBusConnection m_ours;
    QDBusConnection m_theirs;
};

} // namespace dorvane::testing
