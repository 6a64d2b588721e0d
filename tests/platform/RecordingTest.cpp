// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/recording/ModuleAudioRecorder.h"
#include "platform/linux/session/QtRunLoop.h"
#include "tests/support/Files.h"
#include "tests/support/Run.h"
#include "tests/support/Testing.h"

#include <QLibrary>
#include <QProcess>
#include <QTest>

#include <cmath>
#include <sndfile.hh>

using namespace dorvane::testing;

namespace {

// The real microphone path, fed by the rig; run by the sound rig.
class RecordingTest : public ::testing::Test {
protected:
    [[nodiscard]] QString path(const char* name) const {
        return m_folder.filePath(QLatin1String(name));
    }
    [[nodiscard]] QString files() const {
        return QDir(m_folder.path()).entryList(QDir::Files).join(u' ');
    }

    // Starts a recording whose end is noted in m_error.
    void begin(const char* file) {
        m_error.reset();
        EXPECT_TRUE(m_recorder.record(path(file), [this](const auto& error) { m_error = error; }));
    }
    bool begins(const char* file) {
        begin(file);
        return QTest::qWaitFor([&] { return QFile::exists(path(file) + u".part"_qs); });
    }
    bool ends() {
        return QTest::qWaitFor([&] { return !m_recorder.isRecording(); });
    }
    [[nodiscard]] std::string reason() const {
        return m_error ? m_error->reason.toStdString() : "";
    }
    [[nodiscard]] std::string domain() const {
        return m_error ? m_error->domain.toStdString() : "";
    }

    // Another microphone, that always hears something, for as long as the answer is not unloaded.
    static QString humming() {
        QString module = run(u"pactl load-module module-sine-source source_name=other"_qs);
        run(u"pactl set-default-source other"_qs);
        return module;
    }
    static void unload(const QString& module) {
        run(u"pactl unload-module "_qs + module);
        run(u"pactl set-default-source mic"_qs);
    }
    bool hears() {
        return QTest::qWaitFor([&] { return m_recorder.takeLevel() > 0.01F; });
    }

    // Plays a sine of amplitude 0.5 into the microphone.
    void speak(double seconds) {
        const QTemporaryDir elsewhere;
        const QString tone = elsewhere.filePath(u"tone.wav"_qs);
        run(u"ffmpeg -v error -f lavfi -i aevalsrc=0.5*sin(2*PI*441*t):s=48000:d=%1 %2"_qs
                .arg(seconds)
                .arg(tone));
        QProcess player;
        player.startCommand(u"paplay --device=micfeed "_qs + tone);
        EXPECT_TRUE(QTest::qWaitFor([&] { return player.state() == QProcess::NotRunning; }));
    }

    QTemporaryDir m_folder;
    QtRunLoop m_loop;
    ModuleAudioRecorder m_recorder{m_loop, QStringLiteral(DORVANE_RECORDING_MODULE)};
    std::optional<AudioError> m_error;
};

TEST_F(RecordingTest, recordingHoldsEveryFrameAtItsLevel) {
    ASSERT_TRUE(begins("Tea time.aiff"));
    EXPECT_FALSE(m_recorder.record(path("other.aiff"), [](const auto&) {})) << "one at a time";
    speak(1.5);
    m_recorder.stop();
    ASSERT_TRUE(ends());
    ASSERT_FALSE(m_error) << domain();
    EXPECT_EQ(files(), u"Tea time.aiff"_qs);

    SndfileHandle sound(QFile::encodeName(path("Tea time.aiff")).constData());
    EXPECT_EQ(sound.format(), SF_FORMAT_AIFF | SF_FORMAT_PCM_16);
    EXPECT_EQ(sound.samplerate(), 48000);
    ASSERT_EQ(sound.channels(), 1);
    std::vector<float> samples(static_cast<std::size_t>(sound.frames()));
    (void)sound.readf(samples.data(), sound.frames());
    const auto isLoud = [](float sample) { return std::abs(sample) >= 0.01F; };
    const auto first = std::find_if(samples.begin(), samples.end(), isLoud);
    const auto last = std::find_if(samples.rbegin(), samples.rend(), isLoud).base();
    EXPECT_NEAR(static_cast<double>(last - first), 72000, 4) << "the sine begins and ends at zero";
    double energy = 0;
    std::ptrdiff_t quiet = 0;
    for (auto i = first; i < last; ++i) {
        energy += static_cast<double>(*i) * static_cast<double>(*i);
        quiet = isLoud(*i) ? 0 : quiet + 1;
        ASSERT_LT(quiet, 8) << "a gap";
    }
    EXPECT_NEAR(std::sqrt(2 * energy / 72000), 0.5, 0.01);
}

TEST_F(RecordingTest, onlyWhatStopCompletesIsKeptAtTheEndOfTheProgramToo) {
    begin("early.aiff");
    m_recorder.cancel(); // before it has begun
    ASSERT_TRUE(begins("late.aiff"));
    m_recorder.cancel();
    const QString module = humming();
    ASSERT_TRUE(begins("kept.aiff") && hears());
    m_recorder.stop();
    m_recorder.finish();
    unload(module);
    EXPECT_EQ(files(), u"kept.aiff"_qs);
    ModuleAudioRecorder other(m_loop, QStringLiteral(DORVANE_RECORDING_MODULE));
    EXPECT_TRUE(other.record(path("other.aiff"), [](const auto&) {}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return files().endsWith(u".part"_qs); }));
    other.finish();
    EXPECT_EQ(files(), u"kept.aiff"_qs);
}

TEST_F(RecordingTest, serverAndMicrophoneThatAreMissingOrGoAreNamedAndWhatWasHeardIsKept) {
    const QByteArray server = qgetenv("PULSE_SERVER");
    qputenv("PULSE_SERVER", "unix:/nope");
    begin("a.aiff");
    EXPECT_TRUE(ends());
    EXPECT_THAT(domain(), StartsWith("Error opening component: 6"));
    EXPECT_EQ(reason(), "No sound server answers.");
    qputenv("PULSE_SERVER", server);

    EXPECT_EQ(files(), QString());
    const QString module = humming();
    begin("a.aiff");
    EXPECT_TRUE(hears());
    unload(module);
    EXPECT_TRUE(ends());
    EXPECT_THAT(domain(), StartsWith("Failed to read AU: "));
    EXPECT_EQ(reason(), "The microphone has gone.");
    EXPECT_TRUE(m_error && m_error->isKept);
    EXPECT_GT(SndfileHandle(QFile::encodeName(path("a.aiff")).constData()).frames(), 480);
    EXPECT_EQ(files(), u"a.aiff"_qs);
}

// The server may call what is being played the default, where there is a microphone all the same.
TEST_F(RecordingTest, silenceIsNoRecordingAndLeavesTheOlderOne) {
    writeFile(path("a.aiff"), "older");
    run(u"pactl set-default-source out.monitor"_qs);
    ASSERT_TRUE(begins("a.aiff"));
    QTest::qWait(300);
    m_recorder.stop();
    EXPECT_TRUE(ends());
    EXPECT_EQ(reason(), "Nothing was heard: is the microphone muted?");
    EXPECT_EQ(contentsOf(path("a.aiff")), "older");
    ASSERT_TRUE(begins("a.aiff"));
    speak(0.3);
    m_recorder.stop();
    EXPECT_TRUE(ends());
    EXPECT_EQ(reason(), "");
    EXPECT_NE(contentsOf(path("a.aiff")), "older");
    run(u"pactl set-default-source mic"_qs);
}

} // namespace
