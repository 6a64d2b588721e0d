// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Clock.h"

#include "core/AlarmPause.h"
#include "core/WholeSecond.h"
#include "tests/support/RandomDays.h"
#include "tests/support/Testing.h"

#include <QTimeZone>

using namespace dorvane::testing;

namespace {

QString line(const RunLoop& loop, const AlarmPtr& alarm) {
    return loop.now().toUTC().toString(u"MM-dd HH:mm:ss "_qs) + alarm->title();
}

// A clock that asks every alarm on every second, the moment late that a timer is; what it would
// have reported goes by its own book.
class EverySecond {
public:
    EverySecond(VirtualRunLoop& loop, const Clock& clock)
        : m_loop(loop), m_clock(clock), m_set(loop.whenClockIsSet([this] { sleep(); })) {
        sleep();
    }
    void answered(const AlarmPtr& alarm) { m_reported.erase(alarm); }

    QStringList trace;

private:
    void sleep() {
        const Instant next = nextWholeSecond(now() - 1ms) + 1ms;
        m_timer = m_loop.scheduleAt(
            QDateTime::fromMSecsSinceEpoch(next.time_since_epoch().count(), QTimeZone::utc()),
            [this] { tick(); }, RunLoopMode::Common);
    }
    void tick() {
        for (const AlarmPtr& alarm : m_clock.allAlarms())
            if (alarm->secondsFromNow(now()) <= 0 && m_reported.insert(alarm).second)
                trace << line(m_loop, alarm);
        sleep();
    }
    [[nodiscard]] Instant now() const { return instantNow(m_loop); }

    VirtualRunLoop& m_loop;
    const Clock& m_clock;
    std::set<AlarmPtr> m_reported;
    RunLoopTimer m_timer;
    RunLoopTimer m_set;
};

// Each seed has another zone, another start and other alarms.
class ClockDaysTest : public ::testing::TestWithParam<unsigned> {};

TEST_P(ClockDaysTest, reportsWhatATickOnEverySecondWouldReport) {
    RandomDays days(GetParam());
    EverySecond literal(days.loop, days.clock);
    QStringList trace;
    days.triggered = [&](const AlarmPtr& alarm) { trace << line(days.loop, alarm); };
    days.answered = [&](const AlarmPtr& alarm) { literal.answered(alarm); };
    for (int step = 0; step < 50; ++step)
        days.step();
    EXPECT_EQ(trace.join(u'\n').toStdString(), literal.trace.join(u'\n').toStdString());
    EXPECT_GT(trace.size(), 5) << "or nothing was compared";
}

INSTANTIATE_TEST_SUITE_P(Seeds, ClockDaysTest, ::testing::Range(0U, 10U));

// A clock whose alarms write down when they report; each is then marked triggered, as ringing does.
class ClockTest : public ::testing::Test, protected AlarmDelegate {
protected:
    void alarmIsNear(const AlarmPtr& alarm) override { note(" near ", alarm); }
    void alarmTriggered(const AlarmPtr& alarm) override {
        note(" ", alarm);
        alarm->setIsTriggered(true);
    }
    void note(const char* what, const AlarmPtr& alarm) {
        m_trace += "|" + m_loop.now().toString(u"HH:mm:ss"_qs).toStdString() + what +
                   alarm->title().toStdString();
    }
    AlarmPtr running(const AlarmOf& values) {
        AlarmPtr alarm = values.alarm();
        m_clock.insertAlarm(alarm);
        alarm->setDelegate(this);
        return alarm;
    }
    AlarmPtr dated(const char* title, const char* time) {
        return running({.title = title, .kind = Alarm::Dated, .time = time});
    }
    std::string titles() const {
        std::string all;
        for (const AlarmPtr& alarm : m_clock.allAlarms())
            all += alarm->title().toStdString() + " ";
        return all;
    }

    VirtualRunLoop m_loop{at("11-21 08:00").addMSecs(400)};
    NotificationCenter m_notifications;
    Clock m_clock{m_loop, m_notifications};
    std::string m_trace;
};

TEST_F(ClockTest, tellsOfAnAlarmTenSecondsAheadAndWakesForNothingElse) {
    dated("soon", "11-21 08:00");
    const AlarmPtr put = dated("put off", "11-21 08:10");
    dated("a", "11-21 09:00");
    dated("b", "11-21 09:00");
    running({.title = "hours", .hours = 9});
    m_loop.advance(9min + 52s);
    put->setTime(at("11-21 08:20")); // nobody tells the clock
    m_loop.advance(10h);
    EXPECT_EQ(m_trace, "|08:00:01 near soon|08:00:01 soon"
                       "|08:09:49 near put off|08:19:49 near put off|08:19:59 put off"
                       "|08:59:49 near b|08:59:49 near a|08:59:59 b|08:59:59 a"
                       "|16:59:49 near hours|16:59:59 hours");
    EXPECT_LE(m_loop.firings(), 9) << "twice for each moment, and for the one that was put off";
}

TEST_F(ClockTest, aPauseHoldsWhatComesAgainInSilenceAndNothingElse) {
    AlarmPause pause(m_loop, m_notifications, m_clock);
    const AlarmPtr daily =
        running({.title = "daily", .kind = Alarm::Dated, .time = "11-21 09:00", .everyDay = true});
    pause.pauseUntil(instantOf(at("11-23 00:00")));
    const WeekdaySet days{Weekday::Saturday, Weekday::Monday};
    for (const bool forever : {false, true})
        running({.title = forever ? "weekly" : "days",
                 .kind = Alarm::Weekly,
                 .time = "11-21 10:00",
                 .days = days,
                 .forever = forever});
    running({.title = "rhythm", .hours = 7, .repeats = true});
    running({.title = "timer", .minutes = 30});
    EXPECT_EQ(m_clock.nearestAlarm(instantNow(m_loop))->title(), u"timer"_qs);
    EXPECT_EQ(nextRing(*daily, instantNow(m_loop)), instantOf(at("11-23 09:00")));
    m_loop.advance(1min);
    m_loop.sleepMachine(48h); // from one Saturday at eight to the Monday after
    m_loop.advance(3h);
    EXPECT_EQ(m_trace, "|08:01:00 near timer|08:01:00 timer|08:01:00 near days|08:01:00 days"
                       "|08:01:01 near rhythm|08:01:01 rhythm"
                       "|08:59:49 near daily|08:59:59 daily"
                       "|09:59:49 near weekly|09:59:59 weekly");
    daily->setIsTriggered(false);
    pause.pauseUntil(untilResumed);
    EXPECT_EQ(nextRing(*daily, instantNow(m_loop)), std::nullopt);
    EXPECT_FALSE(canSkip(*daily, instantNow(m_loop)));
    m_loop.advance(72h);
    pause.pauseUntil({});
    EXPECT_EQ(brief(daily->time({})), "11-27 09:00+01");
    pause.pauseUntil(untilResumed);
    m_clock.removeAlarm(daily);
    pause.pauseUntil({});
    m_clock.insertAlarm(daily);
    EXPECT_EQ(nextRing(*daily, instantNow(m_loop)), instantOf(at("11-27 09:00")));
}

TEST_F(ClockTest, insertingStartsAfreshAtTheFrontRemovingAndReplacingGoByIdentity) {
    const AlarmPtr tea = running({.title = "tea", .minutes = 10});
    const AlarmPtr egg = running({.title = "egg", .minutes = 5});
    m_loop.advance(4min);
    tea->snooze(3);
    m_clock.insertAlarm(m_clock.allAlarms().back()); // the very pointer in the list
    EXPECT_EQ(titles(), "tea egg ");
    EXPECT_EQ(brief(tea->time({})), "11-21 08:14+01");
    EXPECT_TRUE(tea->isActive());
    const AlarmPtr monday = running({.kind = Alarm::Weekly, .time = "11-23 07:00:20"});
    EXPECT_EQ(monday->storedRunTime(), at("11-23 07:00:20"));

    int changes = 0;
    const auto observation = m_notifications.addObserver(
        alarmsDidChangeNotification, [&](const void*) { ++changes; }, &m_clock);
    m_clock.removeAlarm(monday);
    m_clock.removeAlarm(monday);
    const AlarmPtr other =
        AlarmOf{.title = "other", .kind = Alarm::Dated, .time = "11-21 08:30"}.alarm();
    other->setDelegate(this);
    EXPECT_FALSE(m_clock.replaceAlarm(monday, other));
    EXPECT_TRUE(m_clock.replaceAlarm(tea, other));
    EXPECT_EQ(titles(), "other egg ");
    EXPECT_FALSE(other->isActive() || other->storedRunTime().isValid());
    EXPECT_EQ(changes, 2) << "one for each change, none for what changed nothing";
    m_clock.removeAlarm(egg);
    m_loop.advance(2h);
    EXPECT_EQ(m_trace, "|08:29:49 near other|08:29:59 other");
}

TEST_F(ClockTest, looksASecondAfterWakingWhateverTheTimersSay) {
    m_loop.setWoken([this] { m_notifications.post(wakeNotification); });
    dated("slept", "11-21 08:30");
    running({.title = "early", .kind = Alarm::Weekly, .time = "11-21 09:00:03"}); // by two seconds
    m_loop.forgetMoments();
    m_loop.sleepMachine(1h);
    m_loop.advance(999ms);
    EXPECT_EQ(m_trace, "");
    m_loop.advance(1ms);
    m_loop.sleepMachine(1h);
    m_loop.advance(1s);
    EXPECT_EQ(m_trace, "|09:00:01 near early|09:00:01 near slept|09:00:01 slept|10:00:02 early");
}

TEST_F(ClockTest, nearestAlarmCountsWholeSecondsAndTiesGoToTheFront) {
    const auto nearest = [this] { return m_clock.nearestAlarm(instantNow(m_loop)); };
    EXPECT_EQ(nearest(), nullptr);
    dated("later", "11-21 08:02");
    const AlarmPtr back = dated("back", "11-21 08:01");
    const AlarmPtr front = dated("front", "11-21 08:01");
    EXPECT_EQ(nearest(), front);
    m_loop.setWall(at("11-21 09:00"));
    EXPECT_EQ(nearest(), front) << "the longest past wins";
    front->snooze(10);
    EXPECT_EQ(nearest(), back);
}

} // namespace
