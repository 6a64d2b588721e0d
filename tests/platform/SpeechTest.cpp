// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/speech/ModuleSpeechService.h"
#include "tests/platform/SoundEngineFixture.h"

using namespace dorvane::testing;

namespace {

// The real synthesiser, heard through the real engine; run by the sound rig.
class SpeechTest : public SoundEngineFixture {
protected:
    void SetUp() override {
        SoundEngineFixture::SetUp();
        bool known = false;
        m_speech.whenVoicesKnown([&] { known = true; });
        ASSERT_TRUE(QTest::qWaitFor([&] { return known; }));
    }
    [[nodiscard]] int voice(const char* name) const {
        return static_cast<int>(m_speech.voiceNames().indexOf(QLatin1String(name))) + 1;
    }

    ModuleSpeechService m_speech{m_loop, m_player, QStringLiteral(DORVANE_SPEECH_MODULE)};
};

TEST_F(SpeechTest, announcementsAreHeardOverlapAndReportTheirEnd) {
    EXPECT_GT(m_speech.voiceNames().size(), 100);
    const int english = voice("English (America)");
    const QString longText = u"The kettle has been boiling for a very long time."_qs;
    m_speech.prepare(longText, english);
    QTest::qWait(500);
    const double from = m_capture.now();
    QStringList ended;
    std::vector<std::unique_ptr<SpeechService::Utterance>> spoken;
    const auto speak = [&](const QString& text, int number, const char* name) {
        spoken.push_back(m_speech.speak(
            text, number, [] {},
            [&ended, name](bool isSpoken) {
                ended << QLatin1String(name) + (isSpoken ? u""_qs : u"-not"_qs);
            }));
    };
    speak(longText, english, "long");
    speak(u"Tea."_qs, voice("German"), "tea");
    speak(QString(), 1, "empty");
    speak(longText, 0, "no-voice");
    ASSERT_TRUE(QTest::qWaitFor([&] { return ended.size() == 3; }, 10'000));
    EXPECT_EQ(ended.join(u' '), u"empty-not tea long"_qs);
    const auto heard = m_capture.bursts(from, 0.5);
    ASSERT_EQ(heard.size(), 1U) << "one after the other, they would be apart";
    EXPECT_GT(heard[0].length(), 2);
    EXPECT_LT(heard[0].begin - from, 0.1 * patience()) << "it was prepared";
    EXPECT_GT(m_capture.level(heard[0].begin, heard[0].end), 0.02);
}

TEST_F(SpeechTest, whatIsBrokenOffFallsSilentAndKeepsNobodyWaiting) {
    const QString novel = u"The kettle has been boiling for a very long time. "_qs.repeated(40);
    bool hasBegun = false;
    bool hasEnded = false;
    const auto done = [&](bool) { hasEnded = true; };
    auto heard = m_speech.speak(
        novel, 1, [&] { hasBegun = true; }, done);
    ASSERT_TRUE(QTest::qWaitFor([&] { return hasBegun; }, 20'000));
    QTest::qWait(1000);
    auto rendered = m_speech.speak(
        novel, 2, [] {}, done);
    heard.reset();
    rendered.reset();
    QTest::qWait(500);
    const double from = m_capture.now();
    bool isSpoken = false;
    const auto next = m_speech.speak(
        u"Tea."_qs, 1, [] {}, [&](bool spoken) { isSpoken = spoken; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return isSpoken; }, 5000));
    const auto bursts = m_capture.bursts(from, 0.5);
    ASSERT_EQ(bursts.size(), 1U);
    EXPECT_LT(bursts[0].length(), 1.5);
    EXPECT_FALSE(hasEnded);
}

} // namespace
