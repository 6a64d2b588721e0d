// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/control/ControlAdaptor.h"

#include "platform/linux/control/ControlNames.h"

#include <QDBusMetaType>

#include <utility>

namespace dorvane {

ControlAdaptor::ControlAdaptor(QDBusConnection bus, RunLoop& runLoop, RemoteControl& control,
                               QObject& object)
    : QDBusAbstractAdaptor(&object), m_bus(std::move(bus)), m_control(control), m_queue(runLoop) {
    qDBusRegisterMetaType<QList<QVariantMap>>();
    m_control.setListener(
        {.befell = [this](auto event, const QString& id,
                          const QString& title) { tellEvent(event, id, title); },
         .alarmsChanged = [this] { Q_EMIT RunningChanged(); },
         .storedAlarmsChanged = [this] { Q_EMIT StoredChanged(); },
         .stateChanged = [this](const RemoteState& before,
                                const RemoteState& now) { tellState(before, now); }});
}

ControlAdaptor::~ControlAdaptor() {
    m_control.setListener({});
}

void ControlAdaptor::AddTimer(uint minutes, const QString& title, const QDBusMessage& call) {
    later(call, [=, this] {
        m_control.addTimer(minutes, title,
                           [=, this](const AlarmAnswer& made) { answer(call, made); });
    });
}

void ControlAdaptor::AddAlarm(const QVariantMap& alarm, const QDBusMessage& call) {
    later(call, [=, this] {
        m_control.addAlarm(alarm, [=, this](const AlarmAnswer& made) { answer(call, made); });
    });
}

void ControlAdaptor::StartStored(const QString& title, const QDBusMessage& call) {
    later(call, [=, this] { answer(call, m_control.startStored(title)); });
}

void ControlAdaptor::ListRunning(const QDBusMessage& call) {
    later(call, [=, this] {
        m_bus.send(call.createReply(QVariant::fromValue(m_control.runningAlarms())));
    });
}

void ControlAdaptor::ListStored(const QDBusMessage& call) {
    later(call, [=, this] {
        m_bus.send(call.createReply(QVariant::fromValue(m_control.storedAlarms())));
    });
}

void ControlAdaptor::Snooze(const QString& id, const QDBusMessage& call) {
    later(call, [=, this] { answer(call, m_control.snooze(id)); });
}

void ControlAdaptor::Clear(const QString& id, const QDBusMessage& call) {
    later(call, [=, this] { answer(call, m_control.clear(id)); });
}

void ControlAdaptor::Delete(const QString& id, const QDBusMessage& call) {
    later(call, [=, this] { answer(call, m_control.remove(id)); });
}

void ControlAdaptor::DeleteStored(const QString& title, const QDBusMessage& call) {
    later(call, [=, this] { answer(call, m_control.removeStored(title)); });
}

void ControlAdaptor::StartBreaks(const QDBusMessage& call) {
    later(call, [=, this] { answer(call, m_control.startBreaks()); });
}

void ControlAdaptor::StopBreaks(const QDBusMessage& call) {
    later(call, [=, this] { answer(call, m_control.stopBreaks()); });
}

void ControlAdaptor::SkipBreak(const QDBusMessage& call) {
    later(call, [=, this] { answer(call, m_control.skipBreak()); });
}

// A caller that has gone meanwhile is answered all the same: the bus drops that.
void ControlAdaptor::later(const QDBusMessage& call, std::function<void()> request) {
    call.setDelayedReply(true);
    if (!m_queue.add(std::move(request)))
        refuse(call, {QStringLiteral("Busy"), QStringLiteral("too many requests are waiting")});
}

void ControlAdaptor::answer(const QDBusMessage& call, const AlarmAnswer& answer) {
    if (const Refusal* const refusal = std::get_if<Refusal>(&answer))
        refuse(call, *refusal);
    else
        m_bus.send(call.createReply(std::get<QString>(answer)));
}

void ControlAdaptor::answer(const QDBusMessage& call, const Outcome& outcome) {
    if (outcome)
        refuse(call, *outcome);
    else
        m_bus.send(call.createReply());
}

void ControlAdaptor::refuse(const QDBusMessage& call, const Refusal& refusal) {
    m_bus.send(call.createErrorReply(bus::errorPrefix + refusal.name, refusal.reason));
}

void ControlAdaptor::tellEvent(RemoteListener::Event event, const QString& id,
                               const QString& title) {
    switch (event) {
    case RemoteListener::Event::Rang:
        Q_EMIT Rang(id, title);
        break;
    case RemoteListener::Event::Snoozed:
        Q_EMIT Snoozed(id, title);
        break;
    case RemoteListener::Event::Cleared:
        Q_EMIT Cleared(id, title);
        break;
    case RemoteListener::Event::WentUnanswered:
        Q_EMIT WentUnanswered(id, title);
        break;
    }
}

// Qt emits this signal for nobody.
void ControlAdaptor::tellState(const RemoteState& before, const RemoteState& now) {
    QVariantMap changed;
    if (before.nextDue != now.nextDue)
        changed.insert(QStringLiteral("NextDue"), now.nextDue);
    if (before.nextAlarm != now.nextAlarm)
        changed.insert(QStringLiteral("NextAlarm"), now.nextAlarm);
    if (before.ringing != now.ringing)
        changed.insert(QStringLiteral("Ringing"), now.ringing);
    if (before.breaksRun != now.breaksRun)
        changed.insert(QStringLiteral("BreaksRunning"), now.breaksRun);
    QDBusMessage signal =
        QDBusMessage::createSignal(bus::path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                   QStringLiteral("PropertiesChanged"));
    m_bus.send(signal << bus::interface << changed << QStringList());
}

} // namespace dorvane
