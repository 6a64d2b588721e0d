// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/checks/CheckObject.h"

#include <QDBusMetaType>
#include <QDBusReply>

#include <utility>

namespace dorvane {

namespace {

constexpr int patience = 30'000; // milliseconds
const auto path = QStringLiteral("/com/brackenfold/Dorvane/Checks");

void registerTypes() {
    qDBusRegisterMetaType<CheckRow>();
    qDBusRegisterMetaType<CheckRows>();
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const CheckRow& row) {
    argument.beginStructure();
    argument << row.name << row.status << row.line << row.advice;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, CheckRow& row) {
    argument.beginStructure();
    argument >> row.name >> row.status >> row.line >> row.advice;
    argument.endStructure();
    return argument;
}

CheckObject::CheckObject(QDBusConnection bus, Runner run) : m_run(std::move(run)) {
    registerTypes();
    bus.registerObject(path, this, QDBusConnection::ExportAllSlots);
}

CheckRows CheckObject::Run(bool playTestSound) {
    setDelayedReply(true);
    m_run(playTestSound, [bus = connection(), call = message()](const CheckRows& rows) {
        bus.send(call.createReply(QVariant::fromValue(rows)));
    });
    return {};
}

CheckAnswer askInstance(const QDBusConnection& bus, bool playTestSound) {
    registerTypes();
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("com.brackenfold.Dorvane"), path,
        QStringLiteral("com.brackenfold.Dorvane1.Checks"), QStringLiteral("Run"));
    call << playTestSound;
    call.setAutoStartService(false); // who asks whether it will ring must not change the answer
    const QDBusReply<CheckRows> reply = bus.call(call, QDBus::Block, patience);
    if (reply.isValid())
        return {CheckAnswer::From::Instance, reply.value(), {}};
    const QDBusError& error = reply.error();
    const bool runs = error.type() != QDBusError::ServiceUnknown &&
                      error.name() != QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner");
    return {runs ? CheckAnswer::From::Silence : CheckAnswer::From::Nobody, {}, error.message()};
}

} // namespace dorvane
