// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/BusTest.h"

#include "tests/support/Testing.h"

#include <QUuid>

namespace dorvane::testing {

BusTest::BusTest() : m_address(start()), m_ours(join()), m_theirs(join()) {}

BusTest::~BusTest() {
    for (const QString& connection : m_connections)
        QDBusConnection::disconnectFromBus(connection);
    m_daemon.kill();
    m_daemon.waitForFinished();
}

QDBusConnection BusTest::join() {
    m_connections << QUuid::createUuid().toString();
    return QDBusConnection::connectToBus(m_address, m_connections.back());
}

QString BusTest::start() {
    m_daemon.start(u"dbus-daemon"_qs, {u"--nofork"_qs, u"--nopidfile"_qs, u"--print-address"_qs,
                                       u"--config-file="_qs + QStringLiteral(DORVANE_BUS),
                                       u"--address=unix:dir="_qs + m_folder.path()});
    return m_daemon.waitForReadyRead(5000) ? QString::fromUtf8(m_daemon.readLine()).trimmed()
                                           : QString();
}

FakeService::FakeService(QDBusConnection bus, const char* name, Answer answer)
    : m_bus(std::move(bus)), m_name(QLatin1String(name)), m_answer(std::move(answer)) {
    EXPECT_TRUE(m_bus.registerVirtualObject(u"/"_qs, this, QDBusConnection::SubPath));
    EXPECT_TRUE(m_bus.registerService(m_name));
}

FakeService::~FakeService() {
    m_bus.unregisterService(m_name);
    m_bus.unregisterObject(u"/"_qs);
}

void FakeService::tell(const char* path, const char* interface, const char* signal,
                       const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createSignal(QLatin1String(path), QLatin1String(interface),
                                                      QLatin1String(signal));
    message.setArguments(arguments);
    m_bus.send(message);
}

bool FakeService::handleMessage(const QDBusMessage& call, const QDBusConnection& bus) {
    QStringList words{call.member()};
    for (const QVariant& argument : call.arguments())
        words << argument.toString();
    asked << words.join(u'|');
    const QVariant answer = m_answer(call);
    return bus.send(answer.isValid() ? call.createReply(answer) : call.createReply());
}

} // namespace dorvane::testing
