// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/BreakCycle.h"

#include "breaks/PendixTakeABreakSettings.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/MemoryDefaults.h"

using namespace dorvane::testing;

namespace {

// Notes what is done to it, of its texts the first one only. Answers its buttons as the window
// does.
class TracedSheet final : public BreakSheet {
public:
    TracedSheet(Trace& trace, std::function<void()> disableRespito)
        : m_trace(trace), m_disableRespito(std::move(disableRespito)) {}

    void setCompletion(Completion completion) override { m_completion = std::move(completion); }
    void setShowBreakTime(const QString& text) override {
        if (m_isNew)
            m_trace.add(text);
        m_isNew = false;
    }
    void begin() override {
        m_trace.add(u"begin"_qs);
        m_isVisible = true;
    }
    [[nodiscard]] bool isVisible() const override { return m_isVisible; }
    void end(SheetCode code) override {
        m_trace.add(u"end %1"_qs.arg(int(code)));
        m_isVisible = false;
        m_completion(code);
    }
    void clickStopBreak() override {
        end(SheetCode::Stopped);
        m_disableRespito();
    }
    void clickSkipBreak() override { end(SheetCode::Done); }

private:
    Trace& m_trace;
    std::function<void()> m_disableRespito;
    Completion m_completion;
    bool m_isNew = true;
    bool m_isVisible = false;
};

struct Rig : FakeDesktop {
    Rig() {
        settings.loadPrefs();
        settings.setSoundPath(u"in"_qs);
        settings.setDurationSoundPath(u"out"_qs);
        settings.writePrefs();
    }

    void start() {
        settings.setRespitoStatus(1);
        settings.writePrefs();
        cycle.startBreakTimer(settings.takeABreakFrequency());
        cycle.enableRespito();
    }
    void setDuration(qint64 minutes) {
        defaults.setValue(u"PendixTakeABreakDuration"_qs, minutes);
        settings.loadPrefs();
    }
    [[nodiscard]] bool isOn() {
        settings.loadPrefs();
        return settings.RespitoStatus() != 0;
    }

    MemoryDefaults defaults;
    PendixTakeABreakSettings settings{defaults, user, loop, notifications};
    std::shared_ptr<TracedSheet> sheet; // the last one
    BreakCycle cycle{{.runLoop = loop, .settings = settings, .player = player, .makeSheet = [this] {
                          sheet = std::make_shared<TracedSheet>(trace,
                                                                [this] { cycle.disableRespito(); });
                          return sheet;
                      }}};
};

TEST(BreakCycleTest, EightBreaksThenItStopsByItself) {
    Rig rig;
    rig.start();
    std::vector<std::string> expected;
    const auto add = [&](int second, const std::string& event) {
        expected.push_back(std::to_string(second * 1000) + " " + event);
    };
    for (int i = 1; i <= 8; ++i) {
        const int begin = i * 1500 + (i - 1) * 300;
        add(begin, "in play");
        add(begin, "Take a break for 05:00 mins");
        add(begin, "begin");
        add(begin + 1, "in finished"); // a sound takes its second
        add(begin + 300, i < 8 ? "end 0" : "end -1000");
        if (i < 8) {
            add(begin + 300, "out play");
            add(begin + 301, "out finished");
        }
    }
    rig.loop.advance(24h);
    EXPECT_THAT(rig.trace.events(), ElementsAreArray(expected));
    EXPECT_FALSE(rig.isOn());
    EXPECT_TRUE(rig.player.sounds().empty());
    EXPECT_EQ(rig.sheet.use_count(), 1);
}

TEST(BreakCycleTest, WakesForNothingWhileWorkingAndOnceASecondInABreak) {
    Rig rig;
    rig.start();
    rig.loop.advance(5s); // until the settings are on the disk
    const auto firingsIn = [&rig](RunLoop::Milliseconds time) {
        const auto before = rig.loop.firings();
        rig.loop.advance(time);
        return rig.loop.firings() - before;
    };
    EXPECT_EQ(firingsIn(25min - 6s), 0);
    rig.loop.advance(10s);
    EXPECT_EQ(firingsIn(60s), 60);
    rig.sheet->clickSkipBreak();
    rig.cycle.disableRespito();
    rig.loop.advance(5s);
    EXPECT_EQ(firingsIn(2h), 0) << "switched off at work";
}

// The roads through the cycle's states other than its plain round.
struct Road {
    const char* name;
    std::function<void(Rig&)> steps; // after the start
    bool endsOn;
    std::vector<std::string> trace;
};

const std::string five = " Take a break for 05:00 mins";

TEST(BreakCycleTest, EachRoadThroughItsStatesHasItsTrace) {
    const std::vector<Road> roads = {
        {"done early, to work for longer; the next sheet is a second short",
         [](Rig& rig) {
             rig.loop.advance(25min + 10s);
             rig.defaults.setValue(u"PendixTakeABreakFrequency"_qs, 30);
             rig.sheet->clickSkipBreak();
             rig.loop.advance(30min + 500ms);
         },
         true,
         {"1500000 in play", "1500000" + five, "1500000 begin", "1501000 in finished",
          "1510000 end 0", "1510000 out play", "1511000 out finished", "3310000 in play",
          "3310000 Take a break for 04:59 mins", "3310000 begin"}},
        {"stopped on the sheet",
         [](Rig& rig) {
             rig.loop.advance(25min + 10s);
             rig.sheet->clickStopBreak();
             rig.loop.advance(2h);
         },
         false,
         {"1500000 in play", "1500000" + five, "1500000 begin", "1501000 in finished",
          "1510000 end -1000"}},
        {"switched off while the sheet opens",
         [](Rig& rig) {
             rig.loop.advance(25min);
             rig.cycle.disableRespito();
             rig.loop.advance(2h);
         },
         false,
         {"1500000 in play", "1500000" + five, "1500000 begin", "1500000 end 1",
          "1501000 in finished"}},
        {"started twice: the first timer goes on, and stopping does not reach it",
         [](Rig& rig) {
             rig.loop.advance(1min);
             rig.start();
             rig.loop.advance(49min);
             rig.sheet->clickStopBreak();
             rig.loop.advance(25min);
         },
         false,
         {"1500000 in play", "1500000" + five, "1500000 begin", "1501000 in finished",
          "1800000 end 0", "1800000 out play", "1801000 out finished", "3000000 in play",
          "3000000" + five, "3000000 begin", "3000000 end -1000", "3001000 in finished",
          "4500000 in play", "4500000 Take a break for 04:59 mins", "4500000 begin"}},
        {"made shorter than it has lasted, then of no length",
         [](Rig& rig) {
             rig.loop.advance(25min + 150s);
             rig.setDuration(2);
             rig.loop.advance(2s);
             rig.setDuration(qint64(1) << 32);
             rig.loop.advance(25min - 1s);
         },
         true,
         {"1500000 in play", "1500000" + five, "1500000 begin", "1501000 in finished",
          "1651000 end 0", "1651000 out play", "1652000 out finished", "3151000 in play",
          "3151000 Take a break for 00:00 mins", "3151000 end 0", "3151000 out play"}},
        {"asleep, and with the clock set back, at work and at rest",
         [](Rig& rig) {
             for (const auto time : {10min, 17min}) {
                 rig.loop.advance(time);
                 rig.loop.sleepMachine(8h);
                 rig.loop.setWall(rig.loop.now().addSecs(-3600));
             }
             rig.loop.advance(3min);
         },
         true,
         {"1500000 in play", "1500000" + five, "1500000 begin", "1501000 in finished",
          "1800000 end 0", "1800000 out play"}},
    };
    for (const Road& road : roads) {
        SCOPED_TRACE(road.name);
        Rig rig;
        rig.start();
        road.steps(rig);
        EXPECT_THAT(rig.trace.events(), ElementsAreArray(road.trace));
        EXPECT_EQ(rig.isOn(), road.endsOn);
    }
}

} // namespace
