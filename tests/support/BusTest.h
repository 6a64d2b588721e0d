// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace dorvane::testing {

// A message bus of the test's own, on which no service can start by itself: `m_ours` is the
// program's connection, `m_theirs` that of the services which the test plays.
class BusTest : public ::testing::Test {
protected:
    BusTest();
    ~BusTest() override;
    void SetUp() override {
        if (m_address.isEmpty())
            GTEST_SKIP() << "dbus-daemon is not installed";
    }

    // One more participant.
    [[nodiscard]] QDBusConnection join();

private:
    QString start(); // answers with its address

    QTemporaryDir m_folder;
    QProcess m_daemon;
    QStringList m_connections;

protected:
    const QString m_address;
    QDBusConnection m_ours;
    QDBusConnection m_theirs;
};

} // namespace dorvane::testing
