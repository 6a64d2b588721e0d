// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/control/RequestQueue.h"
#include "platform/RemoteControl.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>

#include <functional>

namespace dorvane {

// The interface com.brackenfold.Dorvane1, described in docs/bus.md: hands each request on when its
// turn comes, and tells the bus of what changes. Main thread only.
class ControlAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.brackenfold.Dorvane1")
    // clang-format off
    Q_CLASSINFO("D-Bus Introspection",
        "  <interface name=\"com.brackenfold.Dorvane1\">\n"
        "    <property name=\"NextDue\" type=\"x\" access=\"read\"/>\n"
        "    <property name=\"NextAlarm\" type=\"s\" access=\"read\"/>\n"
        "    <property name=\"Ringing\" type=\"as\" access=\"read\"/>\n"
        "    <property name=\"BreaksRunning\" type=\"b\" access=\"read\"/>\n"
        "    <method name=\"AddTimer\">\n"
        "      <arg name=\"minutes\" type=\"u\" direction=\"in\"/>\n"
        "      <arg name=\"title\" type=\"s\" direction=\"in\"/>\n"
        "      <arg name=\"id\" type=\"s\" direction=\"out\"/>\n"
        "    </method>\n"
        "    <method name=\"AddAlarm\">\n"
        "      <arg name=\"alarm\" type=\"a{sv}\" direction=\"in\"/>\n"
        "      <annotation name=\"org.qtproject.QtDBus.QtTypeName.In0\" value=\"QVariantMap\"/>\n"
        "      <arg name=\"id\" type=\"s\" direction=\"out\"/>\n"
        "    </method>\n"
        "    <method name=\"StartStored\">\n"
        "      <arg name=\"title\" type=\"s\" direction=\"in\"/>\n"
        "      <arg name=\"id\" type=\"s\" direction=\"out\"/>\n"
        "    </method>\n"
        "    <method name=\"ListRunning\">\n"
        "      <arg name=\"alarms\" type=\"aa{sv}\" direction=\"out\"/>\n"
        "    </method>\n"
        "    <method name=\"ListStored\">\n"
        "      <arg name=\"alarms\" type=\"aa{sv}\" direction=\"out\"/>\n"
        "    </method>\n"
        "    <method name=\"Snooze\"><arg name=\"id\" type=\"s\" direction=\"in\"/></method>\n"
        "    <method name=\"Clear\"><arg name=\"id\" type=\"s\" direction=\"in\"/></method>\n"
        "    <method name=\"Delete\"><arg name=\"id\" type=\"s\" direction=\"in\"/></method>\n"
        "    <method name=\"DeleteStored\"><arg name=\"title\" type=\"s\" direction=\"in\"/></method>\n"
        "    <method name=\"StartBreaks\"/>\n"
        "    <method name=\"StopBreaks\"/>\n"
        "    <method name=\"SkipBreak\"/>\n"
        "    <signal name=\"RunningChanged\"/>\n"
        "    <signal name=\"StoredChanged\"/>\n"
        "    <signal name=\"Rang\">\n"
        "      <arg name=\"id\" type=\"s\"/><arg name=\"title\" type=\"s\"/>\n"
        "    </signal>\n"
        "    <signal name=\"Snoozed\">\n"
        "      <arg name=\"id\" type=\"s\"/><arg name=\"title\" type=\"s\"/>\n"
        "    </signal>\n"
        "    <signal name=\"Cleared\">\n"
        "      <arg name=\"id\" type=\"s\"/><arg name=\"title\" type=\"s\"/>\n"
        "    </signal>\n"
        "    <signal name=\"WentUnanswered\">\n"
        "      <arg name=\"id\" type=\"s\"/><arg name=\"title\" type=\"s\"/>\n"
        "    </signal>\n"
        "  </interface>\n")
    // clang-format on
    Q_PROPERTY(qlonglong NextDue READ nextDue)
    Q_PROPERTY(QString NextAlarm READ nextAlarm)
    Q_PROPERTY(QStringList Ringing READ ringing)
    Q_PROPERTY(bool BreaksRunning READ breaksRunning)

public:
    // Becomes the listener of the control, and lives as long as `object`, the one that stands on
    // the bus with its adaptors. The control and the run loop must outlive both.
    ControlAdaptor(QDBusConnection bus, RunLoop& runLoop, RemoteControl& control, QObject& object);
    ~ControlAdaptor() override;

    [[nodiscard]] qlonglong nextDue() const { return m_control.state().nextDue; }
    [[nodiscard]] QString nextAlarm() const { return m_control.state().nextAlarm; }
    [[nodiscard]] QStringList ringing() const { return m_control.state().ringing; }
    [[nodiscard]] bool breaksRunning() const { return m_control.state().breaksRun; }

public Q_SLOTS: // by their names on the bus; all are answered later
    void AddTimer(uint minutes, const QString& title, const QDBusMessage& call);
    void AddAlarm(const QVariantMap& alarm, const QDBusMessage& call);
    void StartStored(const QString& title, const QDBusMessage& call);
    void ListRunning(const QDBusMessage& call);
    void ListStored(const QDBusMessage& call);
    void Snooze(const QString& id, const QDBusMessage& call);
    void Clear(const QString& id, const QDBusMessage& call);
    void Delete(const QString& id, const QDBusMessage& call);
    void DeleteStored(const QString& title, const QDBusMessage& call);
    void StartBreaks(const QDBusMessage& call);
    void StopBreaks(const QDBusMessage& call);
    void SkipBreak(const QDBusMessage& call);

Q_SIGNALS:
    void RunningChanged();
    void StoredChanged();
    void Rang(const QString& id, const QString& title);
    void Snoozed(const QString& id, const QString& title);
    void Cleared(const QString& id, const QString& title);
    void WentUnanswered(const QString& id, const QString& title);

private:
    void later(const QDBusMessage& call, std::function<void()> request);
    void answer(const QDBusMessage& call, const AlarmAnswer& answer);
    void answer(const QDBusMessage& call, const Outcome& outcome);
    void refuse(const QDBusMessage& call, const Refusal& refusal);
    void tellState(const RemoteState& before, const RemoteState& now);
    void tellEvent(RemoteListener::Event event, const QString& id, const QString& title);

    QDBusConnection m_bus;
    RemoteControl& m_control;
    RequestQueue m_queue;
};

} // namespace dorvane
