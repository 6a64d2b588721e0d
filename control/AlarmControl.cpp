// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/AlarmControl.h"

#include "control/AlarmReport.h"
#include "core/AlarmBuilding.h"
#include "core/AlarmKeys.h"
#include "core/Clock.h"
#include "core/NotificationNames.h"
#include "core/Rearm.h"
#include "core/StoredAlarms.h"

#include <algorithm>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

// More than anybody sets, and few enough for every look at them to be short.
constexpr std::size_t mostAlarms = 10'000;

Refusal refusal(const char* name, const QString& reason) {
    return {QString::fromLatin1(name), reason};
}

Refusal tooMany() {
    return refusal("TooMany", QStringLiteral("%1 alarms run already").arg(mostAlarms));
}

RemoteListener::Event eventOf(RingEvent event) {
    switch (event) {
    case RingEvent::Rings:
        return RemoteListener::Event::Rang;
    case RingEvent::Snoozed:
        return RemoteListener::Event::Snoozed;
    case RingEvent::Cleared:
        return RemoteListener::Event::Cleared;
    case RingEvent::Unanswered:
        break;
    }
    return RemoteListener::Event::WentUnanswered;
}

} // namespace

AlarmControl::AlarmControl(Surroundings surroundings)
    : m_surroundings(std::move(surroundings))
    , m_store(
          m_surroundings.runLoop, 250ms, [this] { store(); }, RunLoopMode::Common)
    , m_stateChanged(
          m_surroundings.runLoop, 100ms, [this] { tellState(); }, RunLoopMode::Common)
    , m_alarmsChanged(
          m_surroundings.runLoop, 100ms,
          [this] {
              if (m_listener.alarmsChanged)
                  m_listener.alarmsChanged();
          },
          RunLoopMode::Common)
    , m_storedChanged(
          m_surroundings.runLoop, 100ms,
          [this] {
              if (m_listener.storedAlarmsChanged)
                  m_listener.storedAlarmsChanged();
          },
          RunLoopMode::Common) {
    m_alarmsObservation =
        m_surroundings.notifications.addObserver(alarmsDidChangeNotification, [this](const void*) {
            m_alarmsChanged.request();
            m_stateChanged.request();
        });
    m_storedObservation = m_surroundings.notifications.addObserver(
        storedAlarmsDidChangeNotification, [this](const void*) { m_storedChanged.request(); });
}

// -- Making alarms --------------------------------------------------------------------------------

// One with a title is an alarm as the editor makes it: the menu shows its title.
void AlarmControl::addTimer(quint32 minutes, const QString& title, const Made& made) {
    const QString wanted = title.isEmpty() ? QStringLiteral("default") : title;
    const auto request =
        readRequest({{key::title, wanted}, {key::minutes, minutes}}, m_surroundings.runLoop.now());
    if (const Refusal* const refused = std::get_if<Refusal>(&request))
        return made(*refused);
    if (!title.isEmpty())
        return findSound(std::get<AlarmRequest>(request), made);
    made(take(quickAlarm(int(minutes), m_surroundings.pingPath(), m_surroundings.runLoop.now())));
}

void AlarmControl::addAlarm(const QVariantMap& description, const Made& made) {
    const auto request = readRequest(description, m_surroundings.runLoop.now());
    if (const Refusal* const refused = std::get_if<Refusal>(&request))
        return made(*refused);
    findSound(std::get<AlarmRequest>(request), made);
}

void AlarmControl::findSound(const AlarmRequest& request, const Made& made) {
    AlarmForm form = request.form;
    const Found withSound = [this, weak = m_lifeline.weak(), form, voice = request.voice,
                             made](const std::variant<QString, Refusal>& found) mutable {
        if (weak.isCut())
            return;
        if (const Refusal* const refused = std::get_if<Refusal>(&found))
            return made(*refused);
        form.soundPath = std::get<QString>(found);
        form.isPlaySound = !form.soundPath.isEmpty();
        findVoice(form, voice, made);
    };
    if (request.sound && !request.sound->isEmpty())
        m_surroundings.findSound(*request.sound, withSound);
    else
        withSound(request.sound ? QString() : m_surroundings.pingPath());
}

void AlarmControl::findVoice(AlarmForm form, const QString& voice, const Made& made) {
    if (voice.isEmpty())
        return build(form, made);
    form.isSpeakAlarmName = true;
    m_surroundings.findVoice(voice, [this, weak = m_lifeline.weak(), form,
                                     made](const std::variant<QString, Refusal>& found) mutable {
        if (weak.isCut())
            return;
        if (const Refusal* const refused = std::get_if<Refusal>(&found))
            return made(*refused);
        form.voiceName = std::get<QString>(found);
        build(form, made);
    });
}

void AlarmControl::build(const AlarmForm& form, const Made& made) {
    if (const FormFaults faults = faultsOf(form); !faults.message.isEmpty())
        return made(refusal("InvalidValue", faults.message.trimmed()));
    const QDateTime now = m_surroundings.runLoop.now();
    made(take(alarmBuiltFrom(form, now, weekdayName(now.date()), nullptr)));
}

AlarmAnswer AlarmControl::take(const AlarmPtr& alarm) {
    if (m_surroundings.clock.allAlarms().size() >= mostAlarms)
        return tooMany();
    m_toStore.push_back(alarm);
    m_store.request();
    m_surroundings.schedule(alarm);
    return alarm->identity();
}

// Titles that come in a row reach the library, and with it the disk, together.
void AlarmControl::store() {
    m_surroundings.storedAlarms.put(std::exchange(m_toStore, {}),
                                    instantNow(m_surroundings.runLoop));
}

AlarmAnswer AlarmControl::startStored(const QString& title) {
    m_store.finish();
    const auto stored = m_surroundings.storedAlarms.alarms().value_or(std::vector<AlarmPtr>());
    const auto found = std::find_if(stored.begin(), stored.end(),
                                    [&](const AlarmPtr& alarm) { return alarm->title() == title; });
    if (found == stored.end())
        return refusal("NoSuchAlarm", QStringLiteral("no alarm is stored as \"%1\"").arg(title));
    if (m_surroundings.clock.allAlarms().size() >= mostAlarms)
        return tooMany();
    const QDateTime now = m_surroundings.runLoop.now();
    const RearmDecision decision = rearmAtStart(**found, now, weekdayName(now.date()));
    if (decision.outcome == RearmDecision::Outcome::Remove)
        return refusal("PastDate", QStringLiteral("the moment of \"%1\" has passed").arg(title));
    applyRearm(decision, **found);
    m_surroundings.schedule(*found);
    return (*found)->identity();
}

// -- Lists ----------------------------------------------------------------------------------------

QList<QVariantMap> AlarmControl::runningAlarms() {
    const Instant now = instantNow(m_surroundings.runLoop);
    QList<QVariantMap> reports;
    for (const AlarmPtr& alarm : m_surroundings.clock.allAlarms())
        reports << runningReportOf(*alarm, now);
    return reports;
}

QList<QVariantMap> AlarmControl::storedAlarms() {
    m_store.finish();
    const Instant now = instantNow(m_surroundings.runLoop);
    QList<QVariantMap> reports;
    for (const AlarmPtr& alarm :
         m_surroundings.storedAlarms.alarms().value_or(std::vector<AlarmPtr>()))
        reports << reportOf(*alarm, now);
    return reports;
}

// -- Answering and ending -------------------------------------------------------------------------

Outcome AlarmControl::onRunning(const QString& identity,
                                const std::function<Outcome(const AlarmPtr& alarm)>& action) const {
    const auto& alarms = m_surroundings.clock.allAlarms();
    const auto found = std::find_if(alarms.begin(), alarms.end(), [&](const AlarmPtr& alarm) {
        return alarm->identity() == identity;
    });
    if (found == alarms.end())
        return refusal("NoSuchAlarm", QStringLiteral("no alarm runs as \"%1\"").arg(identity));
    return action(AlarmPtr(*found)); // it may leave the list
}

Outcome AlarmControl::snooze(const QString& identity) {
    return onRunning(identity, [this](const AlarmPtr& alarm) -> Outcome {
        if (!alarm->isTriggered())
            return refusal("NotRinging",
                           QStringLiteral("\"%1\" does not ring").arg(alarm->title()));
        m_surroundings.snooze(alarm);
        return std::nullopt;
    });
}

Outcome AlarmControl::clear(const QString& identity) {
    return onRunning(identity, [this](const AlarmPtr& alarm) -> Outcome {
        if (alarm->isTriggered())
            m_surroundings.clear(alarm);
        else
            m_surroundings.end(alarm);
        return std::nullopt;
    });
}

Outcome AlarmControl::remove(const QString& identity) {
    return onRunning(identity, [this](const AlarmPtr& alarm) -> Outcome {
        m_surroundings.remove(alarm);
        return std::nullopt;
    });
}

Outcome AlarmControl::removeStored(const QString& title) {
    m_store.finish();
    const auto stored = m_surroundings.storedAlarms.alarms().value_or(std::vector<AlarmPtr>());
    if (!alarmTitles(stored).contains(title))
        return refusal("NoSuchAlarm", QStringLiteral("no alarm is stored as \"%1\"").arg(title));
    m_surroundings.storedAlarms.removeAlarm(title);
    return std::nullopt;
}

// -- Breaks ---------------------------------------------------------------------------------------

Outcome AlarmControl::startBreaks() {
    if (m_surroundings.breaksRun())
        return refusal("BreaksRun", QStringLiteral("breaks run already"));
    m_surroundings.startBreaks();
    return std::nullopt;
}

Outcome AlarmControl::onBreaks(const std::function<void()>& action) const {
    if (!m_surroundings.breaksRun())
        return refusal("NoBreaksRun", QStringLiteral("no breaks run"));
    action();
    return std::nullopt;
}

Outcome AlarmControl::stopBreaks() {
    return onBreaks(m_surroundings.stopBreaks);
}

Outcome AlarmControl::skipBreak() {
    return onBreaks(m_surroundings.skipBreak);
}

// -- What is told ---------------------------------------------------------------------------------

RemoteState AlarmControl::state() const {
    const Instant now = instantNow(m_surroundings.runLoop);
    RemoteState state;
    std::optional<Instant> next;
    for (const AlarmPtr& alarm : m_surroundings.clock.allAlarms()) {
        const std::optional<Instant> due = alarm->due(now);
        if (alarm->isTriggered()) {
            state.ringing << alarm->identity();
        } else if (due && (!next || *due < *next)) {
            next = due;
            state.nextAlarm = alarm->identity();
        }
    }
    if (next)
        state.nextDue = localDateTimeOf(*next).toSecsSinceEpoch();
    state.breaksRun = m_surroundings.breaksRun();
    return state;
}

void AlarmControl::tellState() {
    const RemoteState before = std::exchange(m_told, state());
    if (before != m_told && m_listener.stateChanged)
        m_listener.stateChanged(before, m_told);
}

// Later, when what the alarm does next is settled, and never in the way of ringing.
void AlarmControl::befell(RingEvent event, const AlarmPtr& alarm) {
    m_surroundings.runLoop.defer(
        m_lifeline.guard([event = eventOf(event), identity = alarm->identity(),
                          title = alarm->title()](AlarmControl& self) {
            if (self.m_listener.befell)
                self.m_listener.befell(event, identity, title);
            self.m_stateChanged.request();
            self.m_alarmsChanged.request();
        }));
}

} // namespace dorvane
