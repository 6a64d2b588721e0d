// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/announcements/SystemdAnnouncer.h"

#include "platform/linux/announcements/LoginUnit.h"
#include "platform/linux/announcements/ManagerCall.h"
#include "platform/Log.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>

#include <algorithm>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

// What the manager's interface is made of; seen by Qt's templates.
struct UnitProperty {
    QString name;
    QDBusVariant value;
};
struct UnitDescription {
    QString name;
    QList<UnitProperty> properties;
};
struct UnitCommand {
    QString program;
    QStringList arguments;
    bool ignoresFailure = false;
};
struct TimerMoment {
    QString base;
    QString calendar;
};

QDBusArgument& operator<<(QDBusArgument& to, const UnitProperty& property) {
    to.beginStructure();
    to << property.name << property.value;
    to.endStructure();
    return to;
}
QDBusArgument& operator<<(QDBusArgument& to, const UnitDescription& unit) {
    to.beginStructure();
    to << unit.name << unit.properties;
    to.endStructure();
    return to;
}
QDBusArgument& operator<<(QDBusArgument& to, const UnitCommand& command) {
    to.beginStructure();
    to << command.program << command.arguments << command.ignoresFailure;
    to.endStructure();
    return to;
}
QDBusArgument& operator<<(QDBusArgument& to, const TimerMoment& moment) {
    to.beginStructure();
    to << moment.base << moment.calendar;
    to.endStructure();
    return to;
}
// They are never read.
template<typename Written>
const QDBusArgument& operator>>(const QDBusArgument& from, Written&) {
    return from;
}

} // namespace dorvane

Q_DECLARE_METATYPE(dorvane::UnitProperty)
Q_DECLARE_METATYPE(dorvane::UnitDescription)
Q_DECLARE_METATYPE(dorvane::UnitCommand)
Q_DECLARE_METATYPE(dorvane::TimerMoment)

namespace dorvane {

namespace {

constexpr std::chrono::milliseconds patience = 5s;
constexpr quint64 accuracy = 1'000'000;   // microseconds
constexpr quint64 longest = 1200'000'000; // microseconds
constexpr quint32 userOnly = 077;         // what is taken from the mode of new files
const auto timerSuffix = QStringLiteral(".timer");

UnitProperty property(const char* name, const QVariant& value) {
    return {QLatin1String(name), QDBusVariant(value)};
}

} // namespace

SystemdAnnouncer::SystemdAnnouncer(RunLoop& runLoop, AnnouncerCommand command, QDBusConnection bus)
    : m_runLoop(runLoop), m_command(std::move(command)), m_bus(std::move(bus)) {
    m_worker.setExpiryTimeout(0);
    qDBusRegisterMetaType<UnitProperty>();
    qDBusRegisterMetaType<QList<UnitProperty>>();
    qDBusRegisterMetaType<UnitDescription>();
    qDBusRegisterMetaType<QList<UnitDescription>>();
    qDBusRegisterMetaType<UnitCommand>();
    qDBusRegisterMetaType<QList<UnitCommand>>();
    qDBusRegisterMetaType<TimerMoment>();
    qDBusRegisterMetaType<QList<TimerMoment>>();
}

void SystemdAnnouncer::scheduleAnnouncer(const std::optional<QDateTime>& moment) {
    m_moment = moment;
    m_made = std::max(m_runLoop.sinceBoot(), m_made + 1ms);
    const QString name = announcerName(m_made);
    if (!moment)
        return stopBefore(name);
    // The manager does nothing about a moment that is past by the time it hears of it.
    const QDateTime soonest = m_runLoop.now().addSecs(2);
    ask(start(name, std::max(*moment, soonest)), [this, name](const QDBusMessage& reply) {
        const bool isFailing = reply.type() == QDBusMessage::ErrorMessage;
        if (isFailing && !m_isFailing)
            qCWarning(logPlatform).noquote()
                << "no user manager starts announcements, alarms are silent while Dorvane does not "
                   "run:"
                << reply.errorMessage();
        m_isFailing = isFailing;
        if (!isFailing)
            stopBefore(name);
    });
}

void SystemdAnnouncer::setBus(QDBusConnection bus) {
    m_bus = std::move(bus);
    scheduleAnnouncer(m_moment);
}

void SystemdAnnouncer::startAtLogin(const UserFolders& folders) {
    m_worker.start(
        [folders, command = m_command, bus = m_bus] { settleLoginUnit(folders, command, bus); });
}

QDBusMessage SystemdAnnouncer::start(const QString& name, const QDateTime& moment) const {
    const UnitCommand command{m_command.program,
                              {QStringLiteral("dorvane"), QStringLiteral("--announce")}};
    const QString description =
        QStringLiteral("Announces alarms that are due while Dorvane does not run");
    const QList<UnitProperty> timer{
        property("Description", description),
        property("TimersCalendar", QVariant::fromValue(QList<TimerMoment>{
                                       {QStringLiteral("OnCalendar"), calendarOf(moment)}})),
        property("OnClockChange", true), property("AccuracyUSec", accuracy)};
    const QList<UnitProperty> service{
        property("Description", description),
        property("Type", QStringLiteral("exec")),
        property("ExecStart", QVariant::fromValue(QList<UnitCommand>{command})),
        property("Environment", m_command.environment),
        property("NoNewPrivileges", true),
        property("UMask", userOnly),
        property("RuntimeMaxUSec", longest),
        property("CollectMode", QStringLiteral("inactive-or-failed"))};
    return managerCall(QStringLiteral("StartTransientUnit"),
                       {name + timerSuffix, QStringLiteral("replace"), QVariant::fromValue(timer),
                        QVariant::fromValue(
                            QList<UnitDescription>{{name + QStringLiteral(".service"), service}})});
}

// What is older than the timer of this name, whichever process has made it.
void SystemdAnnouncer::stopBefore(const QString& name) {
    ask(managerCall(QStringLiteral("ListUnitsByPatterns"),
                    {QStringList(), QStringList(everyAnnouncerTimer)}),
        [this, name](const QDBusMessage& reply) { stop(reply, name); });
}

void SystemdAnnouncer::stop(const QDBusMessage& listed, const QString& name) {
    if (listed.type() == QDBusMessage::ErrorMessage)
        return;
    const auto units = listed.arguments().value(0).value<QDBusArgument>();
    units.beginArray();
    while (!units.atEnd()) {
        QString unit;
        units.beginStructure();
        units >> unit; // and nine more fields
        units.endStructure();
        if (unit < name)
            ask(managerCall(QStringLiteral("StopUnit"), {unit, QStringLiteral("replace")}),
                [](const QDBusMessage&) {});
    }
    units.endArray();
}

void SystemdAnnouncer::ask(const QDBusMessage& call,
                           std::function<void(const QDBusMessage& reply)> answered) {
    if (!m_bus.isConnected()) // nobody would ever answer
        return answered(QDBusMessage::createError(QDBusError::Disconnected, QString()));
    ++m_unanswered;
    const auto watcher = new QDBusPendingCallWatcher(
        m_bus.asyncCall(call, static_cast<int>(patience.count())), &m_context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_context,
                     [this, watcher, answered = std::move(answered)] {
                         watcher->deleteLater();
                         answered(watcher->reply());
                         if (--m_unanswered == 0 && m_settled)
                             std::exchange(m_settled, {})();
                     });
}

void SystemdAnnouncer::whenSettled(std::function<void()> settled) {
    if (m_unanswered == 0)
        return m_runLoop.defer(std::move(settled));
    m_settled = std::move(settled);
}

} // namespace dorvane
