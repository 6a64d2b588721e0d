// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ActiveAlarms.h"
#include "core/AlarmDelegate.h"
#include "core/Clock.h"
#include "core/JoinedAlarms.h"
#include "core/NotificationNames.h"
#include "core/SameAlarm.h"
#include "core/StoredAlarms.h"
#include "platform/linux/preferences/PropertyListCodec.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/MemoryDefaults.h"
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

class NoDelegate final : public AlarmDelegate {
public:
    void alarmTriggered(const AlarmPtr&) override {}
};

// One run of the program after another on the same preferences.
class AlarmListsTest : public ::testing::Test {
protected:
    struct Run {
        explicit Run(const QDateTime& start, const QVariantMap& stored = {})
            : loop(start), defaults(stored) {}

        VirtualRunLoop loop;
        MemoryDefaults defaults;
        NotificationCenter notifications;
        PropertyListCodec format;
        AlarmArchive archive{format};
        Clock clock{loop, notifications};
        ActiveAlarms active{defaults, archive, loop, clock};
        StoredAlarms library{defaults, archive, notifications};
        NoDelegate delegate;

        AlarmPtr start(const AlarmOf& values) {
            AlarmPtr alarm = values.alarm();
            clock.insertAlarm(alarm);
            return alarm;
        }

        std::string running() const {
            std::string all;
            for (const AlarmPtr& alarm : clock.allAlarms())
                all += alarm->title().toStdString() + " " + brief(alarm->time(instantNow(loop))) +
                       "\n";
            return all;
        }
    };
};

TEST_F(AlarmListsTest, theNewerOfTheStoredListAndWhatAnEndWithoutAWordLeftComesBack) {
    const auto stored = [](const char* title) {
        Run run(at("2026-11-23 06:00"));
        run.start({.title = title, .minutes = 30});
        run.active.storeActiveAlarms();
        return std::pair(run.defaults.written(), run.active.marks());
    };
    const auto [list, mark] = stored("list");
    const auto [other, otherMark] = stored("another list");
    const struct {
        QVariantMap now;
        QStringList then;
        const char* running;
        bool isStored = false; // what was left was stored with it
    } rows[] = {
        {list, mark, "left 11-23 06:25+01\n"},
        {list, otherMark, "list 11-23 06:40+01\n"},               // written by whoever did it since
        {list, {}, "left 11-23 06:25+01\nlist 11-23 06:30+01\n"}, // neither knew the other
        {{}, {}, "left 11-23 06:25+01\n"},                        // nothing was ever stored
        {{}, mark, "left 11-23 06:25+01\n"},
        {list, otherMark + mark, "left 11-23 06:25+01\n"}, // stored after all
        {list, mark, "list 11-23 06:40+01\n", true},       // timers count anew
        {{}, mark, "left 11-23 06:30+01\n", true},         // of a folder that comes late
    };
    for (const auto& [now, then, running, isStored] : rows) {
        const AlarmPtr left =
            AlarmOf{.title = "left", .minutes = 20, .runTime = "11-23 06:00"}.alarm();
        // In a home that is mounted late, say; and after a log-out that was called off.
        for (const auto& [isLate, isListLate, isOwnStored] : {std::tuple(false, false, false),
                                                              {true, true, false},
                                                              {true, true, true},
                                                              {true, false, false}}) {
            Run run(at("2026-11-23 06:10"), isListLate ? QVariantMap() : now);
            const ActiveAlarms::Left all{
                {{left->storedCopy(), instantOf(at("11-23 06:25"))}}, then, {}, isStored};
            run.active.restoreActiveAlarms(run.delegate,
                                           isLate ? std::nullopt : std::optional(all));
            if (isOwnStored)
                run.active.storeActiveAlarms();
            if (isLate) {
                run.active.expect(all);
                if (isListLate)
                    run.defaults.comeIntoReach(now);
                EXPECT_TRUE(run.active.restoreLate(all));
                EXPECT_FALSE(run.active.restoreLate({})) << "once is enough";
            }
            EXPECT_EQ(run.running(), running) << isLate << isListLate << isOwnStored;
            run.clock.removeAlarm(run.clock.allAlarms().front());
            run.active.storeActiveAlarms();
            Run next(at("2026-11-23 06:11"), run.defaults.written());
            next.active.restoreActiveAlarms(next.delegate);
            EXPECT_EQ(next.clock.allAlarms().size(), run.clock.allAlarms().size())
                << "what has ended does not come back";
        }
    }
}

TEST_F(AlarmListsTest, aListThatCameIntoReachAfterTheStartIsKept) {
    Run earlier(at("2026-11-23 06:00"));
    earlier.start({.title = "late", .minutes = 30});
    earlier.active.storeActiveAlarms();
    Run run(at("2026-11-23 06:10"));
    run.active.restoreActiveAlarms(run.delegate);
    run.start({.title = "new", .minutes = 45});
    for (const auto& [key, value] : earlier.defaults.written().asKeyValueRange())
        run.defaults.setValue(key, value); // as somebody reads another key
    for (int i = 0; i < 2; ++i)            // a quit may be called off
        run.active.storeActiveAlarms();
    Run next(at("2026-11-23 06:20"), run.defaults.written());
    next.active.restoreActiveAlarms(next.delegate);
    EXPECT_EQ(next.running(), "new 11-23 07:05+01\nlate 11-23 06:50+01\n");

    // But what was left after it was stored knew it: "late" had been deleted by then.
    Run resumed(at("2026-11-23 06:10"));
    const AlarmPtr left = AlarmOf{.title = "left", .minutes = 45, .runTime = "11-23 06:00"}.alarm();
    resumed.active.restoreActiveAlarms(
        resumed.delegate,
        ActiveAlarms::Left{{{left, instantOf(at("11-23 06:45"))}}, earlier.active.marks()});
    EXPECT_EQ(resumed.active.marks(), earlier.active.marks()) << "for the end after this one";
    for (const auto& [key, value] : earlier.defaults.written().asKeyValueRange())
        resumed.defaults.setValue(key, value);
    resumed.active.storeActiveAlarms();
    Run last(at("2026-11-23 06:20"), resumed.defaults.written());
    last.active.restoreActiveAlarms(last.delegate);
    EXPECT_EQ(last.running(), "left 11-23 07:05+01\n");
}

// Every change is on the disk and announced at once, and made on what another window stored. What a
// library remembers is what the bytes say, whatever is done to the alarms that it hands out.
TEST_F(AlarmListsTest, libraryKeepsOneAlarmATitleAndAnnouncesEveryChange) {
    Run run(at("2026-11-23 06:00"));
    EXPECT_FALSE(run.library.alarms().has_value()) << "nothing was ever stored";
    StoredAlarms other(run.defaults, run.archive, run.notifications);
    const AlarmPtr tea = run.start({.title = "tea", .minutes = 3});
    const AlarmPtr egg = run.start({.title = "egg", .minutes = 5});
    const AlarmPtr pie =
        run.start({.title = "pie", .kind = Alarm::Dated, .minutes = 9, .time = "11-23 09:00"});
    pie->snooze(5);
    std::string trace;
    const auto announced =
        run.notifications.addObserver(storedAlarmsDidChangeNotification, [&](const void*) {
            Run reader(run.loop.now(), run.defaults.written());
            const auto stored = reader.library.alarms();
            for (const AlarmPtr& alarm : *stored)
                trace += alarm->title().toStdString() + std::to_string(alarm->ringWithinUnits()) +
                         (alarm->isExisInActiveAlarmList() ? "! " : " ");
            trace += "| ";
            const auto remembered = run.library.alarms();
            EXPECT_TRUE(std::equal(
                remembered->begin(), remembered->end(), stored->begin(), stored->end(),
                [](const AlarmPtr& one, const AlarmPtr& two) { return one->isStoredLike(*two); }));
            for (const AlarmPtr& alarm : *remembered)
                alarm->setTitle(u"not stored"_qs);
        });
    run.library.put({tea, egg, pie}, {});
    EXPECT_TRUE(isSameAlarm(*run.library.alarms()->back(), *pie)) << "snoozes aside";
    EXPECT_TRUE(run.library.alarms()->front()->countsFromNow());
    tea->setRingWithinUnits(4);
    other.put(*tea, {});
    run.library.removeAlarm(u"egg"_qs);
    other.removeAlarm(u"pie"_qs);
    run.library.removeAlarm(u"pie"_qs); // not there any more: nothing happens
    run.library.updateAlarmList(egg);
    run.library.put(*egg, {});
    tea->setRingWithinUnits(7);
    tea->setSnoozeTime(1LL << 40);    // more than the record holds
    run.library.updateAlarmList(tea); // not any more
    EXPECT_TRUE(run.library.updateInactiveAlarmList(*tea, {}));
    EXPECT_EQ(trace, "tea3 egg5 pie9 | tea4 egg5 pie9 | tea4 pie9 | tea4 | tea4 egg5 | "
                     "tea7! egg5 | ");

    run.defaults.setValue(u"StoredAlarmsKey"_qs, run.archive.archivedData({tea, tea}));
    for (int i = 0; i < 2; ++i) {
        const auto twice = *run.library.alarms();
        EXPECT_EQ(twice[0], twice[1]) << "one alarm, though it is listed twice";
    }
}

// A library in three states: as it was last known, as it is here, as it turns out to be stored.
TEST_F(AlarmListsTest, librariesAreJoinedAlarmByAlarm) {
    const PropertyListCodec format;
    const AlarmArchive archive(format);
    // "tea3": a timer of that title and so many minutes.
    const auto listOf = [&](const QString& text) {
        std::vector<AlarmPtr> alarms;
        for (const QString& each : text.split(u' ', Qt::SkipEmptyParts))
            alarms.push_back(AlarmOf{.title = each.chopped(1).toUtf8().constData(),
                                     .minutes = each.last(1).toInt()}
                                 .alarm());
        return alarms;
    };
    const auto dataOf = [&](const char* text) {
        return text ? QVariant(archive.archivedData(listOf(QLatin1String(text)))) : QVariant();
    };
    const auto textOf = [&](const QVariant& data) {
        std::string text;
        for (const AlarmPtr& alarm : archive.unarchive(data.toByteArray()).alarms)
            text += alarm->title().toStdString() + std::to_string(alarm->ringWithinUnits()) + " ";
        return text;
    };
    const struct {
        const char* base;
        const char* ours;
        const char* theirs;
        std::string byTitle;
        std::string byValues;
    } cases[] = {
        {nullptr, "new1", "work1 gym2 tea3", "work1 gym2 tea3 new1 ", "work1 gym2 tea3 new1 "},
        {nullptr, "tea4", "work1 tea3", "work1 tea4 ", "work1 tea3 tea4 "},
        {"tea3", "tea4", "tea3 gym2", "tea4 gym2 ", "gym2 tea4 "},
        {"tea3", "tea3", "tea5", "tea5 ", "tea5 tea3 "},
        {"tea3 gym2", "gym2", "tea3 gym2 pie9", "gym2 pie9 ", "gym2 pie9 "},
        {"tea3", "tea3 egg5", nullptr, "tea3 egg5 ", "tea3 egg5 "},
        {nullptr, "tea4", "tea3 tea5", "tea4 tea5 ", "tea3 tea5 tea4 "},
    };
    for (const auto& each : cases) {
        const auto joined = [&](IsSameAlarm isSame) {
            return textOf(joinOfAlarms(archive, isSame)(dataOf(each.base), dataOf(each.ours),
                                                        dataOf(each.theirs)));
        };
        EXPECT_EQ(joined(haveSameTitle), each.byTitle) << each.ours;
        EXPECT_EQ(joined(haveSameValues), each.byValues) << each.ours;
    }
}

TEST_F(AlarmListsTest, alarmWithoutAReadableMomentStaysAndNeverRings) {
    Run run(at("2026-11-23 06:00"));
    const AlarmPtr lost = AlarmOf{.title = "lost", .kind = Alarm::Dated}.alarm();
    run.defaults.setValue(u"AcitveAlarmsStoredKey"_qs, run.archive.archivedData({lost}));
    run.active.restoreActiveAlarms(run.delegate);
    run.start({.title = "tea", .minutes = 3});
    ASSERT_EQ(run.clock.allAlarms().size(), 2U);
    EXPECT_FALSE(run.clock.allAlarms().back()->nextTick(instantNow(run.loop)));
    EXPECT_EQ(run.clock.nearestAlarm(instantNow(run.loop))->title(), u"tea"_qs);
}

TEST_F(AlarmListsTest, whatCannotBeReadIsKeptOnceAndAsItWas) {
    const QString key = u"StoredAlarmsKey"_qs;
    Run run(at("2026-11-23 06:00"));
    const QVariant values[] = {QByteArray("not an archive"), QByteArray("neither"),
                               u"not even data"_qs, QByteArray("neither")};
    const LogCapture log;
    for (const QVariant& value : values) {
        run.defaults.setValue(key, value);
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(run.library.alarms()->empty());
    }
    run.library.put(*run.start({.title = "tea", .minutes = 3}), {});
    QVariantMap kept = run.defaults.written();
    kept.remove(key);
    EXPECT_EQ(kept, (QVariantMap{{key + u".damaged-1"_qs, values[0]},
                                 {key + u".damaged-2"_qs, values[1]},
                                 {key + u".damaged-3"_qs, values[2]}}));
    EXPECT_EQ(log.messages().size(), 3);
}

} // namespace
