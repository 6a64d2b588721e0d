// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/speech/module/WaveFile.h"
#include "platform/linux/speech/SpeechModule.h"

#include <cstdint>
#include <espeak-ng/speak_lib.h>

namespace dorvane {

namespace {

constexpr std::size_t longestSeconds = 120;

// Where the synthesiser's callback puts what it hears; handed to it with each text.
struct Rendering {
    std::vector<std::int16_t> samples;
    std::size_t mostSamples;
    const std::atomic<bool>& cancelled;
};

// Answers 1 to end the synthesis.
int collect(short* wave, int count, espeak_EVENT* events) {
    auto& rendering = *static_cast<Rendering*>(events->user_data);
    if (wave && count > 0)
        rendering.samples.insert(rendering.samples.end(), wave, wave + count);
    return rendering.cancelled || rendering.samples.size() >= rendering.mostSamples ? 1 : 0;
}

// The synthesiser's frames a second; not positive when it cannot be used. It is one for the process
// and stays: ending it waits for ever once it has been started a second time.
int synthesiserRate() {
    static int rate = 0;
    if (rate <= 0) {
        rate = espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, 0, nullptr, espeakINITIALIZE_DONT_EXIT);
        espeak_SetSynthCallback(collect);
    }
    return rate;
}

class EspeakModule final : public SpeechModule {
public:
    [[nodiscard]] std::vector<SpeechVoice> voices(QString& error) override {
        std::vector<SpeechVoice> found;
        if (!isReady(error))
            return found;
        for (const espeak_VOICE** each = espeak_ListVoices(nullptr); *each; ++each)
            found.push_back({QString::fromUtf8((*each)->name), (*each)->identifier});
        if (found.empty())
            error = QStringLiteral("no voices are installed");
        return found;
    }

    [[nodiscard]] QByteArray render(const QString& text, const SpeechVoice& voice,
                                    const std::atomic<bool>& cancelled, QString& error) override {
        if (!isReady(error))
            return {};
        if (espeak_SetVoiceByName(voice.identifier.constData()) != EE_OK) {
            error = QStringLiteral("the voice cannot be used");
            return {};
        }
        QByteArray utf8 = text.toUtf8();
        utf8.replace('\0', ' '); // would end the text
        const auto rate = static_cast<std::uint32_t>(synthesiserRate());
        Rendering rendering{{}, longestSeconds * rate, cancelled};
        if (espeak_Synth(utf8.constData(), static_cast<std::size_t>(utf8.size()) + 1, 0,
                         POS_CHARACTER, 0, espeakCHARS_UTF8, nullptr, &rendering) != EE_OK)
            error = QStringLiteral("the text cannot be spoken");
        return rendering.samples.empty() ? QByteArray() : waveFile(rendering.samples, rate);
    }

private:
    [[nodiscard]] static bool isReady(QString& error) {
        if (synthesiserRate() > 0)
            return true;
        error = QStringLiteral("the data of the synthesiser are missing");
        return false;
    }
};

} // namespace

} // namespace dorvane

extern "C" Q_DECL_EXPORT dorvane::SpeechModule* dorvaneSpeechModule() {
    return new dorvane::EspeakModule;
}
