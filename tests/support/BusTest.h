// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTemporaryDir>

#include <functional>
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

// A service of the desktop that is played on `bus`: at every path it notes what it is asked, as
// "Method|argument", and answers.
class FakeService : public QDBusVirtualObject {
public:
    using Answer = std::function<QVariant(const QDBusMessage& call)>;

    FakeService(QDBusConnection bus, const char* name, Answer answer);
    ~FakeService() override;

    void tell(const char* path, const char* interface, const char* signal,
              const QVariantList& arguments = {});

    QStringList asked;

private:
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override;
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

    QDBusConnection m_bus;
    QString m_name;
    Answer m_answer;
};

} // namespace dorvane::testing
