// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/QtRunLoop.h"
#include "platform/linux/sound/ModuleSoundPlayer.h"
#include "platform/linux/speech/ModuleSpeechService.h"
#include "tests/support/SinkCapture.h"
#include "tests/support/Testing.h"

#include <QTest>

using namespace dorvane::testing;

namespace {

// The real synthesiser, heard through the real engine; run by the sound rig.
class SpeechTest : public ::testing::Test {
protected:
    void SetUp() override {
        bool known = false;
        m_speech.whenVoicesKnown([&] { known = true; });
        ASSERT_TRUE(QTest::qWaitFor([&] { return known; }));
    }
    [[nodiscard]] int voice(const char* name) const {
        return static_cast<int>(m_speech.voiceNames().indexOf(QLatin1String(name))) + 1;
    }

    QtRunLoop m_loop;
    ModuleSoundPlayer m_player{m_loop, QStringLiteral(DORVANE_SOUND_MODULE)};
    ModuleSpeechService m_speech{m_loop, m_player, QStringLiteral(DORVANE_SPEECH_MODULE)};
};

TEST_F(SpeechTest, announcementsAreHeardOverlapAndReportTheirEnd) {
    SinkCapture sink;
    ASSERT_TRUE(sink.isRunning()) << "run this program through tests/support/sound-rig";
    EXPECT_GT(m_speech.voiceNames().size(), 100);
    const int english = voice("English (America)");
    const QString longText = u"The kettle has been boiling for a very long time."_qs;
    m_speech.prepare(longText, english);
    QTest::qWait(500);
    const double from = sink.now();
    QStringList ended;
    m_speech.speak(longText, english, [&] { ended << u"long"_qs; });
    m_speech.speak(u"Tea."_qs, voice("German"), [&] { ended << u"tea"_qs; });
    m_speech.speak(QString(), 1, [&] { ended << u"empty"_qs; });
    m_speech.speak(longText, 0, [&] { ended << u"no voice"_qs; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return ended.size() == 3; }, 10'000));
    EXPECT_EQ(ended.join(u' '), u"empty tea long"_qs);
    const auto heard = sink.bursts(from, 0.5);
    ASSERT_EQ(heard.size(), 1U) << "one after the other, they would be apart";
    EXPECT_GT(heard[0].length(), 2);
    EXPECT_LT(heard[0].begin - from, 0.1) << "it was prepared";
    EXPECT_GT(sink.level(heard[0].begin, heard[0].end), 0.02);
}

TEST_F(SpeechTest, anyTextInAnyVoiceComesToAnEnd) {
    int ended = 0;
    const QString odd =
        QString::fromUtf8("<a> [[x]] & \xF0\x9F\x98\x80 ") + QChar(0) + QChar(0xD800);
    for (const int number : {1, 40, 80, 120})
        m_speech.speak(odd, number, [&] { ++ended; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return ended == 4; }));
    // Nobody waits for a novel at the end of the program.
    m_speech.speak(u"and so on "_qs.repeated(100'000), 1, [] {});
}

TEST_F(SpeechTest, withoutASynthesiserThereAreNoVoicesAndTheLogSaysWhy) {
    const LogCapture log;
    ModuleSpeechService speech(m_loop, m_player, u"/nowhere/speech.so"_qs);
    int answers = 0;
    for (int i = 0; i < 2; ++i)
        speech.whenVoicesKnown([&] { ++answers; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return answers == 2; }));
    EXPECT_TRUE(speech.voiceNames().isEmpty());
    ASSERT_EQ(log.messages().size(), 1);
    EXPECT_TRUE(log.messages()[0].contains(u"/nowhere/speech.so"_qs));
}

} // namespace
