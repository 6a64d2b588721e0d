// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace dorvane {

class TextSpeaker;

// Hears of what became of texts. Main thread only.
class TextSpeakerDelegate {
public:
    virtual ~TextSpeakerDelegate() = default;

    // The speaker's context is that of the text which has ended.
    virtual void textSpeakerFinishedSpeakingText(TextSpeaker& speaker) = 0;

    // The voice that a text was to be spoken in is not installed; the context is that of the text.
    virtual void textSpeakerLacksVoice(TextSpeaker& speaker) = 0;
};

} // namespace dorvane
