// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/BusTest.h"

#include "tests/support/Testing.h"

#include <QUuid>

namespace dorvane::testing {

namespace {

constexpr auto configuration = R"(<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>)";

} // namespace

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
    QFile file(m_folder.filePath(u"bus.conf"_qs));
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write(QString::fromLatin1(configuration).arg(m_folder.path()).toUtf8());
    file.close();
    m_daemon.start(u"dbus-daemon"_qs, {u"--nofork"_qs, u"--nopidfile"_qs, u"--print-address"_qs,
                                       u"--config-file="_qs + file.fileName()});
    return m_daemon.waitForReadyRead(5000) ? QString::fromUtf8(m_daemon.readLine()).trimmed()
                                           : QString();
}

} // namespace dorvane::testing
