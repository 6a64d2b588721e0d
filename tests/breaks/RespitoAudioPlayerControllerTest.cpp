// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/RespitoAudioPlayerController.h"

#include "platform/Bundle.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/Windows.h"

#include <QToolButton>

using namespace dorvane::testing;

namespace {

const QString track = QStringLiteral(DORVANE_BUNDLE "/Resources/Respito.mp3");

// The real window and a track of 95 seconds that takes 200 ms to load.
class RespitoAudioPlayerTest : public FakeDesktopTest {
protected:
    RespitoAudioPlayerTest() {
        player.setFile(track, {.duration = 95s, .loadDelay = 200ms});
        m_controller.setWindowWillClose([this] { trace.add(u"closed"_qs); });
        m_controller.showWindow();
    }

    template<typename Control>
    static Control& control(const char* name) {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->objectName() == u"RespitoAudioPlayer"_qs)
                return *window->findChild<Control*>(QString::fromLatin1(name));
        std::abort();
    }
    static void click(const char* button) { control<QToolButton>(button).click(); }

    // What can be used, whether the light is on, the times and the slider in seconds.
    static std::string shown() {
        QStringList parts;
        for (const char* name : {"playButton", "resumeButton", "stopButton", "timeSlider"})
            if (control<QWidget>(name).isEnabled())
                parts << QString::fromLatin1(name).first(4);
        if (!control<QWidget>("playFeedback").isHidden())
            parts << u"light"_qs;
        parts << control<QLabel>("startTime").text() << control<QLabel>("endTime").text()
              << u"at %1"_qs.arg(control<QSlider>("timeSlider").value() / 1000.0);
        return parts.join(u' ').toStdString();
    }

    const Bundle m_bundle{QStringLiteral(DORVANE_BUNDLE), {}};
    RespitoAudioPlayerController m_controller{loop, player, m_bundle};
};

TEST_F(RespitoAudioPlayerTest, playsPausesSeeksAndStops) {
    const auto slideTo = [](int second) { control<QSlider>("timeSlider").setValue(1000 * second); };
    const auto close = [] { control<QWidget>("playButton").window()->close(); };
    EXPECT_TRUE(QFile::exists(track)) << "is shipped";
    const struct {
        std::function<void()> act;
        RunLoop::Milliseconds then;
        const char* shown;
    } steps[] = {
        {[] {}, 0ms, "play 00:00 00:00 at 0"},
        {[this] { m_controller.playVideo(); }, 0ms, "resu stop time light 00:00 -00:00 at 0"},
        {[] {}, 200ms, "resu stop time light 00:00 -01:35 at 0"},
        {[] {}, 61'900ms, "resu stop time light 01:01 -00:33 at 61.9"},
        {[this] { m_controller.playVideo(); }, 0ms, "resu stop time light 01:01 -00:33 at 61.9"},
        {[] { click("resumeButton"); }, 1h, "play stop time light 01:01 -00:33 at 61.9"},
        {[slideTo] { slideTo(10); }, 1h, "play stop time light 00:10 -01:25 at 10"},
        {[] { click("playButton"); }, 1s, "resu stop time light 00:11 -01:24 at 11"},
        {[slideTo] { slideTo(90); }, 1s, "resu stop time light 01:31 -00:04 at 91"},
        {[] { click("stopButton"); }, 1h, "play 00:00 01:35 at 0"},
        {[] { click("playButton"); }, 94'200ms, "resu stop time light 01:34 -00:01 at 94"},
        {[] {}, 1h, "play 00:00 01:35 at 95"},
        {[] { click("playButton"); }, 5200ms, "resu stop time light 00:05 -01:30 at 5"},
        {close, 1h, "play time 00:00 01:35 at 0"},
    };
    for (const auto& step : steps) {
        step.act();
        loop.advance(step.then);
        EXPECT_EQ(shown(), step.shown) << "step " << &step - steps;
    }
    EXPECT_FALSE(m_controller.isWindowOpen());
    EXPECT_TRUE(player.sounds().empty());
    EXPECT_LT(loop.firings(), 1750) << "ten times in each second that was heard, and never else";
    std::vector<std::string> heard;
    for (const std::string& event : trace.events())
        heard.push_back(event.substr(event.rfind('/') + 1));
    EXPECT_THAT(heard,
                ElementsAre("Respito.mp3 play", "Respito.mp3 pause", "Respito.mp3 seek 10.000",
                            "Respito.mp3 resume", "Respito.mp3 seek 90.000", "Respito.mp3 dropped",
                            "Respito.mp3 play", "Respito.mp3 finished", "Respito.mp3 play",
                            "Respito.mp3 dropped", ::testing::EndsWith(" closed")));
}

} // namespace
