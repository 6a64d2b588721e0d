// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/SoundTrial.h"

#include "platform/linux/sound/ModuleSoundPlayer.h"
#include "platform/linux/sound/SoundFile.h"
#include "platform/linux/sound/SoundLikeness.h"
#include "platform/linux/sound/SoundLoader.h"
#include "platform/linux/sound/SoundModule.h"

#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

constexpr auto patience = 4s;
constexpr auto longestLatency = 500ms; // of an output, from playing to being heard
// Coarse enough to be quick, fine enough for what a small speaker can play.
constexpr std::size_t coarseness = 8;
// A sound as loud as ours at the same time leaves 0.7.
constexpr double alike = 0.4;

// The beginning of the file, from which it is known again.
std::vector<float> beginning(const SoundModule& module, const QString& path) {
    QString error;
    const auto file = SoundFile::open(path, error);
    const auto decoder = file ? module.decoder(
                                    file, Sound::Seconds(0), [] { return false; }, error)
                              : nullptr;
    if (!decoder)
        return {};
    std::vector<float> stereo(soundRate / 2 * soundChannels);
    stereo.resize(decoder->read(stereo.data(), soundRate / 2) * soundChannels);
    return coarser(stereo, coarseness * soundChannels);
}

SoundProof proofOf(std::optional<double> likeness) {
    if (!likeness)
        return SoundProof::Silent;
    return *likeness >= alike ? SoundProof::Heard : SoundProof::Drowned;
}

} // namespace

SoundTrial::SoundTrial(RunLoop& loop, ModuleSoundPlayer& player, const QString& path, Done done)
    : m_loop(loop), m_player(player), m_path(path), m_done(std::move(done)) {
    m_patience = m_loop.scheduleOnce(
        patience, [this] { answer(SoundProof::Deaf); }, RunLoopMode::Common);
    readFile();
}

SoundTrial::~SoundTrial() = default;

void SoundTrial::readFile() {
    m_player.loader()->run(SoundUse::Other, m_path,
                           [source = m_player.loader()->source(), &loop = m_loop, path = m_path,
                            self = m_lifeline.weak()] {
                               QString error;
                               SoundModule* const module = source->load(error);
                               auto expected =
                                   module ? beginning(*module, path) : std::vector<float>();
                               loop.post([self, module, expected = std::move(expected)] {
                                   SoundTrial* const trial = self.get();
                                   if (trial && expected.empty())
                                       trial->answer(SoundProof::NotPlayed);
                                   else if (trial)
                                       trial->listen(*module, expected);
                               });
                           });
}

void SoundTrial::listen(SoundModule& module, std::vector<float> expected) {
    m_expected = std::move(expected);
    m_listening = module.listen([&loop = m_loop, recording = m_recording, self = m_lifeline.weak()](
                                    const float* samples, std::size_t count) {
        if (samples) {
            const std::lock_guard lock(recording->lock);
            recording->samples.insert(recording->samples.end(), samples, samples + count);
            return;
        }
        loop.post([self] {
            if (SoundTrial* const trial = self.get())
                trial->play();
        });
    });
}

void SoundTrial::play() {
    m_sound = m_player.ringWithContentsOfFile(m_path);
    m_sound->setFinished([this](bool completed) {
        if (!completed) {
            answer(SoundProof::NotPlayed);
            return;
        }
        m_patience = m_loop.scheduleOnce(
            longestLatency, [this] { judge(); }, RunLoopMode::Common);
    });
    (void)m_sound->play();
}

void SoundTrial::judge() {
    m_listening.reset();
    m_player.loader()->run(
        SoundUse::Other, QString(),
        [&loop = m_loop, recording = m_recording, expected = m_expected, self = m_lifeline.weak()] {
            std::vector<float> heard;
            {
                const std::lock_guard lock(recording->lock);
                heard.swap(recording->samples);
            }
            const SoundProof proof = proofOf(likeness(coarser(heard, coarseness), expected));
            loop.post([self, proof] {
                if (SoundTrial* const trial = self.get())
                    trial->answer(proof);
            });
        });
}

// Not from inside a callback of the sound, which may go with this.
void SoundTrial::answer(SoundProof proof) {
    m_patience.cancel();
    m_loop.defer(m_lifeline.guard([proof](SoundTrial& self) {
        if (const Done done = std::exchange(self.m_done, {}))
            done(proof);
    }));
}

} // namespace dorvane
