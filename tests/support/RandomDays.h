// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmDelegate.h"
#include "core/Clock.h"
#include "core/NotificationNames.h"
#include "core/Rearm.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/VirtualRunLoop.h"
#include "tests/support/ZoneScope.h"

#include <array>
#include <random>
#include <set>

namespace dorvane::testing {

// Days around a night on which clocks are set, or any other, on which everything happens to
// somebody's alarms: the same for the same seed. A step never ends within the first millisecond of
// a second, between a tick on the second and one that comes a moment late.
class RandomDays : private AlarmDelegate {
public:
    explicit RandomDays(unsigned seed) : m_random(seed), loop(starts[seed % starts.size()]) {
        loop.setWoken([this] { notifications.post(wakeNotification); });
    }

    // Something happens, and then time passes.
    void step() {
        for (const AlarmPtr& alarm : std::set(m_ringing))
            if (upTo(2) == 0)
                answer(alarm);
        happen();
        loop.advance(landing(1000 * upTo(std::array{3, 100, 1000, 5000}[size_t(upTo(4))])));
    }

    // So much time, and a little more where the step would end at a second.
    RunLoop::Milliseconds landing(qint64 milliseconds) const {
        const int fraction = loop.now().addMSecs(milliseconds).time().msec();
        return RunLoop::Milliseconds(milliseconds + (fraction < 2 ? 2 : 0));
    }

    std::function<void(const AlarmPtr&)> triggered;
    std::function<void(const AlarmPtr&)> answered;

private:
    inline static const std::array starts{
        QDateTime({2026, 3, 28}, {21, 0, 0, 500}), QDateTime({2026, 10, 24}, {21, 0, 0, 500}),
        QDateTime({2026, 12, 31}, {12, 0, 0, 500}), QDateTime({2026, 7, 7}, {7, 0, 0, 500})};

    int upTo(int count) { return int(m_random() % unsigned(count)); }

    void setClock(qint64 byMilliseconds) {
        loop.setWall(loop.now().addMSecs(landing(byMilliseconds).count()));
    }

    void happen() {
        const auto& alarms = clock.allAlarms();
        const AlarmPtr any = alarms.empty() ? nullptr : alarms[size_t(upTo(int(alarms.size())))];
        switch (upTo(12)) {
        case 0:
            setClock(qint64(upTo(5 * 86'400'000)) - 3 * 86'400'000); // to before the start as well
            break;
        case 1:
            setClock(upTo(5000) - 2500);
            break;
        case 2:
            loop.sleepMachine(landing(upTo(36'000'000)));
            break;
        case 3:
            m_zone.change(std::array{"Europe/Berlin", "America/New_York", "Asia/Kathmandu",
                                     "Australia/Lord_Howe"}[size_t(upTo(4))]);
            loop.setWall(loop.now());
            break;
        case 4:
            loop.beginEventTracking();
            loop.advance(landing(upTo(200'000)));
            loop.endEventTracking();
            break;
        case 5:
            if (any)
                clock.removeAlarm(any);
            break;
        case 6:
            if (any)
                change(*any);
            break;
        default:
            insert();
        }
    }

    void insert() {
        const AlarmPtr alarm = AlarmOf{.kind = upTo(3),
                                       .minutes = upTo(90),
                                       .hours = upTo(2) * upTo(30),
                                       .days = {Weekday(101 + upTo(7)), Weekday(101 + upTo(7))},
                                       .everyDay = upTo(2) == 0,
                                       .repeats = upTo(2) == 0,
                                       .forever = upTo(2) == 0}
                                   .alarm();
        alarm->setTitle(QString::number(m_count++));
        alarm->setTime(loop.now().addSecs(upTo(40'000) - 5000).addDays(upTo(2) * upTo(10)));
        alarm->setDelegate(this);
        clock.insertAlarm(alarm);
    }

    void change(Alarm& alarm) {
        if (upTo(2) == 0)
            alarm.setTime(loop.now().addSecs(upTo(2000)));
        else
            alarm.setRingWithinUnits(upTo(10));
        clock.alarmDidChange();
    }

    void answer(const AlarmPtr& alarm) {
        m_ringing.erase(alarm);
        alarm->setIsTriggered(false);
        if (answered)
            answered(alarm);
        if (upTo(3) == 0) {
            alarm->snooze(upTo(10));
        } else {
            const RearmDecision decision =
                rearmAfterRinging(*alarm, loop.now(), weekdayName(loop.now().date()));
            applyRearm(decision, *alarm);
            if (decision.outcome == RearmDecision::Outcome::Remove)
                clock.removeAlarm(alarm);
        }
        clock.alarmDidChange();
    }

    void alarmTriggered(const AlarmPtr& alarm) override {
        alarm->setIsTriggered(true);
        m_ringing.insert(alarm);
        if (triggered)
            triggered(alarm);
    }

    std::mt19937 m_random;
    std::set<AlarmPtr> m_ringing;
    int m_count = 0;
    ZoneScope m_zone{"Europe/Berlin"};

public:
    VirtualRunLoop loop;
    NotificationCenter notifications;
    Clock clock{loop, notifications};
};

} // namespace dorvane::testing
