// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/PrivateBus.h"

#include <QFile>
#include <QStandardPaths>
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

PrivateBus::PrivateBus() {
    const QString program = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
    QFile file(m_folder.filePath(QStringLiteral("bus.conf")));
    if (program.isEmpty() || !file.open(QIODevice::WriteOnly))
        return;
    file.write(QString::fromLatin1(configuration).arg(m_folder.path()).toUtf8());
    file.close();
    m_daemon.start(program, {QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                             QStringLiteral("--print-address"),
                             QStringLiteral("--config-file=") + file.fileName()});
    if (m_daemon.waitForReadyRead(5000))
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
}

PrivateBus::~PrivateBus() {
    for (const QString& connection : m_connections)
        QDBusConnection::disconnectFromBus(connection);
    m_daemon.kill();
    m_daemon.waitForFinished();
}

QDBusConnection PrivateBus::join() {
    m_connections.push_back(QUuid::createUuid().toString());
    return QDBusConnection::connectToBus(m_address, m_connections.back());
}

} // namespace dorvane::testing
