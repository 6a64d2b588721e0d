// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>

#include <vector>

namespace dorvane::testing {

// A message bus of the test's own, on which no service can start by itself; ends with the object.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    // False when this machine has no bus daemon.
    [[nodiscard]] bool isRunning() const { return !m_address.isEmpty(); }
    [[nodiscard]] const QString& address() const { return m_address; }

    // A new participant; several may live in one process. Goes with the bus.
    [[nodiscard]] QDBusConnection join();

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
    std::vector<QString> m_connections;
};

} // namespace dorvane::testing
