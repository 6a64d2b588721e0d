// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/Journal.h"

#include "core/Clock.h"
#include "core/NotificationNames.h"
#include "core/RestoredAlarms.h"

#include <QHash>
#include <QUuid>

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

using What = JournalEvent::What;

constexpr RunLoop::Milliseconds pause = 1s;
constexpr RunLoop::Milliseconds retry = 30s; // where a disk is full, mostly

void addRunning(JournalContents& contents, const std::vector<AlarmPtr>& alarms, Instant now) {
    for (const AlarmPtr& alarm : alarms)
        if (const auto due = alarm->due(now))
            contents.running.push_back({alarm, *due});
        else
            contents.undated.push_back(alarm);
}

// The newest of them, in their order.
void keepTheLast(std::vector<JournalEvent>& events) {
    std::size_t rings = 0;
    QHash<QString, std::size_t> misses; // by their titles
    std::vector<JournalEvent> kept;
    for (auto event = events.rbegin(); event != events.rend(); ++event) {
        const bool rang = event->what == What::Rang;
        if (rang ? ++rings <= Journal::mostRings : ++misses[event->text] <= Journal::mostOfOneTitle)
            kept.push_back(std::move(*event));
        if (kept.size() == Journal::mostEvents)
            break;
    }
    events.assign(std::move_iterator(kept.rbegin()), std::move_iterator(kept.rend()));
}

// With records that nobody changes while another thread reads them.
JournalContents asTheyAre(JournalContents contents) {
    for (RunningAlarm& running : contents.running)
        running.alarm = running.alarm->storedCopy();
    for (AlarmPtr& undated : contents.undated)
        undated = undated->storedCopy();
    for (MissedAlarm& missed : contents.missed)
        missed.alarm = missed.alarm->storedCopy();
    return contents;
}

} // namespace

Journal::Journal(Surroundings surroundings)
    : m_surroundings(std::move(surroundings))
    , m_format(m_surroundings.format)
    , m_start(m_surroundings.runLoop.uptime())
    , m_alarmsDidChange(m_surroundings.notifications.addObserver(
          alarmsDidChangeNotification, [this](const void*) { changed(); }, &m_surroundings.clock)) {
}

std::optional<ActiveAlarms::Left> Journal::read() {
    const auto data = m_surroundings.file.read();
    m_hadFile = data && !data->isEmpty();
    m_surroundings.file.setFound([this](const auto& found) {
        m_isOpen = false;
        m_writeTimer.cancel();
        const auto left = take(found);
        if (m_came)
            m_came(left);
    });
    return take(data);
}

std::optional<ActiveAlarms::Left> Journal::take(const std::optional<QByteArray>& data) {
    const auto decoded = m_format.decode(data.value_or(QByteArray()));
    m_mayWrite = (data && decoded.isComplete) || m_surroundings.file.putAside();
    m_before = decoded.contents;
    // A copy of ours from a while ago may have been put in its place: what ran then has gone on.
    const bool isOfOurs = m_before.line == m_contents.line && !m_before.line.isEmpty() &&
                          m_before.run <= m_contents.run;
    if (isOfOurs) {
        m_before.running.clear();
        m_before.missed.clear();
        m_before.pausedUntil.reset();
    } else if (!m_before.line.isEmpty() || m_contents.line.isEmpty()) {
        m_contents.run = m_before.run + 1;
        m_contents.line = m_before.line.isEmpty() ? QUuid::createUuid().toString() : m_before.line;
    }
    const std::set<JournalEvent> known(m_contents.events.begin(), m_contents.events.end());
    std::erase_if(m_before.events, [&](const auto& event) { return known.contains(event); });
    std::erase_if(m_before.missed, [this](const MissedAlarm& earlier) {
        return std::ranges::any_of(m_contents.missed, [&](const MissedAlarm& each) {
            return each.due == earlier.due && isSameAlarm(*each.alarm, *earlier.alarm);
        });
    });
    const auto putFirst = [](auto& all, auto& earlier) {
        all.insert(all.begin(), std::move_iterator(earlier.begin()),
                   std::move_iterator(earlier.end()));
    };
    putFirst(m_contents.events, m_before.events);
    putFirst(m_contents.missed, m_before.missed);
    return isOfOurs ? std::nullopt : decoded.left();
}

void Journal::open(const Restored& restored) {
    m_isOpen = true;
    m_announced = restored.announced;
    m_contents.storedMarks = restored.storedMarks;
    // After a crash the stored list is that of an earlier run: what was dropped may have rung.
    if (restored.areResumed || (m_before.isOrderly && restored.hadStored)) {
        miss(restored.decisions.dropped, MissedAlarm::Reason::Passed);
        notePassed(restored.decisions.movedOn);
    } else {
        miss(missingFrom(m_surroundings.clock.allAlarms(), std::move(m_before.running)),
             MissedAlarm::Reason::Lost);
    }
    m_before = {};
    changed();
    for (const auto& written : std::exchange(m_toSave, {}))
        save(written);
    if (!m_contents.missed.empty() && m_missedChanged)
        m_missedChanged();
}

void Journal::miss(const std::vector<RunningAlarm>& missing, MissedAlarm::Reason reason) {
    for (const RunningAlarm& running : missing) {
        if (reason != MissedAlarm::Reason::Passed || hasRung(running) || !wasAnnounced(running))
            m_contents.missed.push_back({running.alarm, running.due, reason});
        if (reason == MissedAlarm::Reason::Lost)
            add(What::Lost, running.due, running.alarm->title());
    }
    if (reason == MissedAlarm::Reason::Passed)
        notePassed(missing);
}

// One that rang when the program ended has not passed unheard.
void Journal::notePassed(const std::vector<RunningAlarm>& alarms) {
    for (const RunningAlarm& running : alarms)
        add(hasRung(running)        ? What::Unanswered
            : wasAnnounced(running) ? What::Announced
                                    : What::Passed,
            running.due, running.alarm->title());
}

bool Journal::wasAnnounced(const RunningAlarm& running) const {
    return wasShown(m_announced, running.due, running.alarm->title());
}

bool Journal::hasRung(const RunningAlarm& running) const {
    const auto& events = m_contents.events;
    return std::any_of(events.rbegin(), events.rend(), [&](const JournalEvent& event) {
        return event.what == What::Rang && event.due == running.due &&
               event.text == eventText(running.alarm->title());
    });
}

void Journal::unmiss(const Alarm& alarm) {
    auto& missed = m_contents.missed;
    const auto found = std::find_if(missed.begin(), missed.end(), [&](const MissedAlarm& each) {
        return isSameAlarm(*each.alarm, alarm);
    });
    if (found != missed.end())
        missed.erase(found);
}

void Journal::note(RingEvent event, const AlarmPtr& alarm) {
    const Instant due = alarm->due(now()).value_or(now());
    if (event == RingEvent::Rings)
        add(What::Rang, due, alarm->title());
    else if (event == RingEvent::Unanswered)
        add(What::Unanswered, due, alarm->title());
    changed();
}

void Journal::noteCameRoundAgain(const AlarmPtr& alarm, const QDateTime& due) {
    add(What::CameRoundAgain, instantOf(due), alarm->title());
    changed();
}

void Journal::noteCrash(const QString& report) {
    add(What::Crashed, now(), report);
    changed();
}

void Journal::answered() {
    m_contents.missed.clear();
    changed();
}

void Journal::correct(const RestoredAlarms::Decisions& changes) {
    if (!m_isOpen)
        return; // open() is told what is so by then
    std::erase_if(m_contents.events, [this](const JournalEvent& event) {
        return event.due > now() && (event.what == What::Passed || event.what == What::Lost ||
                                     event.what == What::Announced);
    });
    for (const AlarmPtr& alarm : changes.back)
        unmiss(*alarm);
    miss(changes.dropped, MissedAlarm::Reason::Passed);
    notePassed(changes.movedOn);
    changed();
    if (m_missedChanged)
        m_missedChanged();
}

void Journal::save(const StateFile::Written& written) {
    if (m_isOpen)
        write(false, written);
    else
        m_toSave.push_back(written);
}

void Journal::close(const QStringList& marks, bool isStored, Ends ends) {
    if (!m_isOpen)
        return;
    // A list that cannot be stored now may be stored later, or never.
    if (isStored)
        m_contents.storedMarks.clear();
    m_contents.storedMarks += marks;
    m_contents.storedMarks.removeDuplicates();
    write(isStored && ends == Ends::Now);
    m_surroundings.file.flush();
}

Instant Journal::now() const {
    return instantNow(m_surroundings.runLoop);
}

void Journal::add(JournalEvent::What what, Instant due, const QString& text) {
    m_contents.events.push_back({what, now(), due, eventText(text)});
}

// Not before the clock can be trusted: one that is wrong at a login must not cost a month.
void Journal::forgetOld() {
    auto& events = m_contents.events;
    if (m_surroundings.runLoop.uptime() - m_start > RestoredAlarms::doubt)
        std::erase_if(events, [start = now() - memory](const JournalEvent& event) {
            return event.when < start;
        });
    if (events.size() > mostOfOneTitle)
        keepTheLast(events);
}

// What waits to be tried again does not wait where there is more to write.
void Journal::changed(RunLoop::Milliseconds notBefore) {
    if (!m_isOpen || (m_writeTimer && (!m_isRetrying || notBefore > 0ms)))
        return;
    m_isRetrying = notBefore > 0ms;
    m_writeTimer = m_surroundings.runLoop.scheduleOnce(
        std::max(m_nextWrite - m_surroundings.runLoop.uptime(), notBefore),
        [this] { write(false); }, RunLoopMode::Common);
}

void Journal::write(bool isOrderly, const StateFile::Written& written) {
    m_writeTimer.cancel();
    forgetOld();
    m_nextWrite = m_surroundings.runLoop.uptime() + pause;
    if (!m_mayWrite) {
        if (written)
            written(QStringLiteral("a journal that cannot be read stands in the way"));
        return;
    }
    JournalContents contents = m_contents;
    contents.isOrderly = isOrderly;
    addRunning(contents, m_surroundings.clock.allAlarms(), now());
    if (m_surroundings.pausedUntil)
        contents.pausedUntil = m_surroundings.pausedUntil();
    m_surroundings.file.write(
        [format = m_format, contents = asTheyAre(std::move(contents))] {
            return format.encode(contents);
        },
        [weak = m_lifeline.weak(), written](const std::optional<QString>& problem) {
            if (Journal* const self = weak.get(); self && problem)
                self->changed(retry);
            if (written)
                written(problem);
        });
}

} // namespace dorvane
