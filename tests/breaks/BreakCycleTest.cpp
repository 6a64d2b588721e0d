// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/breaks/BreakRig.h"

using namespace dorvane::testing;

namespace {

// A sheet that notes when it was to be seen, in minutes and seconds, and how it ended. Answers its
// buttons as the window does.
class NotedSheet final : public BreakSheet {
public:
    explicit NotedSheet(BreakRig& rig, QStringList& notes) : m_rig(rig), m_notes(notes) {}

    void setCompletion(Completion completion) override { m_completion = std::move(completion); }
    void setShowBreakTime(const QString& text) override {
        if (m_text.isEmpty())
            m_text = text;
    }
    void setCanBePutOff(bool canBe) override { canBePutOff = canBe; }
    void begin() override {
        static const QString full = u"Take a break for 05:00 mins"_qs;
        m_notes << clock() + (m_text == full ? QString() : u" ("_qs + m_text + u')') + u" -"_qs;
        m_isVisible = true;
    }
    [[nodiscard]] bool isVisible() const override { return m_isVisible; }
    void end(SheetCode code) override {
        if (m_isVisible)
            m_notes.last() += u' ' + clock();
        m_isVisible = false;
        m_completion(code);
    }
    void clickStopBreak() override {
        end(SheetCode::Stopped);
        m_rig.cycle.disableRespito();
    }
    void clickSkipBreak() override { end(SheetCode::Done); }

    bool canBePutOff = false;

private:
    [[nodiscard]] QString clock() const {
        const auto seconds = (m_rig.loop.sinceBoot() - m_zero).count() / 1000;
        return u"%1:%2"_qs.arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
    }

    BreakRig& m_rig;
    QStringList& m_notes;
    static constexpr RunLoop::Milliseconds m_zero{0};
    Completion m_completion;
    QString m_text;
    bool m_isVisible = false;
};

struct Rig : BreakRig {
    Rig()
        : BreakRig([this](BreakRig& rig) {
            sheet = std::make_shared<NotedSheet>(rig, notes);
            return sheet;
        }) {}

    void setDuration(qint64 minutes) {
        defaults.setValue(u"PendixTakeABreakDuration"_qs, minutes);
        settings.loadPrefs();
    }
    void setSounds(const QString& start, const QString& stop) {
        settings.setSoundPath(start);
        settings.setDurationSoundPath(stop);
        settings.writePrefs();
    }
    // What was done, and what then is to be seen, until an hour and a half after the start.
    [[nodiscard]] std::string follows() {
        loop.advance(90min - loop.uptime());
        return notes.join(u", "_qs).toStdString() + (isOn() ? "" : "; off");
    }

    QStringList notes;                 // "25:00 - 30:00", a sheet from and until
    std::shared_ptr<NotedSheet> sheet; // the last one
};

using Act = std::function<void(Rig& rig)>;

// The actions, wherever they are offered: the window's buttons are those of the menu, of the bus
// and of the terminal.
const Act start = [](Rig& rig) { rig.start(); };
const Act stop = [](Rig& rig) { rig.respito.stopRespito(); };
const Act skip = [](Rig& rig) { rig.respito.skipRespito(); };
const Act done = [](Rig& rig) { rig.sheet->clickSkipBreak(); };
const Act stopInSheet = [](Rig& rig) { rig.sheet->clickStopBreak(); };
const Act putOff = [](Rig& rig) {
    ASSERT_TRUE(rig.sheet->canBePutOff);
    rig.sheet->end(SheetCode::PutOff);
};
const Act leave = [](Rig& rig) { rig.presence.leave(); };
const Act comeBack = [](Rig& rig) { rig.presence.comeBack(); };

Act wait(RunLoop::Milliseconds time) {
    return [time](Rig& rig) { rig.loop.advance(time); };
}

TEST(BreakCycleTest, EveryActionInEveryStateAndWhatFollows) {
    using Steps = std::vector<Act>;
    const char* const asked = // by a sheet that comes a second late
        "25:00 - 27:00, 52:00 (Take a break for 04:59 mins) - 56:59, 81:59 - 86:59";
    const Steps off;
    const Steps working{start, wait(10min)};
    const Steps near{start, wait(24min + 40s)};
    const Steps resting{start, wait(27min)};
    const Steps postponed{start, wait(27min), putOff, wait(3min)};
    const Steps postponedTwice{start, wait(27min), putOff, wait(5min), putOff, wait(3min)};
    const Steps away{start, wait(21min), leave, wait(2min)};
    const Steps waiting{start, wait(24min), leave, wait(2min)};
    const struct {
        Steps state;
        Steps actions;
        const char* follows;
    } table[] = {
        {off, {}, "; off"},
        {off, {start}, "25:00 - 30:00, 55:00 - 60:00, 85:00 - 90:00"},
        {working, {start}, "35:00 - 40:00, 65:00 - 70:00"},
        {working, {skip}, "35:00 - 40:00, 65:00 - 70:00"},
        {working, {stop}, "; off"},
        {working, {stop, wait(20min), start}, "55:00 - 60:00, 85:00 - 90:00"},
        {near, {skip}, "49:40 - 54:40, 79:40 - 84:40"},
        {resting, {start}, "25:00 - 27:00, 52:00 - 57:00, 82:00 - 87:00"},
        {resting, {skip}, asked},
        {resting, {done}, asked},
        {resting, {stop}, "25:00 - 27:00; off"},
        {resting, {stopInSheet}, "25:00 - 27:00; off"},
        {resting, {stop, wait(33min), start}, "25:00 - 27:00, 85:00 - 90:00"},
        {resting, {putOff}, "25:00 - 27:00, 32:00 - 37:00, 62:00 - 67:00"},
        {postponed, {skip}, "25:00 - 27:00, 55:00 - 60:00, 85:00 - 90:00"},
        {postponedTwice, {}, "25:00 - 27:00, 32:00 - 32:00, 37:00 - 42:00, 67:00 - 72:00"},
        {away, {comeBack}, "25:00 - 30:00, 55:00 - 60:00, 85:00 - 90:00"},
        {away, {}, ""},
        {{start, wait(10min), leave, wait(4min)}, {comeBack}, "39:00 - 44:00, 69:00 - 74:00"},
        {{start, wait(20min), leave, wait(4min)},
         {leave, comeBack}, // noticed again by what noticed it later
         "49:00 - 54:00, 79:00 - 84:00"},
        {waiting, {comeBack}, "26:00 - 31:00, 56:00 - 61:00, 86:00 -"},
        {waiting, {wait(2min), comeBack}, "53:00 - 58:00, 83:00 - 88:00"},
        {waiting, {skip, comeBack}, "51:00 - 56:00, 81:00 - 86:00"},
        {waiting, {stop, comeBack}, "; off"},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(&row - table);
        Rig rig;
        for (const Steps& steps : {row.state, row.actions})
            for (const Act& act : steps)
                act(rig);
        EXPECT_EQ(rig.follows(), row.follows);
    }
}

TEST(BreakCycleTest, WakesTwiceWhileWorkingOnceASecondInABreakAndNeverWhenOff) {
    Rig rig;
    rig.start();
    rig.loop.advance(5s); // until the settings are on the disk
    const auto firingsIn = [&rig](RunLoop::Milliseconds time) {
        const auto before = rig.loop.firings();
        rig.loop.advance(time);
        return rig.loop.firings() - before;
    };
    EXPECT_EQ(firingsIn(25min - 6s), 1);
    EXPECT_TRUE(rig.cycle.outlook().isNear);
    rig.loop.advance(10s);
    EXPECT_EQ(firingsIn(60s), 60);
    rig.sheet->clickSkipBreak();
    rig.cycle.disableRespito();
    rig.loop.advance(5s);
    EXPECT_EQ(firingsIn(2h), 0) << "switched off at work";
}

// What lengthens and shortens a break, and what does not.
TEST(BreakCycleTest, CountsTimeNotTicks) {
    const auto sleepAt = [](RunLoop::Milliseconds time, RunLoop::Milliseconds length) {
        return [time, length](Rig& rig) {
            rig.loop.advance(time);
            rig.loop.sleepMachine(length);
        };
    };
    const Act menuOpen = [](Rig& rig) {
        rig.loop.advance(26min);
        rig.loop.beginEventTracking();
        rig.loop.advance(3min);
        rig.loop.endEventTracking();
    };
    const Act shortened = [](Rig& rig) {
        rig.loop.advance(25min + 150s);
        rig.setDuration(2);
        rig.loop.advance(2s);
        rig.setDuration(qint64(1) << 32);
        rig.loop.advance(25min - 1s);
    };
    const Act clockSet = [](Rig& rig) {
        rig.loop.advance(10min);
        rig.loop.setWall(rig.loop.now().addSecs(-3600));
        EXPECT_EQ(rig.cycle.outlook().moment, rig.loop.now().addSecs(900));
        rig.loop.advance(17min);
        rig.loop.setWall(rig.loop.now().addSecs(3600));
        EXPECT_EQ(rig.cycle.outlook().moment, rig.loop.now().addSecs(180));
    };
    const Act unknown = [&](Rig& rig) {
        rig.presence.known = false;
        sleepAt(10min, 8h)(rig);
    };
    const struct {
        Act act;
        const char* follows;
    } table[] = {
        {menuOpen, "25:00 - 30:00, 55:00 - 60:00, 85:00 - 90:00"},
        {clockSet, "25:00 - 30:00, 55:00 - 60:00, 85:00 - 90:00"},
        {shortened, "25:00 - 27:31"},
        {sleepAt(10min, 8h), "515:00 - 520:00, 545:00 - 550:00"},
        {sleepAt(10min, 4min), "29:00 - 34:00, 59:00 - 64:00, 89:00 - 94:00"},
        {sleepAt(27min, 8h), "25:00 - 507:01, 532:01 - 537:01, 562:01 - 567:01"},
        {unknown, "505:00 - 510:00, 535:00 - 540:00, 565:00 - 570:00"},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(&row - table);
        Rig rig;
        rig.start();
        row.act(rig);
        EXPECT_EQ(rig.follows(), row.follows);
    }
}

// The start sound ends with the break, a long one as well as the track, which plays over and fades.
TEST(BreakCycleTest, EachSoundIsHeardAndEndsWithItsBreak) {
    const auto run = [](const QString& startSound, const QString& stopSound, const Act& act) {
        Rig rig;
        rig.setSounds(startSound, stopSound);
        for (const QString& name : {u"long"_qs, u"track"_qs})
            rig.player.setFile(name, {.duration = 200s});
        rig.player.setFile(u"gone"_qs, {.isPlayable = false});
        rig.start();
        rig.loop.advance(25min + 5s);
        act(rig);
        rig.loop.advance(5min);
        std::vector<std::string> events;
        for (const std::string& event : rig.trace.events())
            if (event.find("volume") == std::string::npos)
                events.push_back(event);
        return events;
    };
    EXPECT_THAT(run(u"long"_qs, u"out"_qs, done),
                ElementsAre("1500000 long play", "1505000 long stop", "1505000 out play",
                            "1506000 out finished"));
    EXPECT_THAT(run(u"long"_qs, u"out"_qs, stop),
                ElementsAre("1500000 long play", "1505000 long stop"));
    // Where the server or the output had gone, a sound is heard when they are back, unless its time
    // is over: that of the one at the end after a minute. One that breaks off by itself does so
    // twice.
    const auto lost = [](const Act& meanwhile) {
        return [meanwhile](Rig& rig) {
            rig.output.setState({.obstacle = SoundOutputState::Obstacle::NoServer, .detail = {}});
            rig.player.hasServer = false;
            rig.player.breakAll();
            meanwhile(rig);
            rig.player.hasServer = true;
            rig.output.setState({});
        };
    };
    const Act broken = [](Rig& rig) {
        rig.player.breakAll();
        rig.loop.advance(3s);
        rig.player.breakAll();
    };
    EXPECT_THAT(run(u"long"_qs, u"out"_qs, lost(wait(40s))),
                ElementsAre("1500000 long play", "1505000 long broken", "1545000 long play",
                            "1565000 long stop", "1800000 out play", "1801000 out finished"));
    EXPECT_THAT(run(u"long"_qs, u""_qs, broken),
                ElementsAre("1500000 long play", "1505000 long broken", "1507000 long play",
                            "1508000 long broken"));
    EXPECT_THAT(run(u"Respito"_qs, u""_qs, lost(wait(40s))),
                ElementsAre("1500000 track play", "1505000 track broken", "1545000 track play",
                            "1745000 track finished", "1745000 track play",
                            "1800000 track dropped"));
    EXPECT_THAT(run(u"gone"_qs, u"out"_qs, lost([](Rig& rig) { rig.sheet->clickSkipBreak(); })),
                ElementsAre("1500000 gone play", "1500000 gone failed", "1505000 out refused",
                            "1507000 out play", "1508000 out finished"));
    EXPECT_THAT(run({}, u"out"_qs, lost([](Rig& rig) {
                        rig.sheet->clickSkipBreak();
                        rig.loop.advance(61s);
                    })),
                ElementsAre("1505000 out refused"));
    EXPECT_THAT(run(u"Respito"_qs, u"Respito"_qs, putOff),
                ElementsAre("1500000 track play", "1505000 track dropped", "1805000 track play"));
    EXPECT_THAT(run(u"Respito"_qs, u"Respito"_qs, wait(0ms)),
                ElementsAre("1500000 track play", "1700000 track finished", "1700000 track play",
                            "1800000 track dropped", "1800000 track play"));
    Rig rig;
    rig.setSounds(u"Respito"_qs, {});
    rig.player.setFile(u"track"_qs, {.duration = 200s});
    rig.start();
    rig.loop.advance(25min + 4min + 50s);
    EXPECT_EQ(rig.player.sounds().front()->volume(), 1.0f);
    rig.loop.advance(5s);
    EXPECT_NEAR(rig.player.sounds().front()->volume(), 0.5f, 0.02f);
    rig.setDuration(6);
    rig.loop.advance(1s);
    EXPECT_EQ(rig.player.sounds().front()->volume(), 1.0f) << "the break was made longer";
}

} // namespace
