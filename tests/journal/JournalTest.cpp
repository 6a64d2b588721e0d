// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/Journal.h"

#include "core/AlarmDelegate.h"
#include "core/AlarmPause.h"
#include "core/Clock.h"
#include "journal/MissedReport.h"
#include "platform/linux/preferences/PropertyListCodec.h"
#include "platform/StateFile.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

// What outlives a run.
struct Disk {
    QByteArray journal = {};
    QByteArray late = {};
    int writes = 0;
    bool isFlushed = false;
    bool isFull = false;
};

class FileInMemory final : public StateFile {
public:
    explicit FileInMemory(Disk& disk) : m_disk(disk) {}
    [[nodiscard]] std::optional<QByteArray> read() override {
        return m_disk.journal == "unreadable" ? std::nullopt : std::optional(m_disk.journal);
    }
    void write(Contents contents, Written written = {}) override {
        if (m_disk.isFull)
            return written(u"full"_qs);
        const QByteArray before = std::exchange(m_disk.journal, contents());
        m_disk.writes += m_disk.journal != before;
        m_disk.isFlushed = false;
        if (written)
            written(std::nullopt);
    }
    void flush() override { m_disk.isFlushed = true; }
    void setFound(Found found) override { m_found = std::move(found); }
    void lookAgain(std::function<void()> looked) override {
        m_found(m_disk.late);
        looked();
    }
    [[nodiscard]] bool putAside() override { return false; }

private:
    Disk& m_disk;
    Found m_found;
};

class NobodyRings final : public AlarmDelegate {
    void alarmTriggered(const AlarmPtr&) override {}
};

struct OneRun {
    OneRun(Disk& disk, const char* start) : loop(at(start)), file(disk) {}

    void insert(const AlarmPtr& alarm) { clock.insertAlarm(alarm); }
    // With the stored list put back, or with what the run before left.
    void open(const Journal::Restored& alarms = {}) {
        (void)journal.read();
        journal.open(alarms);
    }
    void resume(const std::vector<ToldAlarm>& announced) {
        const auto left = journal.read();
        ASSERT_TRUE(left);
        pause.pauseUntil(journal.pausedUntil());
        restored.setPausedUntil(journal.pausedUntil());
        journal.open({.areResumed = true,
                      .decisions = restored.resume(left->running, left->undated, nobody),
                      .announced = announced});
    }
    std::string missed() const {
        std::string all;
        for (const MissedAlarm& each : journal.missed())
            all += titleOf(*each.alarm).toStdString() + ", " +
                   dueText(each, loop.now()).toStdString() + ", " +
                   dueAgainText(each, loop.now()).toStdString() + "\n";
        return all;
    }
    std::string running() const {
        std::string all;
        for (const AlarmPtr& alarm : clock.allAlarms())
            all += alarm->title().toStdString() + " " + brief(alarm->time(instantNow(loop))) + "\n";
        return all;
    }

    VirtualRunLoop loop;
    FileInMemory file;
    NotificationCenter notifications;
    PropertyListCodec format;
    Clock clock{loop, notifications};
    AlarmPause pause{loop, notifications, clock};
    Journal journal{{loop, notifications, clock, format, file, [this] { return pause.written(); }}};
    RestoredAlarms restored{loop, clock};
    NobodyRings nobody;
};

std::string report(const Disk& disk, const char* now, bool isRunning) {
    const PropertyListCodec plist;
    const auto [contents, isComplete] = JournalFormat(plist).decode(disk.journal);
    EXPECT_TRUE(isComplete);
    return missedReport(contents, isRunning, {}, at(now)).join(u'\n').toStdString();
}

// A Monday. The run ends at nine, without a word.
const AlarmOf running[] = {
    {.title = "kept", .kind = Alarm::Dated, .time = "11-25 07:00"},
    {.title = "egg", .minutes = 5},
    {.title = "roast", .minutes = 90},
    {.title = "pills", .hours = 1, .repeats = true},
    {.title = "train", .kind = Alarm::Dated, .time = "11-23 09:10"},
    // Asked for at another time, which its last night skipped.
    {.title = "walk",
     .kind = Alarm::Dated,
     .time = "11-23 09:05",
     .wished = {9, 6},
     .everyDay = true},
    {.title = "school",
     .kind = Alarm::Weekly,
     .time = "11-23 09:15",
     .runTime = "11-23 09:15",
     .days = {Weekday::Monday, Weekday::Thursday},
     .forever = true},
    {.title = "once",
     .kind = Alarm::Weekly,
     .time = "11-23 09:15",
     .runTime = "11-23 09:15",
     .days = {Weekday::Monday}},
};

// Two of the alarms are snoozed; one rings at the end.
Disk killedAtNine() {
    Disk disk;
    OneRun first(disk, "11-23 08:50");
    first.open();
    first.insert(AlarmOf{.title = "undated", .kind = Alarm::Dated, .time = nullptr}.alarm());
    for (const AlarmOf& values : running)
        first.insert(values.alarm());
    const AlarmPtr tea = AlarmOf{.title = "tea\n", .minutes = 10}.alarm();
    first.insert(tea);
    first.clock.allAlarms()[8]->setSnoozedMinutes(quint64(-30)); // kept: the clock was set back
    first.loop.advance(5min);
    for (const std::size_t index : {5U, 7U}) // pills and egg
        first.clock.allAlarms()[index]->snooze(10);
    first.clock.alarmDidChange();
    first.loop.advance(5min);
    first.journal.note(RingEvent::Rings, tea);
    first.loop.advance(0ms);
    return disk;
}

TEST(JournalTest, afterACrashTheAlarmsGoOnAndOnlyWhatPassedIsOffered) {
    Disk disk = killedAtNine();
    OneRun second(disk, "11-23 09:30");
    second.resume({{instantOf(at("11-23 09:05")), u"egg"_qs},
                   {instantOf(at("11-23 09:10")), u"train"_qs, false}});
    EXPECT_EQ(second.running(), "school 11-26 09:15+01\n"
                                "walk 11-24 09:06+01\n"
                                "pills 11-23 10:00+01\n"
                                "roast 11-23 10:20+01\n"
                                "kept 11-25 06:30+01\n"
                                "undated none\n");
    EXPECT_EQ(second.missed(), "train, Mon, 9:10, has had its day\n"
                               "once, Mon, 9:15, has had its day\n"
                               "tea\n, Mon, 9:00, in 10 minutes\n");
    second.loop.advance(2s);
    EXPECT_EQ(report(disk, "11-23 09:31", true),
              "Mon, 9:00  tea : rang and was not answered\n"
              "Mon, 9:05  egg: was announced while Dorvane was not running\n"
              "Mon, 9:05  walk: passed while Dorvane was not running\n"
              "Mon, 9:10  train: passed while Dorvane was not running\n"
              "Mon, 9:15  once: passed while Dorvane was not running\n"
              "Mon, 9:15  school: passed while Dorvane was not running");

    // Timers count anew only where the list is stored and the program ends. A quit may be called
    // off: what is set after it is not lost, nor what could not be stored then.
    using Ends = Journal::Ends;
    const auto left = [&] { return OneRun(disk, "11-23 09:31").journal.read().value(); };
    for (const auto& [mark, isStored, ends, marks] :
         {std::tuple(u"first"_qs, true, Ends::Perhaps, u"first"_qs),
          {u"second"_qs, false, Ends::Perhaps, u"first second"_qs},
          {u"second"_qs, false, Ends::Now, u"first second"_qs},
          {u"third"_qs, true, Ends::Now, u"third"_qs}}) {
        second.journal.close({mark}, isStored, ends);
        EXPECT_TRUE(std::exchange(disk.isFlushed, false)) << "the program may end after this";
        EXPECT_EQ(left().isStored, isStored && ends == Ends::Now);
        EXPECT_EQ(left().marks.join(u' '), marks);
    }
    disk.isFull = true;
    second.insert(running[1].alarm());
    second.loop.advance(2s);
    EXPECT_TRUE(left().isStored);
    disk.isFull = false;
    second.loop.advance(30s);
    EXPECT_FALSE(left().isStored);
    EXPECT_EQ(left().marks, QStringList(u"third"_qs));
    EXPECT_EQ(left().running.size(), 6U);
}

TEST(JournalTest, aPauseOutlivesTheProgramAndWhatItHeldIsNeitherMissedNorAnnounced) {
    Disk disk;
    const PropertyListCodec plist;
    {
        OneRun first(disk, "11-23 08:50");
        first.open();
        for (const std::size_t index : {4U, 5U, 6U, 7U}) // train, walk, school, once
            first.insert(running[index].alarm());
        first.pause.pauseUntil(instantOf(at("11-26 00:00")));
        first.loop.advance(5s);
    }
    const std::string passed = "Mon, 9:10  train: passed while Dorvane was not running\n"
                               "Mon, 9:15  once: passed while Dorvane was not running";
    EXPECT_EQ(report(disk, "11-25 12:00", false), passed);
    const JournalContents held = JournalFormat(plist).decode(disk.journal).contents;
    const AnnouncementPlan plan = planAnnouncements(held, {}, instantOf(at("11-23 09:14")));
    EXPECT_EQ(plan.notifications.size(), 1U) << "train";
    EXPECT_EQ(plan.next, instantOf(at("11-23 09:15"))) << "once";
    EXPECT_EQ(planAnnouncements(held, {}, instantOf(at("11-24 09:14"))).next,
              instantOf(at("11-26 09:06")));
    {
        OneRun second(disk, "11-24 12:00");
        second.resume({});
        EXPECT_EQ(second.running(), "school 11-26 09:15+01\nwalk 11-25 09:06+01\n");
        EXPECT_EQ(second.missed(), "train, Mon, 9:10, has had its day\n"
                                   "once, Mon, 9:15, Mon, 9:15\n");
        second.loop.advance(24h);
        EXPECT_EQ(report(disk, "11-25 12:00", true), passed);
    }
    OneRun third(disk, "11-26 10:00"); // after an orderly end what passed is dropped
    (void)third.journal.read();
    third.restored.setPausedUntil(third.journal.pausedUntil());
    const auto decisions =
        third.restored.restore({running[5].alarm(), running[6].alarm()}, third.nobody);
    EXPECT_EQ(third.running(), "school 11-30 09:15+01\n");
    EXPECT_EQ(localDateTimeOf(decisions.dropped.at(0).due), at("11-26 09:06"));

    OneRun late(disk, "11-25 12:00"); // the list is there before the pause is known
    late.open({.decisions = late.restored.restore({running[5].alarm()}, late.nobody)});
    EXPECT_EQ(late.journal.missed().size(), 4U);
    late.restored.setCorrected([&](const auto& changes) { late.journal.correct(changes); });
    late.restored.setPausedUntil(instantOf(at("11-26 00:00")));
    late.restored.putBackPaused();
    EXPECT_EQ(late.running(), "walk 11-26 09:06+01\n");
    EXPECT_EQ(late.journal.missed().size(), 3U);
}

TEST(JournalTest, offersWhatIsMissingInANewerListAndStartsItAgain) {
    Disk disk = killedAtNine();
    OneRun second(disk, "11-23 09:30");
    for (const AlarmOf& values :
         {running[0], // of another list, and what is not the same
          AlarmOf{.title = "bread", .minutes = 5},
          AlarmOf{.title = "train", .kind = Alarm::Dated, .time = "11-24 09:10"}})
        second.insert(values.alarm());
    second.open();
    EXPECT_EQ(second.missed(), "tea\n, Mon, 9:00, in 10 minutes\n"
                               "once, Mon, 9:15, has had its day\n"
                               "school, Mon, 9:15, Thu, 9:15\n"
                               "walk, Mon, 9:05, Tue, 9:06\n"
                               "train, Mon, 9:10, has had its day\n"
                               "pills, Mon, 10:00, Mon, 10:00\n"
                               "roast, Mon, 10:20, Mon, 10:20\n"
                               "egg, Mon, 9:05, in 5 minutes\n");
    for (const MissedAlarm& each : second.journal.missed())
        if (dueAgain(each, second.loop.now()))
            startAgain(each, second.loop.now(), [&](const auto& alarm) { second.insert(alarm); });
    EXPECT_EQ(second.running(), "egg 11-23 09:35+01\n"
                                "roast 11-23 10:20+01\n"
                                "pills 11-23 10:00+01\n"
                                "walk 11-24 09:06+01\n"
                                "school 11-26 09:15+01\n"
                                "tea\n 11-23 09:40+01\n"
                                "train 11-24 09:10+01\n"
                                "bread 11-23 09:35+01\n"
                                "kept 11-25 07:00+01\n");

    // The window was not answered before the power went; nothing is offered twice.
    second.loop.advance(2s);
    OneRun third(disk, "11-23 09:31");
    for (const AlarmPtr& alarm : second.clock.allAlarms())
        third.insert(alarm);
    third.open();
    EXPECT_EQ(third.journal.missed().size(), 8U);
    third.journal.answered();
    third.loop.advance(2s);
    OneRun fourth(disk, "11-23 09:32");
    for (const AlarmPtr& alarm : third.clock.allAlarms())
        fourth.insert(alarm);
    fourth.open();
    EXPECT_EQ(fourth.missed(), "");
}

TEST(JournalTest, afterAnOrderlyQuitTellsWhatWasDroppedAndKeepsABookOfAMonth) {
    Disk disk;
    const AlarmPtr train = running[4].alarm();
    {
        OneRun first(disk, "11-23 08:50");
        first.open();
        first.insert(train);
        const AlarmPtr tea = AlarmOf{.title = "tea", .minutes = 5}.alarm();
        first.insert(tea);
        first.loop.advance(5min);
        first.journal.note(RingEvent::Rings, tea);
        first.journal.note(RingEvent::Unanswered, tea);
        first.journal.noteCameRoundAgain(train, at("11-23 08:56"));
        first.clock.removeAlarm(tea);
        first.journal.close({}, true, Journal::Ends::Now);
    }
    EXPECT_EQ(report(disk, "11-23 09:30", false),
              "Mon, 8:55  tea: rang and was not answered\n"
              "Mon, 8:56  train: was due again before it was answered\n"
              "Mon, 9:10  train: passed while Dorvane was not running");
    OneRun second(disk, "11-23 09:30");
    second.open({.decisions = {.dropped = {{train, *train->due({})}}}});
    EXPECT_EQ(second.missed(), "train, Mon, 9:10, has had its day\n");
    second.loop.advance(1min);
    second.journal.noteCrash(u"/crash"_qs);
    second.loop.advance(2s);
    EXPECT_EQ(report(disk, "12-01 09:31", true),
              "23 Nov, 8:55  tea: rang and was not answered\n"
              "23 Nov, 8:56  train: was due again before it was answered\n"
              "23 Nov, 9:10  train: passed while Dorvane was not running\n"
              "23 Nov, 9:31  Dorvane had crashed; the report is in /crash");
    second.loop.setWall(at("11-23 09:06")); // it had been ahead
    const AlarmPtr walk = running[5].alarm();
    second.journal.correct({.back = {train}, .dropped = {{walk, *walk->due({})}}});
    EXPECT_EQ(second.missed(), "walk, Mon, 9:05, Tue, 9:06\n");
    second.loop.advance(2s);
    EXPECT_EQ(report(disk, "11-23 09:07", true),
              "Mon, 8:55  tea: rang and was not answered\n"
              "Mon, 8:56  train: was due again before it was answered\n"
              "Mon, 9:05  walk: passed while Dorvane was not running\n"
              "Mon, 9:31  Dorvane had crashed; the report is in /crash");

    for (int i = 0; i < 3000; ++i) { // a minute's rhythm with nobody there
        second.journal.note(RingEvent::Rings, walk);
        second.journal.note(RingEvent::Unanswered, walk);
    }
    second.journal.answered();
    second.journal.close({}, true, Journal::Ends::Now);
    OneRun later(disk, "12-24 00:00");
    later.open();
    later.loop.advance(5s);
    later.insert(running[0].alarm());
    later.loop.advance(5s);
    const QString all = QString::fromStdString(report(disk, "12-24 00:00", true));
    EXPECT_EQ(all.count(u'\n'), 102) << "a clock may be wrong at the start";
    EXPECT_TRUE(all.contains(u"tea: rang"_qs)) << "it was displaced";
    later.loop.advance(11min);
    later.insert(train);
    later.loop.advance(5s);
    EXPECT_EQ(report(disk, "12-24 00:11", true), "");
}

TEST(JournalTest, oneThatComesLateIsJoinedBeforeItIsReplaced) {
    Disk disk{.late = killedAtNine().journal};
    OneRun run(disk, "11-23 09:30");
    run.open();
    run.loop.advance(2s);
    std::optional<ActiveAlarms::Left> left;
    run.journal.setCame([&](const auto& late) { left = late; });
    run.journal.lookAgain([] {});
    const int writes = disk.writes;
    run.insert(running[2].alarm());
    run.loop.advance(5s);
    EXPECT_EQ(disk.writes, writes) << "the late one has not been joined yet";
    run.journal.open(
        {.areResumed = true,
         .decisions = run.restored.resume(left.value().running, left->undated, run.nobody)});
    run.loop.advance(2s);
    run.pause.pauseUntil(untilResumed);
    run.loop.advance(2s);
    disk.late = disk.journal; // a copy of ours, of before this:
    run.clock.removeAlarm(run.clock.allAlarms().front());
    run.pause.pauseUntil({});
    run.journal.lookAgain([] {});
    EXPECT_FALSE(left) << "what was deleted since is not revived";
    EXPECT_FALSE(run.journal.pausedUntil());
    run.journal.open({.areResumed = true});
    run.loop.advance(2s);
    EXPECT_EQ(QString::fromStdString(report(disk, "11-23 09:31", true))
                  .count(u"tea : rang and was not answered"_qs),
              1);
    EXPECT_EQ(run.journal.missed().size(), 4U);
    EXPECT_EQ(JournalFormat(run.format).decode(disk.journal).contents.running.size(), 5U);
}

TEST(JournalTest, whatCannotBeReadNorPutAsideIsNotWrittenOver) {
    for (const char* contents : {"unreadable", "damaged"}) {
        Disk disk{.journal = contents};
        OneRun run(disk, "11-23 08:50");
        run.open();
        run.journal.close({}, true, Journal::Ends::Now);
        EXPECT_EQ(disk.journal, contents);
    }
}

TEST(JournalTest, writesAtMostOnceASecondAndNothingAtRest) {
    Disk disk;
    OneRun run(disk, "11-23 08:50");
    run.open();
    for (int i = 0; i < 250; ++i) {
        run.insert(running[0].alarm());
        run.loop.advance(10ms);
    }
    run.loop.advance(1s);
    EXPECT_EQ(disk.writes, 4);
    EXPECT_EQ(JournalFormat(run.format).decode(disk.journal).contents.running.size(), 250U);
    run.clock.alarmDidChange();
    const auto before = run.loop.firings();
    run.loop.advance(6h);
    EXPECT_EQ(disk.writes, 4);
    EXPECT_LE(run.loop.firings() - before, 1);
}

} // namespace
