// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/AlarmControl.h"

#include "control/AlarmReport.h"
#include "core/AlarmBuilding.h"
#include "core/AlarmKeys.h"
#include "core/AlarmPause.h"
#include "core/Clock.h"
#include "core/LastDeletion.h"
#include "core/NotificationNames.h"
#include "core/Rearm.h"
#include "core/ShownTitle.h"
#include "core/StoredAlarms.h"

#include <algorithm>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

// More than anybody sets, and few enough for every look at them to be short.
constexpr std::size_t mostAlarms = 10'000;

constexpr quint32 longestSnooze = 24 * 60; // minutes

// A sound may lie on a disk that does not answer, and callers wait for ten seconds.
constexpr auto patience = 8s;
constexpr std::size_t mostMakings = 200; // that wait for a sound or a voice, answered or not
constexpr auto ageOfState = 100ms;
constexpr quint32 mostNext = 100;

Refusal refusal(const char* name, const QString& reason) {
    return {QString::fromLatin1(name), reason};
}

Refusal tooMany() {
    return refusal("TooMany", QStringLiteral("%1 alarms run already").arg(mostAlarms));
}

Refusal noneRuns(const QString& identity) {
    return refusal("NoSuchAlarm", QStringLiteral("no alarm runs as \"%1\"").arg(identity));
}

Refusal noneIsStored(const QString& title) {
    return refusal("NoSuchAlarm", QStringLiteral("no alarm is stored as \"%1\"").arg(title));
}

AlarmForm formOf(const Alarm& alarm, const QDateTime& now) {
    return formFilledFrom(alarm, newAlarmForm(now, snoozeLengths.front()), instantOf(now));
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

// An alarm that is being made.
struct AlarmControl::Making {
    AlarmRequest request;
    QDateTime asked;
    std::optional<Asker> asker; // none once it was answered, or has gone
    AlarmPtr edited;            // the alarm that it is to replace, or null
    RunLoopTimer patience;

    void answer(const AlarmAnswer& answer) {
        patience.cancel();
        if (const auto answering = std::exchange(asker, std::nullopt))
            answering->made(answer);
    }
};

AlarmControl::AlarmControl(Surroundings surroundings)
    : m_surroundings(std::move(surroundings))
    , m_store(
          m_surroundings.runLoop, 100ms, [this] { store(); }, RunLoopMode::Common)
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
            changed();
        });
    m_storedObservation = m_surroundings.notifications.addObserver(
        storedAlarmsDidChangeNotification, [this](const void*) { m_storedChanged.request(); });
}

// -- Making alarms --------------------------------------------------------------------------------

// One with a title is an alarm as the editor makes it.
void AlarmControl::addTimer(const Asker& asker, quint32 minutes, const QString& title) {
    const QString wanted = title.isEmpty() ? quickTitle : title;
    const auto request = read({{key::title, wanted}, {key::minutes, minutes}});
    if (const Refusal* const refused = std::get_if<Refusal>(&request))
        return asker.made(*refused);
    if (!title.isEmpty())
        return make(std::get<AlarmRequest>(request), asker);
    asker.stillAsked([weak = m_lifeline.weak(), minutes, made = asker.made](bool isAsked) {
        AlarmControl* const self = weak.get();
        if (!self || !isAsked)
            return;
        const Surroundings& around = self->m_surroundings;
        made(self->take(quickAlarm(int(minutes), around.ringDefaults(), around.runLoop.now())));
    });
}

void AlarmControl::addAlarm(const Asker& asker, const QVariantMap& description) {
    const auto request = read(description);
    if (const Refusal* const refused = std::get_if<Refusal>(&request))
        return asker.made(*refused);
    make(std::get<AlarmRequest>(request), asker);
}

std::variant<AlarmRequest, Refusal> AlarmControl::read(const QVariantMap& description) const {
    QVariantMap whole{{key::snooze, m_surroundings.ringDefaults().snooze}};
    whole.insert(description);
    return readRequest(whole, m_surroundings.runLoop.now());
}

Outcome AlarmControl::quick() {
    m_surroundings.quick();
    return std::nullopt;
}

void AlarmControl::editAlarm(const Asker& asker, const QString& identity,
                             const QVariantMap& changes) {
    if (const AlarmPtr alarm = running(identity))
        return edit(asker, alarm, changes);
    asker.made(noneRuns(identity));
}

void AlarmControl::editStored(const Asker& asker, const QString& title,
                              const QVariantMap& changes) {
    if (const AlarmPtr alarm = stored(title))
        return edit(asker, alarm, changes);
    asker.made(noneIsStored(title));
}

void AlarmControl::edit(const Asker& asker, const AlarmPtr& alarm, const QVariantMap& changes) {
    const QDateTime now = m_surroundings.runLoop.now();
    const auto request = readChanges(changes, formOf(*alarm, now), now);
    if (const Refusal* const refused = std::get_if<Refusal>(&request))
        return asker.made(*refused);
    make(std::get<AlarmRequest>(request), asker, alarm);
}

void AlarmControl::make(const AlarmRequest& request, const Asker& asker, const AlarmPtr& edited) {
    std::erase_if(m_makings, [](const auto& making) { return making.expired(); });
    if (m_makings.size() >= mostMakings)
        return asker.made(refusal("Busy", QStringLiteral("too many requests are waiting")));
    const auto making =
        std::make_shared<Making>(Making{request, m_surroundings.runLoop.now(), asker, edited, {}});
    making->patience = m_surroundings.runLoop.scheduleOnce(
        patience,
        [weak = std::weak_ptr(making)] {
            if (const auto late = weak.lock())
                late->answer(
                    refusal("TooSlow", QStringLiteral("the sound or the voice could not be "
                                                      "looked up within 8 seconds")));
        },
        RunLoopMode::Common);
    m_makings.push_back(making);
    findSound(making);
}

void AlarmControl::findSound(const MakingPtr& making) {
    const Found withSound = [this, weak = m_lifeline.weak(),
                             making](const std::variant<QString, Refusal>& found) {
        if (weak.isCut() || !making->asker)
            return;
        if (const Refusal* const refused = std::get_if<Refusal>(&found))
            return making->answer(*refused);
        making->request.form.soundPath = std::get<QString>(found);
        making->request.form.isPlaySound = !making->request.form.soundPath.isEmpty();
        findVoice(making);
    };
    const auto& sound = making->request.sound;
    if (!sound && making->edited)
        return findVoice(making);
    if (sound && !sound->isEmpty())
        m_surroundings.findSound(*sound, withSound);
    else
        withSound(sound ? QString() : m_surroundings.ringDefaults().soundPath);
}

void AlarmControl::findVoice(const MakingPtr& making) {
    if (making->request.voice.isEmpty())
        return build(making);
    making->request.form.isSpeakAlarmName = true;
    m_surroundings.findVoice(
        making->request.voice,
        [this, weak = m_lifeline.weak(), making](const std::variant<QString, Refusal>& found) {
            if (weak.isCut() || !making->asker)
                return;
            if (const Refusal* const refused = std::get_if<Refusal>(&found))
                return making->answer(*refused);
            making->request.form.voiceName = std::get<QString>(found);
            build(making);
        });
}

void AlarmControl::build(const MakingPtr& making) {
    const AlarmForm& form = making->request.form;
    if (const FormFaults faults = faultsOf(form); !faults.message.isEmpty())
        return making->answer(refusal("InvalidValue", faults.message.trimmed()));
    std::optional<EditedAlarm> edited;
    if (const AlarmPtr& former = making->edited)
        edited.emplace(
            EditedAlarm{*former, making->request.isTimeSaid ||
                                     !asksForTheSameTime(form, formOf(*former, making->asked))});
    const AlarmPtr alarm =
        alarmBuiltFrom(form, making->asked, weekdayName(making->asked.date()), edited);
    const StillAsked stillAsked = making->asker->stillAsked; // the asker may go meanwhile
    stillAsked([weak = m_lifeline.weak(), making, alarm](bool isAsked) {
        if (!isAsked)
            making->asker.reset();
        if (AlarmControl* const self = weak.get(); self && making->asker)
            making->edited ? self->finishEditing(*making, alarm)
                           : self->finishMaking(*making, alarm);
    });
}

// What is to ring after so long counts from the request, however long the sound was looked for.
void AlarmControl::finishMaking(Making& making, const AlarmPtr& alarm) {
    const AlarmForm& form = making.request.form;
    if (making.request.isStored &&
        !m_surroundings.storedAlarms.hasRoomFor(form.title, m_toStore.size()))
        return making.answer(refusal(
            "TooMany", QStringLiteral("%1 alarms are stored already").arg(StoredAlarms::most)));
    const AlarmAnswer taken = take(alarm);
    if (std::holds_alternative<QString>(taken)) {
        const QDateTime start = making.asked.addSecs(-making.request.counted.count());
        if (form.row == Alarm::Relative && start < m_surroundings.runLoop.now()) {
            alarm->setRunTime(start);
            m_surroundings.clock.alarmDidChange();
        }
        if (making.request.isStored) {
            m_toStore.push_back(alarm);
            m_store.request();
        }
    }
    making.answer(taken);
}

void AlarmControl::finishEditing(Making& making, const AlarmPtr& alarm) {
    const AlarmPtr& former = making.edited;
    const Instant now = instantNow(m_surroundings.runLoop);
    StoredAlarms& library = m_surroundings.storedAlarms;
    const bool runs = former->isActive();
    if (runs && running(former->identity()) != former)
        return making.answer(noneRuns(former->identity()));
    if (making.request.isTimeSaid && alarm->isRelative())
        alarm->setRunTime(making.asked.addSecs(-making.request.counted.count()));
    if (const auto due = alarm->due(now); runs && (!due || *due <= now))
        return making.answer(
            refusal("PastDate",
                    QStringLiteral("\"time\": it is over for this alarm; say when it is next")));
    if (!library.hasRoomFor(*former, alarm->title()))
        return making.answer(refusal("TooMany", noRoomText()));
    if (!runs || making.request.isStored || library.hasEntryOf(*former))
        library.putEdited(*alarm, *former, now);
    if (runs)
        m_surroundings.replace(former, alarm);
    making.answer(runs ? alarm->identity() : alarm->title());
}

bool AlarmControl::hasRoom() const {
    return m_surroundings.clock.allAlarms().size() < mostAlarms;
}

AlarmAnswer AlarmControl::take(const AlarmPtr& alarm) {
    if (!hasRoom())
        return tooMany();
    m_surroundings.schedule(alarm);
    return alarm->identity();
}

void AlarmControl::whenSaved(const Saved& saved) {
    m_toldWhenSaved.push_back(saved);
    m_store.request();
}

// What comes in a row reaches the library, and the disk, together.
void AlarmControl::store() {
    if (!m_toStore.empty())
        m_surroundings.storedAlarms.put(std::exchange(m_toStore, {}),
                                        instantNow(m_surroundings.runLoop));
    if (m_toldWhenSaved.empty())
        return;
    m_surroundings.save([told = std::exchange(m_toldWhenSaved, {})](const auto& problem) {
        for (const Saved& saved : told)
            saved(problem);
    });
}

AlarmPtr AlarmControl::stored(const QString& title) {
    m_store.finish();
    const auto stored = m_surroundings.storedAlarms.alarms().value_or(std::vector<AlarmPtr>());
    const auto found = std::find_if(stored.begin(), stored.end(),
                                    [&](const AlarmPtr& alarm) { return alarm->title() == title; });
    return found == stored.end() ? nullptr : *found;
}

AlarmAnswer AlarmControl::startStored(const QString& title) {
    const AlarmPtr found = stored(title);
    if (!found)
        return noneIsStored(title);
    if (!found->due(instantNow(m_surroundings.runLoop)))
        return refusal("NoTime",
                       QStringLiteral("the time of \"%1\" could not be read: edit it").arg(title));
    if (!hasRoom())
        return tooMany();
    const AlarmPtr started = m_surroundings.start(*found);
    if (!started)
        return refusal("PastDate", QStringLiteral("the moment of \"%1\" has passed").arg(title));
    return started->identity();
}

// -- Lists ----------------------------------------------------------------------------------------

AlarmListing AlarmControl::runningAlarms() {
    const auto& alarms = m_surroundings.clock.allAlarms();
    return {alarms.size(), [alarms, now = instantNow(m_surroundings.runLoop)](std::size_t index) {
                return runningReportOf(*alarms[index], now);
            }};
}

AlarmListing AlarmControl::storedAlarms() {
    m_store.finish();
    const auto alarms = m_surroundings.storedAlarms.alarms().value_or(std::vector<AlarmPtr>());
    return {alarms.size(), [alarms, now = instantNow(m_surroundings.runLoop)](std::size_t index) {
                return storedReportOf(*alarms[index], now);
            }};
}

AlarmListing AlarmControl::nextAlarms(quint32 most) {
    const Instant now = instantNow(m_surroundings.runLoop);
    std::vector<std::pair<Instant, AlarmPtr>> soonest;
    for (const AlarmPtr& alarm : m_surroundings.clock.allAlarms())
        soonest.emplace_back(nextRing(*alarm, now).value_or(Instant::max()), alarm);
    const auto count = std::min<std::size_t>(std::min(most, mostNext), soonest.size());
    std::partial_sort(soonest.begin(), soonest.begin() + std::ptrdiff_t(count), soonest.end(),
                      [](const auto& a, const auto& b) {
                          return std::pair(a.first, a.second->title()) <
                                 std::pair(b.first, b.second->title());
                      });
    soonest.resize(count);
    return {count, [soonest, now](std::size_t index) {
                return runningReportOf(*soonest[index].second, now);
            }};
}

// -- Answering and ending -------------------------------------------------------------------------

AlarmPtr AlarmControl::running(const QString& identity) const {
    const auto& alarms = m_surroundings.clock.allAlarms();
    const auto found = std::find_if(alarms.begin(), alarms.end(), [&](const AlarmPtr& alarm) {
        return alarm->identity() == identity;
    });
    return found == alarms.end() ? nullptr : *found;
}

Outcome AlarmControl::onRunning(const QString& identity,
                                const std::function<Outcome(const AlarmPtr& alarm)>& action) const {
    const AlarmPtr alarm = running(identity); // which may leave the list
    return alarm ? action(alarm) : noneRuns(identity);
}

Outcome AlarmControl::snoozeRinging(const QString& identity, std::optional<quint32> minutes) const {
    return onRunning(identity, [this, minutes](const AlarmPtr& alarm) -> Outcome {
        if (!alarm->isTriggered())
            return refusal("NotRinging",
                           QStringLiteral("\"%1\" does not ring").arg(alarm->title()));
        m_surroundings.snooze(alarm, minutes ? qint64(*minutes) : alarm->snoozeTime());
        return std::nullopt;
    });
}

Outcome AlarmControl::snooze(const QString& identity) {
    return snoozeRinging(identity, std::nullopt);
}

Outcome AlarmControl::snoozeFor(const QString& identity, quint32 minutes) {
    if (minutes < 1 || minutes > longestSnooze)
        return refusal("InvalidValue",
                       QStringLiteral("it can be snoozed for 1 to %1 minutes").arg(longestSnooze));
    return snoozeRinging(identity, minutes);
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
    const AlarmPtr found = stored(title);
    if (!found)
        return noneIsStored(title);
    m_surroundings.remove(found);
    return std::nullopt;
}

Outcome AlarmControl::skip(const QString& identity) {
    return onRunning(identity, [this](const AlarmPtr& alarm) -> Outcome {
        if (alarm->isTriggered())
            return refusal("Rings", QStringLiteral("\"%1\" rings: clear it").arg(alarm->title()));
        if (!m_surroundings.skip(alarm))
            return refusal(
                "NothingToSkip",
                QStringLiteral("\"%1\" does not come again, or is paused").arg(alarm->title()));
        return std::nullopt;
    });
}

Outcome AlarmControl::pause(qint64 until) {
    constexpr qint64 year3000 = 32'503'680'000;
    const Instant end =
        until == 0 || until > year3000 ? untilResumed : Instant(std::chrono::seconds(until));
    if (end <= instantNow(m_surroundings.runLoop))
        return refusal("PastDate", QStringLiteral("the pause would have ended already"));
    m_surroundings.pause.pauseUntil(end);
    return std::nullopt;
}

Outcome AlarmControl::resume() {
    if (!m_surroundings.pause.until())
        return refusal("NotPaused", QStringLiteral("no alarm is paused"));
    m_surroundings.pause.pauseUntil({});
    return std::nullopt;
}

AlarmAnswer AlarmControl::undo() {
    m_store.finish();
    const auto title = m_surroundings.lastDeletion.title();
    if (!title)
        return refusal("NothingToUndo", QStringLiteral("nothing was deleted since the start"));
    const QString problem = problemText(m_surroundings.lastDeletion.undo());
    if (!problem.isEmpty())
        return refusal("NotBack", QStringLiteral("\"%1\": %2").arg(*title, problem));
    return *title;
}

Outcome AlarmControl::showAlarms() {
    m_surroundings.showAlarms();
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
    const auto uptime = m_surroundings.runLoop.uptime();
    if (!m_state || uptime - m_stateLookedUp >= ageOfState) {
        m_state = lookedUpState();
        m_stateLookedUp = uptime;
    }
    return *m_state;
}

RemoteState AlarmControl::lookedUpState() const {
    const Instant now = instantNow(m_surroundings.runLoop);
    RemoteState state;
    std::optional<Instant> next;
    for (const AlarmPtr& alarm : m_surroundings.clock.allAlarms()) {
        const std::optional<Instant> due = nextRing(*alarm, now);
        if (alarm->isTriggered()) {
            state.ringing << alarm->identity();
        } else if (due && (!next || *due < *next)) {
            next = due;
            state.nextAlarm = alarm->identity();
        }
    }
    if (next)
        state.nextDue = localDateTimeOf(*next).toSecsSinceEpoch();
    const auto pausedUntil = m_surroundings.pause.until();
    state.isPaused = pausedUntil.has_value();
    if (pausedUntil && *pausedUntil != untilResumed)
        state.pausedUntil =
            std::chrono::floor<std::chrono::seconds>(pausedUntil->time_since_epoch()).count();
    state.breaksRun = m_surroundings.breaksRun();
    if (m_surroundings.breaks)
        state.breaks = m_surroundings.breaks();
    return state;
}

void AlarmControl::changed() {
    m_state.reset();
    m_stateChanged.request();
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
            self.changed();
            self.m_alarmsChanged.request();
        }));
}

} // namespace dorvane
