// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/Journal.h"

#include "core/Clock.h"
#include "core/NotificationNames.h"
#include "core/RestoredAlarms.h"
#include "platform/StateFile.h"

#include <algorithm>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

using What = JournalEvent::What;

constexpr RunLoop::Milliseconds pause = 1s;

std::vector<RunningAlarm> runningOf(const std::vector<AlarmPtr>& alarms, Instant now) {
    std::vector<RunningAlarm> list;
    for (const AlarmPtr& alarm : alarms)
        if (const auto due = alarm->due(now))
            list.push_back({alarm, *due});
    return list;
}

// With records that nobody changes while another thread reads them.
JournalContents asTheyAre(JournalContents contents) {
    const auto keep = [](AlarmPtr& alarm) {
        const AlarmPtr kept = alarm->copy({});
        kept->setTime(alarm->storedTime());
        kept->setRunTime(alarm->storedRunTime());
        alarm = kept;
    };
    for (RunningAlarm& running : contents.running)
        keep(running.alarm);
    for (MissedAlarm& missed : contents.missed)
        keep(missed.alarm);
    return contents;
}

} // namespace

Journal::Journal(Surroundings surroundings)
    : m_surroundings(surroundings)
    , m_format(surroundings.format)
    , m_start(surroundings.runLoop.uptime())
    , m_alarmsDidChange(surroundings.notifications.addObserver(
          alarmsDidChangeNotification, [this](const void*) { changed(); }, &surroundings.clock)) {}

void Journal::open(const Restored& restored) {
    if (m_isOpen)
        return;
    m_isOpen = true;
    const auto data = m_surroundings.file.read();
    auto [before, isComplete] = m_format.decode(data.value_or(QByteArray()));
    if (!data || !isComplete)
        m_mayWrite = m_surroundings.file.putAside();

    before.events.insert(before.events.end(), m_contents.events.begin(), m_contents.events.end());
    m_contents.events = std::move(before.events);
    m_contents.missed = std::move(before.missed);
    // After a crash the preferences are those of an earlier run: what was dropped may have rung.
    if (before.isOrderly && restored.hadStored)
        miss(runningOf(restored.dropped, now()), MissedAlarm::Reason::Passed);
    else
        miss(missingFrom(m_surroundings.clock.allAlarms(), std::move(before.running)),
             MissedAlarm::Reason::Lost);
    changed();
    if (!m_contents.missed.empty() && m_missedChanged)
        m_missedChanged();
}

void Journal::miss(const std::vector<RunningAlarm>& missing, MissedAlarm::Reason reason) {
    const What what = reason == MissedAlarm::Reason::Lost ? What::Lost : What::Passed;
    for (const RunningAlarm& running : missing) {
        m_contents.missed.push_back({running.alarm, running.due, reason});
        add(what, running.due, running.alarm->title());
    }
}

void Journal::unmiss(const Alarm& alarm) {
    auto& missed = m_contents.missed;
    const auto found = std::find_if(missed.begin(), missed.end(), [&](const MissedAlarm& each) {
        return isSameAlarm(*each.alarm, alarm);
    });
    if (found == missed.end())
        return;
    std::erase_if(m_contents.events, [&](const JournalEvent& event) {
        return event.due == found->due && event.text == alarm.title() &&
               (event.what == What::Passed || event.what == What::Lost);
    });
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

void Journal::noteCrash(const QString& report) {
    add(What::Crashed, now(), report);
    changed();
}

void Journal::answered() {
    m_contents.missed.clear();
    changed();
}

void Journal::correct(const std::vector<AlarmPtr>& putBack, const std::vector<AlarmPtr>& dropped) {
    if (!m_isOpen)
        return; // open() is told what is so by then
    for (const AlarmPtr& alarm : putBack)
        unmiss(*alarm);
    miss(runningOf(dropped, now()), MissedAlarm::Reason::Passed);
    changed();
    if (m_missedChanged)
        m_missedChanged();
}

void Journal::close(const Restored& restored) {
    open(restored);
    write(true);
    m_surroundings.file.flush();
}

Instant Journal::now() const {
    return instantNow(m_surroundings.runLoop);
}

void Journal::add(JournalEvent::What what, Instant due, const QString& text) {
    m_contents.events.push_back({what, now(), due, text});
}

// Not before the clock can be trusted: one that is wrong at a login must not cost a month.
void Journal::forgetOld() {
    auto& events = m_contents.events;
    if (m_surroundings.runLoop.uptime() - m_start > RestoredAlarms::doubt)
        std::erase_if(events, [start = now() - memory](const JournalEvent& event) {
            return event.when < start;
        });
    if (events.size() > mostEvents)
        events.erase(events.begin(), events.end() - mostEvents);
}

void Journal::changed() {
    if (!m_isOpen || m_writeTimer)
        return;
    m_writeTimer = m_surroundings.runLoop.scheduleOnce(
        m_nextWrite - m_surroundings.runLoop.uptime(), [this] { write(false); },
        RunLoopMode::Common);
}

void Journal::write(bool isOrderly) {
    m_writeTimer.cancel();
    forgetOld();
    m_nextWrite = m_surroundings.runLoop.uptime() + pause;
    if (!m_mayWrite)
        return;
    JournalContents contents = m_contents;
    contents.isOrderly = isOrderly;
    contents.running = runningOf(m_surroundings.clock.allAlarms(), now());
    m_surroundings.file.write([format = m_format, contents = asTheyAre(std::move(contents))] {
        return format.encode(contents);
    });
}

} // namespace dorvane
