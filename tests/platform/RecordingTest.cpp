// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/recording/ModuleAudioRecorder.h"
#include "platform/linux/session/QtRunLoop.h"
#include "tests/support/LoopWait.h"

#include <QDir>
#include <QElapsedTimer>
#include <QLibrary>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <cmath>
#include <gmock/gmock.h>
#include <sndfile.hh>
#include <sys/mount.h>

using namespace dorvane;
using dorvane::testing::runUntil;
using ::testing::StartsWith;
using namespace std::chrono_literals;

namespace {

QString output(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished()) << qPrintable(program);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

// A sound server besides the rig's, which a test may do anything to; the default one meanwhile.
class OtherServer {
public:
    explicit OtherServer(const QString& microphone) : m_before(qgetenv("PULSE_SERVER")) {
        m_process.setProcessChannelMode(QProcess::ForwardedChannels);
        const QString socket = m_folder.filePath(QStringLiteral("native"));
        m_process.start(
            QStringLiteral("pulseaudio"),
            {QStringLiteral("-n"), QStringLiteral("--daemonize=no"),
             QStringLiteral("--use-pid-file=no"), QStringLiteral("--exit-idle-time=-1"),
             QStringLiteral("--realtime=no"), QStringLiteral("--high-priority=no"),
             QStringLiteral("--log-level=error"), QStringLiteral("-L"),
             QStringLiteral("module-null-sink sink_name=out"), QStringLiteral("-L"), microphone,
             QStringLiteral("-L"),
             QStringLiteral("module-native-protocol-unix auth-anonymous=1 socket=") + socket});
        qputenv("PULSE_SERVER", "unix:" + socket.toUtf8());
        const auto answers = [] {
            return !output(QStringLiteral("pactl"), {QStringLiteral("stat")}).isEmpty();
        };
        for (int i = 0; i < 100 && !answers(); ++i)
            QThread::msleep(100);
    }
    ~OtherServer() {
        kill();
        qputenv("PULSE_SERVER", m_before);
    }
    OtherServer(const OtherServer&) = delete;
    OtherServer& operator=(const OtherServer&) = delete;

    void kill() {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QByteArray m_before;
    QTemporaryDir m_folder;
    QProcess m_process;
};

const QString sineMicrophone = QStringLiteral("module-sine-source source_name=mic rate=48000");

// The real microphone path, fed by the rig; run by the sound rig.
class RecordingTest : public ::testing::Test {
protected:
    [[nodiscard]] QString path(const char* name) const {
        return m_folder.filePath(QString::fromLatin1(name));
    }
    [[nodiscard]] QStringList files() const { return QDir(m_folder.path()).entryList(QDir::Files); }

    // Starts a recording whose end is noted in m_error.
    void begin(const QString& file) {
        m_error.reset();
        EXPECT_TRUE(m_recorder.record(file, [this](const auto& error) { m_error = error; }));
    }
    bool hears() {
        float loudest = 0;
        return runUntil(m_loop, [&] {
            loudest = std::max(loudest, m_recorder.takeLevel());
            return loudest > 0.01F;
        });
    }
    bool ends() {
        return runUntil(m_loop, [&] { return !m_recorder.isRecording(); });
    }
    [[nodiscard]] std::string domain() const {
        return m_error ? m_error->domain.toStdString() : "";
    }

    // Plays into the microphone: a sine of amplitude 0.5, or noise.
    void speak(double seconds, const char* samples = "0.5*sin(2*PI*441*t)") {
        const QTemporaryDir elsewhere;
        const QString tone = elsewhere.filePath(QStringLiteral("tone.wav"));
        QProcess::execute(QStringLiteral("ffmpeg"),
                          {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-f"),
                           QStringLiteral("lavfi"), QStringLiteral("-i"),
                           QStringLiteral("aevalsrc=exprs=%1:s=48000:d=%2")
                               .arg(QLatin1String(samples))
                               .arg(seconds),
                           tone});
        QProcess player;
        player.start(QStringLiteral("paplay"), {QStringLiteral("--device=micfeed"), tone});
        EXPECT_TRUE(runUntil(m_loop, [&] { return player.state() == QProcess::NotRunning; }));
    }

    // Where one channel of a file is not silent.
    struct Heard {
        sf_count_t frames = 0; // from the first audible sample to the last
        double level = 0;      // the amplitude of a sine of that loudness
        sf_count_t longestGap = 0;
    };
    static Heard listen(const QString& file, int channel = 0) {
        SndfileHandle sound(QFile::encodeName(file).constData());
        const int channels = sound.channels();
        std::vector<float> samples(static_cast<std::size_t>(sound.frames() * channels));
        (void)sound.readf(samples.data(), sound.frames());
        Heard heard;
        sf_count_t first = -1;
        sf_count_t last = -1;
        double energy = 0;
        for (sf_count_t i = 0; i < sound.frames(); ++i) {
            const auto sample =
                static_cast<double>(samples[static_cast<std::size_t>(i * channels + channel)]);
            if (std::abs(sample) < 0.01)
                continue;
            first = first < 0 ? i : first;
            heard.longestGap = last < 0 ? 0 : std::max(heard.longestGap, i - last);
            last = i;
            energy += sample * sample;
        }
        heard.frames = last - first + 1;
        heard.level = std::sqrt(2 * energy / static_cast<double>(heard.frames));
        return heard;
    }

    QTemporaryDir m_folder;
    QtRunLoop m_loop;
    ModuleAudioRecorder m_recorder{m_loop, QStringLiteral(DORVANE_RECORDING_MODULE)};
    std::optional<AudioError> m_error;
};

TEST_F(RecordingTest, recordingHoldsEveryFrameAtItsLevel) {
    const QString file = path("Tea time.aiff");
    begin(file);
    ASSERT_TRUE(runUntil(m_loop, [&] { return QFile::exists(file + QStringLiteral(".part")); }));
    EXPECT_FALSE(m_recorder.record(path("other.aiff"), [](const auto&) {})) << "one at a time";
    speak(1.5);
    m_recorder.stop();
    ASSERT_TRUE(ends());
    ASSERT_FALSE(m_error) << domain();
    EXPECT_EQ(files(), QStringList{QStringLiteral("Tea time.aiff")});

    const SndfileHandle sound(QFile::encodeName(file).constData());
    EXPECT_EQ(sound.format(), SF_FORMAT_AIFF | SF_FORMAT_PCM_16);
    EXPECT_EQ(sound.samplerate(), 48000);
    EXPECT_EQ(sound.channels(), 1);
    const Heard heard = listen(file);
    EXPECT_NEAR(static_cast<double>(heard.frames), 72000, 4)
        << "the sine's own silence at its ends";
    EXPECT_LT(heard.longestGap, 8);
    EXPECT_NEAR(heard.level, 0.5, 0.01);
}

TEST_F(RecordingTest, compressedRecordingIsStereoAacAt11025HzWithTheSampleOnBothSides) {
    QLibrary library(QStringLiteral(DORVANE_RECORDING_MODULE));
    const auto entry =
        reinterpret_cast<RecordingModuleEntry>(library.resolve(recordingModuleEntryName));
    ASSERT_TRUE(entry) << qPrintable(library.errorString());
    const std::unique_ptr<RecordingModule> module(entry());
    const QString file = path("voice: take 1.m4a");
    const auto recorder =
        module->recorder(RecordingFormat::Aac, file, std::make_shared<RecordingMonitor>());
    for (const auto& error : {recorder->prepare(), recorder->start()})
        ASSERT_FALSE(error) << qPrintable(error->domain);
    speak(2.0);
    const auto stopped = recorder->stop();
    ASSERT_FALSE(stopped) << qPrintable(stopped->domain);

    EXPECT_EQ(output(QStringLiteral("ffprobe"),
                     {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-of"),
                      QStringLiteral("csv=p=0"), QStringLiteral("-show_entries"),
                      QStringLiteral("stream=codec_name,profile,sample_rate,channels"),
                      QStringLiteral("file:") + file}),
              QStringLiteral("aac,LC,11025,2"));
    const QString plain = path("plain.wav");
    output(QStringLiteral("ffmpeg"), {QStringLiteral("-v"), QStringLiteral("error"),
                                      QStringLiteral("-i"), QStringLiteral("file:") + file, plain});
    for (const int channel : {0, 1}) {
        const Heard heard = listen(plain, channel);
        EXPECT_NEAR(static_cast<double>(heard.frames), 2 * 11025, 60);
        EXPECT_NEAR(heard.level, 0.5, 0.01);
    }
}

TEST_F(RecordingTest, cancelledRecordingLeavesNoFileAndTheNextOneWorks) {
    begin(path("a.aiff"));
    m_recorder.cancel(); // before it has begun
    begin(path("a.aiff"));
    ASSERT_TRUE(runUntil(m_loop, [&] { return !files().isEmpty(); }));
    m_recorder.cancel();
    ASSERT_TRUE(runUntil(m_loop, [&] { return files().isEmpty(); }));
    begin(path("b.aiff"));
    ASSERT_TRUE(runUntil(m_loop, [&] { return !files().isEmpty(); }));
    m_recorder.stop();
    ASSERT_TRUE(ends());
    EXPECT_EQ(files(), QStringList{QStringLiteral("b.aiff")});
}

TEST_F(RecordingTest, withoutAServerOrAMicrophoneTheRecordingEndsAtOnce) {
    const QByteArray before = qgetenv("PULSE_SERVER");
    qputenv("PULSE_SERVER", "unix:/nope");
    begin(path("a.aiff"));
    EXPECT_TRUE(ends());
    EXPECT_THAT(domain(), StartsWith("Error opening component: 6"));
    qputenv("PULSE_SERVER", before);

    const OtherServer server(QStringLiteral("module-null-sink sink_name=more"));
    begin(path("a.aiff"));
    EXPECT_TRUE(ends());
    EXPECT_THAT(domain(), StartsWith("Failed to get input device ASBD: 5"));
    begin(path("no/such/folder.aiff"));
    EXPECT_TRUE(ends());
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(RecordingTest, microphoneThatIsUnpluggedEndsTheRecordingWithoutAFile) {
    const OtherServer server(sineMicrophone);
    begin(path("a.aiff"));
    ASSERT_TRUE(hears());
    QProcess::execute(QStringLiteral("pactl"),
                      {QStringLiteral("unload-module"), QStringLiteral("module-sine-source")});
    EXPECT_TRUE(ends());
    EXPECT_THAT(domain(), StartsWith("Failed to read AU: "));
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(RecordingTest, serverThatIsKilledEndsTheRecordingAndTheNextOneFindsTheNewServer) {
    {
        OtherServer server(sineMicrophone);
        begin(path("a.aiff"));
        ASSERT_TRUE(hears());
        server.kill();
        EXPECT_TRUE(ends());
        EXPECT_THAT(domain(), StartsWith("Failed to read AU: "));
        EXPECT_TRUE(files().isEmpty());
    }
    const OtherServer again(sineMicrophone);
    begin(path("a.aiff"));
    ASSERT_TRUE(hears());
    m_recorder.stop();
    EXPECT_TRUE(ends());
    EXPECT_FALSE(m_error) << domain();
    EXPECT_GT(listen(path("a.aiff")).frames, 100);
}

TEST_F(RecordingTest, fullDiskEndsTheRecordingWithoutAFile) {
    const QByteArray disk = QFile::encodeName(m_folder.path());
    if (::mount("tmpfs", disk.constData(), "tmpfs", 0, "size=64k") < 0)
        GTEST_SKIP() << "only root can make a small disk";
    for (const RecordingFormat format : {RecordingFormat::Aiff, RecordingFormat::Aac}) {
        QFile ballast(path("ballast"));
        EXPECT_TRUE(ballast.open(QIODevice::WriteOnly));
        if (format == RecordingFormat::Aiff) {
            begin(path("a.aiff"));
            EXPECT_TRUE(ends());
        } else {
            ballast.write(QByteArray(60 * 1024, 'x'));
            ballast.flush();
            QLibrary library(QStringLiteral(DORVANE_RECORDING_MODULE));
            const auto entry =
                reinterpret_cast<RecordingModuleEntry>(library.resolve(recordingModuleEntryName));
            const std::unique_ptr<RecordingModule> module(entry());
            const auto monitor = std::make_shared<RecordingMonitor>();
            std::atomic<bool> hasFailed = false;
            monitor->failed = [&] { hasFailed = true; };
            const auto recorder = module->recorder(format, path("a.m4a"), monitor);
            for (const auto& error : {recorder->prepare(), recorder->start()})
                EXPECT_FALSE(error);
            speak(2, "random(0)-0.5");
            EXPECT_TRUE(runUntil(m_loop, [&] { return hasFailed.load(); }));
            m_error = recorder->stop();
        }
        EXPECT_EQ(domain(), "ExtAudioFileWriteAsync failed: -28");
        EXPECT_TRUE(ballast.remove());
        EXPECT_TRUE(files().isEmpty()) << qPrintable(files().join(QLatin1Char(' ')));
    }
    ::umount(disk.constData());
}

} // namespace
