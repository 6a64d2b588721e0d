// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/SoundFile.h"
#include "platform/linux/sound/SoundLoader.h"
#include "platform/linux/sound/SoundModule.h"
#include "tests/support/Run.h"
#include "tests/support/Testing.h"

#include <cmath>

using namespace dorvane::testing;

namespace {

constexpr double frequency = 3000;

struct Case {
    const char* name;
    const char* codec;
    const char* layout = "stereo";
    int channels = 2;
    int rate;
};

// Every kind of lossless file, and every rate with one of them.
const Case cases[] = {
    {.name = "a.wav", .codec = "pcm_s16le", .layout = "mono", .channels = 1, .rate = 44100},
    {.name = "c.wav", .codec = "pcm_s24le", .rate = 44100},
    {.name = "d.wav", .codec = "pcm_f32le", .rate = 48000},
    {.name = "e.wav", .codec = "pcm_s16le", .layout = "5.1", .channels = 6, .rate = 44100},
    {.name = "f.aiff", .codec = "pcm_s16be", .rate = 44100},
    {.name = "g.aiff", .codec = "pcm_s16be", .layout = "mono", .channels = 1, .rate = 8000},
    {.name = "h.caf", .codec = "pcm_s16be", .rate = 11025},
    {.name = "i.flac", .codec = "flac", .rate = 96000},
    {.name = "j.flac", .codec = "flac", .layout = "5.1", .channels = 6, .rate = 44100},
    {.name = "k.m4a", .codec = "alac", .layout = "mono", .channels = 1, .rate = 32000},
    {.name = "l.wav", .codec = "pcm_s16le", .rate = 192000},
};

QString tone(const QTemporaryDir& folder, const Case& c, int frames) {
    QString path = folder.filePath(QLatin1String(c.name));
    const QString wave = u"0.9*sin(2*PI*%1*t)"_qs.arg(frequency);
    run(u"ffmpeg -v error -f lavfi -i "
        "aevalsrc=%1:c=%2:s=%3,atrim=end_sample=%4 -c:a %5 %6"_qs
            .arg(QStringList(c.channels, wave).join(u'|'), QLatin1String(c.layout))
            .arg(c.rate)
            .arg(frames)
            .arg(QLatin1String(c.codec), path));
    return path;
}

// How far everything else lies below the tone, in decibels: the tone that fits the samples best is
// taken out, and what is left is compared with it. Frames are 48 kHz.
double purity(const std::vector<float>& samples) {
    double ss = 0, cc = 0, sc = 0, sy = 0, cy = 0, total = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double phase = 2 * M_PI * frequency * static_cast<double>(i) / 48000;
        const double s = std::sin(phase), c = std::cos(phase);
        const auto y = static_cast<double>(samples[i]);
        ss += s * s, cc += c * c, sc += s * c, sy += s * y, cy += c * y, total += y * y;
    }
    const double determinant = ss * cc - sc * sc;
    const double a = (sy * cc - cy * sc) / determinant, b = (cy * ss - sy * sc) / determinant;
    const double tone = a * sy + b * cy; // the energy of the tone that fits
    return 10 * std::log10(tone / (total - tone));
}

// A level alone does not tell: a tone that is broken up is as loud as a whole one.
TEST(SoundDecoderTest, losslessSoundsStayPureToneForToneAndFrameForFrame) {
    const QTemporaryDir folder;
    SoundModuleSource source(QStringLiteral(DORVANE_SOUND_MODULE));
    QString error;
    const SoundModule* module = source.load(error);
    ASSERT_TRUE(module) << qPrintable(error);
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.name) + ' ' + std::to_string(c.rate));
        const int frames = c.rate + 7;
        const auto wanted = static_cast<std::size_t>(std::llround(frames * 48000.0 / c.rate));
        const auto file = SoundFile::open(tone(folder, c, frames), error);
        const auto decoder = module->decoder(
            file, Sound::Seconds(0), [] { return false; }, error);
        if (!decoder) {
            ADD_FAILURE() << qPrintable(error);
            continue;
        }
        std::vector<float> sound(2 * (wanted + 100));
        EXPECT_EQ(decoder->read(sound.data(), wanted + 100), wanted);
        for (const std::size_t channel : {0U, 1U}) {
            std::vector<float> side;
            for (std::size_t i = 2000; i + 2000 < wanted; ++i) // the ends of a tone are no tone
                side.push_back(sound[2 * i + channel]);
            EXPECT_GT(purity(side), 90) << channel;
            EXPECT_NEAR(*std::max_element(side.begin(), side.end()), 0.9, 0.01) << channel;
        }
    }
}

} // namespace
