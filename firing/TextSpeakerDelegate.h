// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace dorvane {

class TextSpeaker;

// Hears of the end of spoken texts. Main thread only.
class TextSpeakerDelegate {
public:
    virtual ~TextSpeakerDelegate() = default;

    // The speaker's context is that of the text which has ended.
    virtual void textSpeakerFinishedSpeakingText(TextSpeaker& speaker) = 0;
};

} // namespace dorvane
