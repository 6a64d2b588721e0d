// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/control/BusProgram.h"

#include "platform/linux/control/ControlNames.h"
#include "platform/RemoteMethods.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QProcess>
#include <QThread>

#include <chrono>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

// A sound may have to be copied, a voice to be looked for.
constexpr std::chrono::milliseconds patience = 10s;
constexpr auto lookInterval = 20ms;

bool isNobodyThere(const QDBusMessage& reply) {
    const auto type = QDBusError(reply).type();
    return type == QDBusError::ServiceUnknown ||
           reply.errorName() == QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner");
}

RemoteProgram::Fault faultOf(const QDBusMessage& reply) {
    using Kind = RemoteProgram::Fault::Kind;
    if (reply.errorName().startsWith(bus::errorPrefix))
        return {Kind::Refused, reply.errorMessage(),
                reply.errorName().mid(bus::errorPrefix.size())};
    if (QDBusError(reply).type() == QDBusError::NoServer)
        return {Kind::Unreachable, QStringLiteral("the session bus cannot be reached")};
    if (isNobodyThere(reply))
        return {Kind::Unreachable, QStringLiteral("Dorvane does not run")};
    return {Kind::Unreachable, QStringLiteral("Dorvane does not answer: ") + reply.errorMessage()};
}

QVariant plain(const QVariant& value) {
    if (!value.canConvert<QDBusArgument>())
        return value;
    QVariantList list;
    for (const QVariantMap& entry : qdbus_cast<QList<QVariantMap>>(value))
        list << entry;
    return list;
}

} // namespace

BusProgram::BusProgram(QDBusConnection bus) : m_bus(std::move(bus)) {
    qDBusRegisterMetaType<QList<QVariantMap>>();
}

QDBusMessage BusProgram::ask(const QDBusMessage& message) const {
    if (!m_bus.isConnected())
        return QDBusMessage::createError(QDBusError::NoServer, QStringLiteral("no session bus"));
    return m_bus.call(message, QDBus::Block, int(patience.count()));
}

RemoteProgram::Answer BusProgram::call(const RemoteMethod& method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(bus::service, bus::path, bus::interface,
                                                          QString::fromLatin1(method.name));
    message.setArguments(arguments);
    message.setAutoStartService(false);
    QDBusMessage reply = ask(message);
    if (method.startsProgram && isNobodyThere(reply) && startProgram())
        reply = ask(message);
    if (reply.type() != QDBusMessage::ReplyMessage)
        return faultOf(reply);
    QVariantList values;
    for (const QVariant& value : reply.arguments())
        values << plain(value);
    return values;
}

RemoteProgram::Properties BusProgram::properties() {
    QDBusMessage message = QDBusMessage::createMethodCall(
        bus::service, bus::path, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("GetAll"));
    message.setAutoStartService(false);
    const QDBusMessage reply = ask(message << bus::interface);
    if (reply.type() != QDBusMessage::ReplyMessage)
        return faultOf(reply);
    return qdbus_cast<QVariantMap>(reply.arguments().value(0));
}

// True once it has its name; its first requests wait for it there.
bool BusProgram::startProgram() const {
    if (!m_bus.isConnected())
        return false;
    QDBusConnectionInterface& daemon = *m_bus.interface();
    if (daemon.startService(bus::service).isValid())
        return true;
    QProcess program;
    program.setProgram(QCoreApplication::applicationFilePath());
    program.setStandardInputFile(QProcess::nullDevice());
    program.setStandardOutputFile(QProcess::nullDevice());
    program.setStandardErrorFile(QProcess::nullDevice());
    if (!program.startDetached())
        return false;
    for (auto left = patience; left > 0ms; left -= lookInterval) {
        if (daemon.isServiceRegistered(bus::service))
            return true;
        QThread::msleep(lookInterval.count());
    }
    return false;
}

void BusProgram::follow(std::function<bool()> changed) {
    m_changed = std::move(changed);
    if (!m_changed() || !m_bus.isConnected())
        return;
    const auto connect = [this](const QString& interface, const char* name) {
        m_bus.connect(bus::service, bus::path, interface, QString::fromLatin1(name), this,
                      SLOT(somethingChanged()));
    };
    connect(bus::interface, "RunningChanged");
    connect(QStringLiteral("org.freedesktop.DBus.Properties"), "PropertiesChanged");
    m_bus.connect({}, QStringLiteral("/org/freedesktop/DBus/Local"),
                  QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                  this, SLOT(busWentAway()));
    const QDBusServiceWatcher watcher(bus::service, m_bus);
    QObject::connect(&watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
                     &BusProgram::somethingChanged);
    somethingChanged(); // since the first look, before anybody listened
    QCoreApplication::exec();
}

// What has come together is looked at together.
void BusProgram::somethingChanged() {
    if (!std::exchange(m_isToLook, true))
        QMetaObject::invokeMethod(this, &BusProgram::look, Qt::QueuedConnection);
}

void BusProgram::look() {
    m_isToLook = false;
    if (!m_changed())
        QCoreApplication::quit();
}

void BusProgram::busWentAway() {
    m_changed();
    QCoreApplication::quit();
}

} // namespace dorvane
