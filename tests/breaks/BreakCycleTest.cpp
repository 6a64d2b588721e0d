// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/BreakCycle.h"

#include "breaks/PendixTakeABreakSettings.h"
#include "platform/NotificationCenter.h"
#include "platform/UserFolders.h"
#include "tests/support/Dates.h"
#include "tests/support/FakeSoundPlayer.h"
#include "tests/support/MemoryDefaults.h"
#include "tests/support/VirtualRunLoop.h"

#include <gmock/gmock.h>

using namespace dorvane;
using namespace dorvane::testing;
using namespace std::chrono_literals;
using ::testing::ElementsAreArray;

namespace {

// Notes what is done to it; answers its buttons as the window does.
class TracedSheet final : public BreakSheet {
public:
    TracedSheet(Trace& trace, std::function<void()> disableRespito)
        : m_trace(trace), m_disableRespito(std::move(disableRespito)) {}

    void setCompletion(Completion completion) override { m_completion = std::move(completion); }
    void setShowBreakTime(const QString& text) override { m_trace.add(text); }
    void begin() override {
        m_trace.add(QStringLiteral("begin"));
        m_isVisible = true;
    }
    [[nodiscard]] bool isVisible() const override { return m_isVisible; }
    void end(SheetCode code) override {
        m_trace.add(QStringLiteral("end %1").arg(int(code)));
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
    bool m_isVisible = false;
};

class BreakCycleTest : public ::testing::Test {
protected:
    BreakCycleTest() {
        m_settings.loadPrefs();
        m_settings.setSoundPath(QStringLiteral("in"));
        m_settings.setDurationSoundPath(QStringLiteral("out"));
        m_settings.writePrefs();
    }

    void start() {
        m_settings.setRespitoStatus(1);
        m_settings.writePrefs();
        m_cycle.startBreakTimer(m_settings.takeABreakFrequency());
        m_cycle.enableRespito();
    }
    void setDuration(qint64 minutes) {
        m_defaults.setValue(QStringLiteral("PendixTakeABreakDuration"), minutes);
        m_settings.loadPrefs();
    }
    [[nodiscard]] bool isOn() {
        m_settings.loadPrefs();
        return m_settings.RespitoStatus() != 0;
    }
    [[nodiscard]] std::shared_ptr<TracedSheet> sheet() const { return m_sheet.lock(); }

    // What happened, but of a countdown only its first text.
    [[nodiscard]] std::string story() const {
        std::string story;
        bool isCounting = false;
        for (const std::string& event : m_trace.events()) {
            const bool isText = event.find("Take a break") != std::string::npos;
            if (!isText || !isCounting)
                story += event + "\n";
            isCounting = isText || (isCounting && event.find("begin") != std::string::npos) ||
                         (isCounting && event.find(" in ") != std::string::npos) ||
                         (isCounting && event.find(" out ") != std::string::npos);
        }
        return story;
    }

    VirtualRunLoop m_loop{at("2026-11-23 08:00")};
    Trace m_trace{m_loop};
    NotificationCenter m_notifications;
    MemoryDefaults m_defaults;
    UserFolders m_user;
    PendixTakeABreakSettings m_settings{m_defaults, m_user, m_loop, m_notifications};
    FakeSoundPlayer m_player{m_loop, m_trace};
    std::weak_ptr<TracedSheet> m_sheet;
    BreakCycle m_cycle{
        {.runLoop = m_loop, .settings = m_settings, .player = m_player, .makeSheet = [this] {
             const auto made =
                 std::make_shared<TracedSheet>(m_trace, [this] { m_cycle.disableRespito(); });
             m_sheet = made;
             return made;
         }}};
};

TEST_F(BreakCycleTest, EightBreaksThenItStopsByItself) {
    start();
    std::vector<std::string> expected;
    const auto add = [&](int second, const std::string& event) {
        expected.push_back(std::to_string(second * 1000) + " " + event);
    };
    for (int i = 1; i <= 8; ++i) {
        const int begin = i * 1500 + (i - 1) * 300;
        add(begin, "in play");
        for (int left = 300; left > 0; --left) {
            const auto text =
                QString::asprintf("Take a break for %.2d:%.2d mins", left / 60, left % 60);
            add(begin + 300 - left, text.toStdString());
            if (left == 300)
                add(begin, "begin");
            if (left == 299) // a sound takes its second
                add(begin + 1, "in finished");
        }
        add(begin + 300, "Take a break for 00:00 mins");
        add(begin + 300, "");
        add(begin + 300, i < 8 ? "end 0" : "end -1000");
        if (i < 8) {
            add(begin + 300, "out play");
            add(begin + 301, "out finished");
        }
    }
    m_loop.advance(24h);
    EXPECT_THAT(m_trace.events(), ElementsAreArray(expected));
    EXPECT_FALSE(isOn());
    EXPECT_TRUE(m_player.sounds().empty());
    EXPECT_TRUE(m_sheet.expired());
}

TEST_F(BreakCycleTest, WakesForNothingWhileWorkingAndOnceASecondInABreak) {
    start();
    m_loop.advance(5s); // until the settings are on the disk
    const auto firingsIn = [this](RunLoop::Milliseconds time) {
        const auto before = m_loop.firings();
        m_loop.advance(time);
        return m_loop.firings() - before;
    };
    EXPECT_EQ(firingsIn(25min - 6s), 0);
    m_loop.advance(10s);
    EXPECT_EQ(firingsIn(60s), 60);
}

// The roads through the cycle's states other than its plain round.
TEST_F(BreakCycleTest, DoneEarlyPlaysTheStopSoundAndShortensTheNextSheetByASecond) {
    start();
    m_loop.advance(25min + 10s);
    sheet()->clickSkipBreak();
    m_loop.advance(25min + 500ms);
    EXPECT_EQ(story(), "1500000 in play\n1500000 Take a break for 05:00 mins\n1500000 begin\n"
                       "1501000 in finished\n1510000 end 0\n1510000 out play\n"
                       "1511000 out finished\n3010000 in play\n"
                       "3010000 Take a break for 04:59 mins\n3010000 begin\n");
    EXPECT_TRUE(isOn());
}

TEST_F(BreakCycleTest, StopOnTheSheetSwitchesOff) {
    start();
    m_loop.advance(25min + 10s);
    sheet()->clickStopBreak();
    m_loop.advance(2h);
    EXPECT_EQ(story(), "1500000 in play\n1500000 Take a break for 05:00 mins\n1500000 begin\n"
                       "1501000 in finished\n1510000 end -1000\n");
    EXPECT_FALSE(isOn());
}

TEST_F(BreakCycleTest, SwitchingOffTakesTheSheetAway) {
    start();
    m_loop.advance(25min);
    m_cycle.disableRespito(); // while it opens
    m_loop.advance(2h);
    EXPECT_EQ(story(), "1500000 in play\n1500000 Take a break for 05:00 mins\n1500000 begin\n"
                       "1500000 end 1\n1501000 in finished\n");
    EXPECT_FALSE(isOn());
    m_trace.clear();
    start();
    m_cycle.disableRespito();
    m_loop.advance(2h);
    EXPECT_EQ(story(), "");
}

// The first timer goes on and sees to the breaks; each of its calls ends what was set later.
TEST_F(BreakCycleTest, StartedTwiceBothTimersCall) {
    setDuration(2);
    start();
    m_loop.advance(1min);
    start();
    m_loop.advance(50min);
    EXPECT_EQ(story(), "1500000 in play\n1500000 Take a break for 02:00 mins\n1500000 begin\n"
                       "1501000 in finished\n1620000 \n1620000 end 0\n1620000 out play\n"
                       "1621000 out finished\n3000000 in play\n"
                       "3000000 Take a break for 02:00 mins\n3000000 begin\n"
                       "3001000 in finished\n");
    // Stopping reaches only the later one. A sheet that the other calls up still answers.
    sheet()->clickStopBreak();
    m_trace.clear();
    m_loop.advance(24min);
    ASSERT_TRUE(sheet());
    sheet()->clickSkipBreak();
    m_loop.advance(1min);
    EXPECT_FALSE(isOn());
}

TEST_F(BreakCycleTest, ASheetThatIsStillUpIsReplaced) {
    start();
    m_loop.advance(25min);
    m_cycle.takeABreakUpdate();
    EXPECT_EQ(story(), "1500000 in play\n1500000 Take a break for 05:00 mins\n1500000 begin\n"
                       "1500000 in play\n1500000 end 1\n"
                       "1500000 Take a break for 04:59 mins\n1500000 begin\n");
    m_loop.advance(5min);
    EXPECT_FALSE(sheet());
    EXPECT_TRUE(isOn());
}

TEST_F(BreakCycleTest, ABreakEndsWhenItWasMadeShorterThanItHasLasted) {
    start();
    m_loop.advance(25min + 150s);
    setDuration(2);
    m_loop.advance(1s);
    EXPECT_FALSE(sheet());
    EXPECT_EQ(m_trace.events().back(), "1651000 out play");
    setDuration(qint64(1) << 32); // none at all
    m_loop.advance(25min);
    EXPECT_FALSE(sheet());
    EXPECT_TRUE(isOn());
}

// Its time is that of work and rest, not that of the wall.
TEST_F(BreakCycleTest, SleepAndASetClockChangeNeitherWorkNorBreak) {
    start();
    m_loop.advance(10min);
    m_loop.sleepMachine(8h);
    m_loop.advance(5min);
    m_loop.setWall(m_loop.now().addSecs(-3600));
    m_loop.advance(10min - 1ms);
    EXPECT_EQ(story(), "");
    m_loop.advance(2min);
    m_loop.sleepMachine(8h);
    m_loop.setWall(m_loop.now().addSecs(-3600));
    m_loop.advance(3min + 1ms);
    EXPECT_EQ(m_trace.events().back(), "1800000 out play");
}

TEST_F(BreakCycleTest, WithoutSoundTheBreaksComeAllTheSame) {
    m_player.hasServer = false;
    start();
    m_loop.advance(30min);
    EXPECT_EQ(story(), "1500000 in refused\n1500000 Take a break for 05:00 mins\n"
                       "1500000 begin\n1800000 \n1800000 end 0\n1800000 out refused\n");
    m_loop.advance(25min);
    EXPECT_TRUE(sheet());
    EXPECT_TRUE(m_player.sounds().empty());
}

} // namespace
