// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace dorvane {

class TextSpeaker;

// Hears of what became of texts. Main thread only.
class TextSpeakerDelegate {
public:
    virtual ~TextSpeakerDelegate() = default;

    // A text is heard from now on. The speaker's context is that of the text, here and below.
    virtual void textSpeakerBeganSpeakingText(TextSpeaker& speaker) = 0;

    // A text has ended.
    virtual void textSpeakerFinishedSpeakingText(TextSpeaker& speaker) = 0;

    // A text could not be made into speech.
    virtual void textSpeakerCouldNotSpeak(TextSpeaker& speaker) = 0;

    // The voice that a text was to be spoken in is not installed.
    virtual void textSpeakerLacksVoice(TextSpeaker& speaker) = 0;
};

} // namespace dorvane
