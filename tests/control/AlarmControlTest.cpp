// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/AlarmControl.h"

#include "core/AlarmArchive.h"
#include "core/AlarmPause.h"
#include "core/Clock.h"
#include "core/LastDeletion.h"
#include "core/Rearm.h"
#include "core/StoredAlarms.h"
#include "platform/linux/preferences/PropertyListCodec.h"
#include "tests/support/MemoryDefaults.h"
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

// On a Tuesday; nobody answers for the menu but the clock's list.
class AlarmControlTest : public ::testing::Test {
protected:
    AlarmControl::Surroundings surroundings() {
        const auto noted = [this](const char* what) {
            return [this, what](const AlarmPtr& alarm) {
                trace.add(QString::fromLatin1(what) + alarm->title());
            };
        };
        return {
            .runLoop = loop,
            .notifications = notifications,
            .clock = clock,
            .storedAlarms = library,
            .pause = pause,
            .lastDeletion = lastDeletion,
            .schedule = [this](const AlarmPtr& alarm) { clock.insertAlarm(alarm); },
            .start = [this](const Alarm& stored) -> AlarmPtr {
                const auto decision =
                    rearmAtStart(stored, loop.now(), weekdayName(loop.now().date()));
                if (decision.outcome == RearmDecision::Outcome::Remove)
                    return nullptr;
                const AlarmPtr alarm = stored.storedCopy();
                applyRearm(decision, *alarm);
                clock.insertAlarm(alarm);
                return alarm;
            },
            .snooze =
                [this](const AlarmPtr& alarm, qint64 minutes) {
                    trace.add(u"snooze %1 %2"_qs.arg(alarm->title()).arg(minutes));
                },
            .clear = noted("clear "),
            .end = noted("end "),
            .remove =
                [this](const AlarmPtr& alarm) {
                    lastDeletion.remember(alarm, nullptr);
                    clock.removeAlarm(alarm);
                },
            .replace =
                [this](const AlarmPtr& old, const AlarmPtr& alarm) {
                    alarm->setIsActive(true);
                    EXPECT_TRUE(clock.replaceAlarm(old, alarm));
                },
            .showAlarms = [] {},
            .skip = [](const AlarmPtr&) { return false; },
            .ringDefaults =
                [] {
                    return RingDefaults{u"/Ping"_qs, 7};
                },
            .findSound =
                [this](const QString& name, const AlarmControl::Found& found) {
                    if (name == u"Slow"_qs)
                        return slowSounds.push_back(found);
                    loop.defer([=] {
                        found(name == u"Nope"
                                  ? std::variant<QString, Refusal>(Refusal{u"NoSuchSound"_qs, name})
                                  : QChar(u'/') + name);
                    });
                },
            .findVoice = [](const QString& name, const AlarmControl::Found& found) { found(name); },
            .save =
                [this](const AlarmControl::Saved& saved) {
                    ++savings;
                    loop.defer([this, saved] { saved(problem); });
                },
            .breaksRun = [this] { return breaksRun; },
            .startBreaks = [this] { breaksRun = true; },
            .stopBreaks = [this] { breaksRun = false; },
            .skipBreak = [this] { trace.add(u"skip"_qs); }};
    }

    AlarmControl::Asker asker() {
        return {.made =
                    [this](const AlarmAnswer& answer) {
                        const Refusal* const refusal = std::get_if<Refusal>(&answer);
                        told = refusal ? refusal->name + u' ' + refusal->reason.section(u':', 0, 0)
                                       : lastAdded();
                    },
                .stillAsked = [this](const auto& then) { then(!hasGivenUp); }};
    }

    QString lastAdded() const {
        const Alarm& alarm = *clock.allAlarms().front();
        QStringList words{alarm.time(instantNow(loop)).toString(u"dd. HH:mm:ss"_qs), alarm.title(),
                          alarm.isPlaySound() ? alarm.soundPath() : u"silent"_qs, alarm.voiceName(),
                          QString::number(alarm.snoozeTime())};
        for (const auto& [isSet, name] : {std::pair{alarm.shouldRepeat(), "repeats"},
                                          {alarm.shouldUseEveryDay(), "daily"},
                                          {alarm.shouldUseForever(), "weekly"},
                                          {alarm.shouldFadeIn(), "fades"}})
            if (isSet)
                words << QString::fromLatin1(name);
        return words.join(u' ');
    }

    static QList<QVariantMap> reportsOf(const AlarmListing& listing) {
        QList<QVariantMap> reports;
        for (std::size_t i = 0; i < listing.count; ++i)
            reports << listing.report(i);
        return reports;
    }

    std::string answerTo(const QVariantMap& description) {
        told = u"no answer"_qs;
        control.addAlarm(asker(), description);
        loop.runPending();
        return told.toStdString();
    }

    VirtualRunLoop loop{QDateTime({2026, 11, 24}, {10, 0, 0, 250})};
    Trace trace{loop};
    NotificationCenter notifications;
    MemoryDefaults defaults;
    PropertyListCodec format;
    AlarmArchive archive{format};
    StoredAlarms library{defaults, archive, notifications};
    Clock clock{loop, notifications};
    AlarmPause pause{loop, notifications, clock};
    LastDeletion lastDeletion{loop, clock, library};
    bool breaksRun = false;
    std::vector<AlarmControl::Found> slowSounds;
    QString told;
    bool hasGivenUp = false;
    std::optional<QString> problem;
    int savings = 0;
    AlarmControl control{surroundings()};
};

TEST_F(AlarmControlTest, takesWhatTheEditorTakesAndSaysWhatIsWrongWithTheRest) {
    const QString longTitle(1001, u'x');
    const struct {
        QVariantMap description;
        const char* answer;
    } rows[]{
        {{{u"minutes"_qs, 25u}}, "24. 10:25:00 T /Ping  7"},
        {{{u"hours"_qs, qint64(2)}, {u"repeat"_qs, true}, {u"snooze"_qs, 9}},
         "24. 12:00:00 T /Ping  9 repeats"},
        {{{u"time"_qs, u"10:01"_qs}}, "24. 10:01:00 T /Ping  7"},
        {{{u"time"_qs, u"10:00"_qs}}, "25. 10:00:00 T /Ping  7"},
        {{{u"time"_qs, u"7:30"_qs}, {u"date"_qs, u"2026-11-30"_qs}, {u"every-day"_qs, true}},
         "30. 07:30:00 T /Ping  7 daily"},
        {{{u"time"_qs, u"09:00"_qs}, {u"weekdays"_qs, QStringList{u"tue"_qs, u"thu"_qs}}},
         "26. 09:00:00 T /Ping  7"},
        {{{u"time"_qs, u"7p"_qs}, {u"date"_qs, u"fri"_qs}}, "27. 19:00:00 T /Ping  7"},
        {{{u"time"_qs, u"9"_qs}, {u"weekdays"_qs, QStringList{u"thu-fri"_qs, u"Sunday"_qs}}},
         "26. 09:00:00 T /Ping  7"},
        {{{u"seconds"_qs, 30}}, "24. 10:00:30 T /Ping  7"},
        {{{u"seconds"_qs, 90}}, "24. 10:01:30 T /Ping  7"},
        {{{u"minutes"_qs, 1}, {u"sound"_qs, u"Brook"_qs}, {u"voice"_qs, u"Ann"_qs}},
         "24. 10:01:00 T /Brook Ann 7"},
        {{{u"minutes"_qs, 1}, {u"sound"_qs, u""_qs}}, "24. 10:01:00 T silent  7"},

        {{}, "MissingKey \"time\""},
        {{{u"title"_qs, u" "_qs}}, "InvalidValue \"title\""},
        {{{u"title"_qs, longTitle}}, "TooLong \"title\""},
        {{{u"title"_qs, u"two\nlines"_qs}}, "InvalidValue \"title\""},
        {{{u"minute"_qs, 7}}, "UnknownKey \"minute\""},
        {{{u"minutes"_qs, 0}}, "InvalidValue \"minutes\""},
        {{{u"minutes"_qs, 2.5}}, "WrongType \"minutes\""},
        {{{u"minutes"_qs, ~quint64(0)}}, "InvalidValue \"minutes\""},
        {{{u"hours"_qs, 8761}}, "InvalidValue \"hours\""},
        {{{u"hours"_qs, 1}, {u"minutes"_qs, 1}}, "Conflict \"hours\""},
        {{{u"seconds"_qs, 90}, {u"repeat"_qs, true}}, "Conflict \"repeat\""},
        {{{u"seconds"_qs, 90}, {u"store"_qs, true}}, "Conflict \"store\""},
        {{{u"minutes"_qs, 1}, {u"snooze"_qs, 4}}, "InvalidValue \"snooze\""},
        {{{u"minutes"_qs, 1}, {u"sound"_qs, u"Nope"_qs}}, "NoSuchSound Nope"},
        {{{u"time"_qs, u"24:00"_qs}}, "InvalidValue \"time\""},
        {{{u"time"_qs, u"09:00"_qs}, {u"repeat"_qs, true}}, "Conflict \"repeat\""},
        {{{u"time"_qs, u"09:00"_qs}, {u"date"_qs, u"2026-11-24"_qs}}, "PastDate \"date\""},
        {{{u"time"_qs, u"09:00"_qs}, {u"every-week"_qs, true}}, "Conflict \"every-week\""},
        {{{u"time"_qs, u"09:00"_qs}, {u"weekdays"_qs, QStringList()}}, "InvalidValue \"weekdays\""},
        {{{u"time"_qs, u"09:00"_qs}, {u"weekdays"_qs, u"mon"_qs}}, "WrongType \"weekdays\""},
    };
    for (const auto& row : rows) {
        QVariantMap description{{u"title"_qs, u"T"_qs}};
        description.insert(row.description);
        EXPECT_EQ(answerTo(description), row.answer);
    }
    EXPECT_EQ(clock.allAlarms().size(), 12U) << "what is refused leaves nothing behind";
    control.addTimer(asker(), 5, {});
    EXPECT_EQ(told, u"24. 10:05:00 default /Ping  7"_qs);
}

TEST_F(AlarmControlTest, anEditChangesWhatItSaysAndNoMore) {
    const QVariantMap timer{
        {u"minutes"_qs, 25}, {u"sound"_qs, u"Brook"_qs}, {u"voice"_qs, u"Ann"_qs}};
    const QVariantMap daily{{u"time"_qs, u"11:00"_qs}, {u"every-day"_qs, true}};
    const QVariantMap dated{{u"time"_qs, u"11:00"_qs}, {u"snooze"_qs, 9}};
    const QVariantMap weekly{{u"time"_qs, u"11:00"_qs},
                             {u"weekdays"_qs, QStringList{u"mon"_qs}},
                             {u"every-week"_qs, true}};
    const struct {
        QVariantMap alarm, changes;
        const char* answer;
    } rows[]{
        {timer, {{u"title"_qs, u"Egg"_qs}}, "24. 10:25:00 Egg /Brook Ann 7"},
        {timer, {{u"minutes"_qs, 25}, {u"sound"_qs, u""_qs}}, "24. 10:30:00 T silent Ann 7"},
        {timer, {{u"seconds"_qs, 30}, {u"voice"_qs, u""_qs}}, "24. 10:05:30 T /Brook  7"},
        {timer, {{u"repeat"_qs, true}, {u"sound"_qs, u"B"_qs}}, "24. 10:25:00 T /B Ann 7 repeats"},
        {timer, {{u"time"_qs, u"9"_qs}}, "25. 09:00:00 T /Brook Ann 7"},
        {timer, {{u"weekdays"_qs, QStringList{u"mon"_qs}}}, "MissingKey \"time\""},
        {daily, {{u"time"_qs, u"9"_qs}}, "25. 09:00:00 T /Ping  7 daily"},
        {daily, {{u"date"_qs, u"fri"_qs}}, "27. 11:00:00 T /Ping  7 daily"},
        {daily, {{u"every-day"_qs, false}}, "24. 11:00:00 T /Ping  7"},
        {dated, {{u"time"_qs, u"12"_qs}, {u"snooze"_qs, 10}}, "24. 12:00:00 T /Ping  10"},
        {dated, {{u"time"_qs, u"9"_qs}}, "PastDate \"time\""},
        {dated, {{u"title"_qs, u" "_qs}}, "InvalidValue \"title\""},
        {dated, {{u"snooze"_qs, 4}}, "InvalidValue \"snooze\""},
        {weekly, {{u"weekdays"_qs, QStringList{u"wed"_qs}}}, "25. 11:00:00 T /Ping  7 weekly"},
        {weekly, {{u"time"_qs, u"7:30"_qs}}, "30. 07:30:00 T /Ping  7 weekly"},
        {weekly, {{u"date"_qs, u"fri"_qs}}, "27. 11:00:00 T /Ping  7"},
    };
    for (const auto& row : rows) {
        loop.setWall(QDateTime({2026, 11, 24}, {10, 0}));
        for (const QString& title : {u"T"_qs, u"Egg"_qs})
            library.removeAlarm(title);
        QVariantMap description{{u"title"_qs, u"T"_qs}, {u"store"_qs, true}};
        description.insert(row.alarm);
        answerTo(description);
        const QString id = clock.allAlarms().front()->identity();
        loop.advance(5min);
        control.editAlarm(asker(), id, row.changes);
        loop.runPending();
        EXPECT_EQ(told.toStdString(), row.answer);
        EXPECT_EQ(clock.allAlarms().front()->identity(), id);
        EXPECT_EQ(clock.allAlarms().size(), 1U);
        EXPECT_EQ(alarmTitles(*library.alarms()),
                  QStringList{row.changes.value(u"title"_qs) == u"Egg"_qs ? u"Egg"_qs : u"T"_qs})
            << "its entry goes along";
        EXPECT_EQ(control.remove(id), std::nullopt);
    }
    control.editStored(asker(), u"T"_qs, {{u"title"_qs, u"Run"_qs}, {u"time"_qs, u"6"_qs}});
    EXPECT_EQ(reportsOf(control.storedAlarms()).front().value(u"time"_qs), u"06:00"_qs);
    control.editStored(asker(), u"T"_qs, {});
    EXPECT_EQ(told, u"NoSuchAlarm no alarm is stored as \"T\""_qs);
    answerTo({{u"title"_qs, u"Brief"_qs}, {u"minutes"_qs, 1}});
    const AlarmPtr alarm = clock.allAlarms().front();
    control.editAlarm(asker(), alarm->identity(),
                      {{u"title"_qs, u"Other"_qs}, {u"sound"_qs, u"Slow"_qs}});
    clock.removeAlarm(alarm);
    slowSounds.back()(u"/Slow"_qs);
    EXPECT_TRUE(told.startsWith(u"NoSuchAlarm"_qs)) << "it rang its last meanwhile";
    EXPECT_EQ(alarmTitles(*library.alarms()), QStringList{u"Run"_qs}) << "no template came of it";
}

TEST_F(AlarmControlTest, whatIsReportedOfAnAlarmMakesTheSameAgain) {
    for (const QVariantMap& description :
         {QVariantMap{{u"title"_qs, u"T"_qs}, {u"hours"_qs, 3}, {u"repeat"_qs, true}},
          QVariantMap{{u"title"_qs, u"T"_qs}, {u"time"_qs, u"07:30"_qs}, {u"every-day"_qs, true}},
          QVariantMap{{u"title"_qs, u"T"_qs},
                      {u"time"_qs, u"07:30"_qs},
                      {u"weekdays"_qs, QStringList{u"mon"_qs, u"sun"_qs}},
                      {u"every-week"_qs, true},
                      {u"fade"_qs, true},
                      {u"until-answered"_qs, true},
                      {u"softly"_qs, true},
                      {u"voice"_qs, u"Ann"_qs}}}) {
        QVariantMap stored = description;
        stored.insert(u"store"_qs, true);
        const std::string first = answerTo(stored);
        QVariantMap report = reportsOf(control.storedAlarms()).back();
        EXPECT_TRUE(report.remove(u"due"_qs) == 1 || report.contains(u"hours"_qs));
        for (auto said = description.begin(); said != description.end(); ++said)
            EXPECT_EQ(report.value(said.key()), said.value()) << qPrintable(said.key());
        report.insert(u"sound"_qs, u"Ping"_qs); // a name here, a path there
        EXPECT_EQ(answerTo(report), first);
    }
}

TEST_F(AlarmControlTest, manyChangesAreWrittenAndToldTogether) {
    int tellings = 0;
    RemoteListener listener;
    listener.alarmsChanged = [&] { ++tellings; };
    control.setListener(listener);
    for (int i = 0; i < 100; ++i) {
        control.addAlarm(asker(), {{u"title"_qs, QString::number(i)},
                                   {u"minutes"_qs, 110 - i},
                                   {u"store"_qs, i % 2 == 1}});
        loop.advance(2ms); // 0.2 s in all
    }
    loop.advance(1s);
    EXPECT_EQ(tellings, 3);
    EXPECT_EQ(defaults.writes(), 3);
    for (int i = 0; i < 3; ++i)
        control.whenSaved([&](const auto& kept) { told += kept.value_or(u" saved"_qs); });
    EXPECT_FALSE(told.contains(u"saved"_qs)) << "not before it is";
    problem = u" full"_qs;
    loop.runPending();
    EXPECT_THAT(told.toStdString(), EndsWith("full full full"));
    EXPECT_EQ(savings, 1);
    EXPECT_EQ(control.storedAlarms().count, 50U) << "only what was asked for";
    EXPECT_EQ(control.runningAlarms().count, 100U);
    QStringList next;
    for (const QVariantMap& report : reportsOf(control.nextAlarms(3)))
        next << report.value(u"title"_qs).toString();
    EXPECT_EQ(next, (QStringList{u"99"_qs, u"98"_qs, u"97"_qs}));
}

TEST_F(AlarmControlTest, whoWaitsForASoundIsAnsweredInTimeAndTheAlarmCountsFromTheRequest) {
    const auto answerTo = [&](const char* sound, std::chrono::seconds after) {
        told = u"no answer"_qs;
        control.addAlarm(asker(), {{u"title"_qs, u"T"_qs},
                                   {u"minutes"_qs, 1},
                                   {u"sound"_qs, QString::fromLatin1(sound)}});
        loop.advance(after);
        for (const auto& found : std::exchange(slowSounds, {}))
            found(u"/Slow"_qs);
        return told.toStdString();
    };
    EXPECT_EQ(answerTo("Slow", 7s), "24. 10:01:00 T /Slow  7");
    EXPECT_EQ(answerTo("Slow", 9s),
              "TooSlow the sound or the voice could not be looked up within 8 seconds");
    hasGivenUp = true;
    EXPECT_EQ(answerTo("Slow", 7s), "no answer");
    control.addTimer(asker(), 5, {});
    EXPECT_EQ(clock.allAlarms().size(), 1U) << "what was given up is not made later";
}

TEST_F(AlarmControlTest, theLibraryAndTheQueueAreBoundedAndSaySo) {
    const auto numbered = [](int number) {
        return QVariantMap{
            {u"title"_qs, QString::number(number)}, {u"minutes"_qs, 1}, {u"store"_qs, true}};
    };
    for (int i = 0; i < 1000; ++i)
        control.addAlarm(asker(), numbered(i));
    EXPECT_EQ(answerTo(numbered(1000)), "TooMany 1000 alarms are stored already");
    loop.advance(1s);
    EXPECT_EQ(answerTo(numbered(1000)), "TooMany 1000 alarms are stored already");
    EXPECT_TRUE(answerTo(numbered(7)).starts_with("24. 10:01"))
        << "in the place of the one of its title";
    EXPECT_EQ(control.storedAlarms().count, 1000U);
    for (int i = 0; i < 200; ++i)
        answerTo({{u"title"_qs, u"T"_qs}, {u"minutes"_qs, 1}, {u"sound"_qs, u"Slow"_qs}});
    EXPECT_EQ(answerTo({{u"title"_qs, u"T"_qs}, {u"minutes"_qs, 1}}),
              "Busy too many requests are waiting");
}

TEST_F(AlarmControlTest, anAlarmIsAnsweredOnlyAsItStands) {
    answerTo({{u"title"_qs, u"T"_qs}, {u"minutes"_qs, 1}});
    const AlarmPtr alarm = clock.allAlarms().front();
    const QString id = alarm->identity();
    EXPECT_EQ(control.snooze(id)->name, u"NotRinging"_qs);
    EXPECT_EQ(control.clear(u"none"_qs)->name, u"NoSuchAlarm"_qs);
    EXPECT_EQ(control.clear(id), std::nullopt);
    EXPECT_EQ(control.skip(id)->name, u"NothingToSkip"_qs);
    alarm->setShouldRepeat(true);
    EXPECT_EQ(control.resume()->name, u"NotPaused"_qs);
    EXPECT_EQ(control.pause(7)->name, u"PastDate"_qs);
    EXPECT_EQ(control.pause(0), std::nullopt);
    EXPECT_EQ(control.state().nextAlarm, QString());
    EXPECT_FALSE(reportsOf(control.runningAlarms())[0].contains(u"due"_qs));
    EXPECT_EQ(control.resume(), std::nullopt);
    EXPECT_EQ(control.state().nextAlarm, id);
    alarm->setIsTriggered(true);
    loop.advance(100ms);
    EXPECT_EQ(control.state().ringing, QStringList{id});
    EXPECT_EQ(control.snooze(id), std::nullopt);
    EXPECT_EQ(control.snoozeFor(id, 1440), std::nullopt);
    EXPECT_EQ(control.snoozeFor(id, 1441)->name, u"InvalidValue"_qs);
    EXPECT_EQ(control.clear(id), std::nullopt);
    RemoteListener listener;
    listener.befell = [&](auto event, const auto&, const auto& title) {
        trace.add(title + QString::number(int(event)));
    };
    control.setListener(listener);
    for (const auto event :
         {RingEvent::Rings, RingEvent::Snoozed, RingEvent::Cleared, RingEvent::Unanswered})
        control.befell(event, alarm);
    loop.runPending();
    EXPECT_THAT(trace.events(), ElementsAre("0 end T", "100 snooze T 7", "100 snooze T 1440",
                                            "100 clear T", "100 T0", "100 T1", "100 T2", "100 T3"));
    EXPECT_EQ(std::get<Refusal>(control.undo()).name, u"NothingToUndo"_qs);
    EXPECT_EQ(control.remove(id), std::nullopt);
    EXPECT_EQ(control.undo(), AlarmAnswer(u"T"_qs));
    EXPECT_EQ(control.remove(id), std::nullopt);
    EXPECT_EQ(control.remove(id)->name, u"NoSuchAlarm"_qs);
    EXPECT_EQ(control.skipBreak()->name, u"NoBreaksRun"_qs);
    EXPECT_EQ(control.startBreaks(), std::nullopt);
    EXPECT_EQ(control.startBreaks()->name, u"BreaksRun"_qs) << "or two timers would run";
    EXPECT_EQ(control.skipBreak(), std::nullopt);
    EXPECT_EQ(trace.events().back(), "100 skip");
}

TEST_F(AlarmControlTest, aStoredAlarmWhoseMomentHasPassedDoesNotRingAtOnce) {
    answerTo({{u"title"_qs, u"once"_qs}, {u"time"_qs, u"11:00"_qs}, {u"store"_qs, true}});
    answerTo({{u"title"_qs, u"weekly"_qs},
              {u"store"_qs, true},
              {u"time"_qs, u"11:00"_qs},
              {u"weekdays"_qs, QStringList{u"tue"_qs}}});
    EXPECT_TRUE(std::holds_alternative<QString>(control.startStored(u"weekly"_qs))) << "at once";
    loop.advance(2h);
    EXPECT_EQ(std::get<Refusal>(control.startStored(u"once"_qs)).name, u"PastDate"_qs);
    EXPECT_TRUE(std::holds_alternative<QString>(control.startStored(u"weekly"_qs)));
    EXPECT_TRUE(lastAdded().startsWith(u"01. 11:00"_qs)) << lastAdded().toStdString();
}

} // namespace
