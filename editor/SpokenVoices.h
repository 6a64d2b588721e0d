// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/VoiceService.h"
#include "firing/TextSpeaker.h"

namespace dorvane {

// The voices of a text speaker of its own, which announces no alarm: what the editor says is a
// sample.
class SpokenVoices final : public VoiceService {
public:
    // The service must outlive the object.
    explicit SpokenVoices(SpeechService& service) : m_speaker(service) {}

    [[nodiscard]] QStringList voiceNames() const override { return m_speaker.voiceNames(); }
    void fillMenuWithVoices(QMenu& menu) override { m_speaker.fillMenuWithVoices(&menu); }
    void speakText(const QString& text, int voiceNumber) override {
        m_speaker.speakText(text, voiceNumber);
    }

private:
    TextSpeaker m_speaker;
};

} // namespace dorvane
