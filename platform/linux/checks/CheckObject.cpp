// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/checks/CheckObject.h"

#include "platform/linux/bus/BusMessage.h"

#include <QDBusMetaType>
#include <QDBusReply>

#include <utility>

namespace dorvane {

namespace {

constexpr int patience = 30'000; // milliseconds
constexpr int mostUnanswered = 100;
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

const sd_bus_vtable CheckObject::interface[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD_WITH_ARGS("Run", SD_BUS_ARGS("b", playTestSound),
                            SD_BUS_RESULT("a(ssss)", checks), run, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

CheckObject::CheckObject(ServedBus& bus, Runner run) : m_bus(bus), m_run(std::move(run)) {
    m_bus.addObject("/com/brackenfold/Dorvane/Checks", "com.brackenfold.Dorvane1.Checks", interface,
                    this);
}

int CheckObject::run(sd_bus_message* call, void* data, sd_bus_error* error) {
    auto& self = *static_cast<CheckObject*>(data);
    int playTestSound = 0;
    if (const int result = sd_bus_message_read_basic(call, 'b', &playTestSound); result < 0)
        return result;
    if (self.m_unanswered == mostUnanswered)
        return sd_bus_error_set(error, SD_BUS_ERROR_LIMITS_EXCEEDED, "too many wait already");
    ++self.m_unanswered;
    const std::shared_ptr<sd_bus_message> reply(replyTo(call));
    self.m_run(playTestSound != 0, [weak = self.m_lifeline.weak(), reply](const CheckRows& rows) {
        CheckObject* const object = weak.get();
        if (!object)
            return;
        --object->m_unanswered;
        BusWriter writer(reply.get());
        writer.container('a', "(ssss)", [&] {
            for (const CheckRow& row : rows)
                writer.container('r', "ssss", [&] {
                    writer.text(row.name).text(row.status).text(row.line).text(row.advice);
                });
        });
        if (writer.send() >= 0)
            object->m_bus.flush();
    });
    return 1;
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
