// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"
#include "platform/Lifeline.h"
#include "platform/SpeechService.h"

#include <QPointer>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

class QMenu;

namespace dorvane {

class TextSpeakerDelegate;
class VoiceMenuTarget;

// Speaks texts in a voice of the user's choice and lists the voices in a menu. Destroying it ends
// what it speaks. Main thread only.
class TextSpeaker {
public:
    // The service must outlive the speaker.
    explicit TextSpeaker(SpeechService& service);
    TextSpeaker(const TextSpeaker&) = delete;
    TextSpeaker& operator=(const TextSpeaker&) = delete;

    // Told of a chosen voice by the menus that were filled since it was set; not owned.
    [[nodiscard]] VoiceMenuTarget* target() const { return m_target; }
    void setTarget(VoiceMenuTarget* target) { m_target = target; }

    // Told when a text has been spoken; not owned.
    [[nodiscard]] TextSpeakerDelegate* delegate() const { return m_delegate; }
    void setDelegate(TextSpeakerDelegate* delegate) { m_delegate = delegate; }

    // The alarm whose title the next text is. Texts may overlap: while the delegate hears of the
    // end of one, this is what was set when that one began.
    [[nodiscard]] AlarmPtr context() const { return m_context; }
    void setContext(AlarmPtr context) { m_context = std::move(context); }

    // In the order of the voices' numbers, which begin with 1. Empty until fillMenuWithVoices() or
    // speakText() has had the voices listed, which takes a moment.
    [[nodiscard]] QStringList voiceNames() const;

    // Leaves the first item of the menu alone and puts one for each voice behind it, now or as
    // soon as the voices are known; nothing else stays. The items' data are the voices' names.
    void fillMenuWithVoices(QMenu* menu);

    // Has the text made ready for a speakText() within the next half minute. A voice that is not
    // there is passed over.
    void prepareText(const QString& text, const QString& voiceName);

    // Starts speaking and returns. With a voice that is not there nothing is spoken; of a number
    // the delegate hears nothing then, of a name that it is missing, and so does the log.
    void speakText(const QString& text, int voiceNumber);
    void speakText(const QString& text, const QString& voiceName);

    // Ends the texts of this context, those that were not heard yet too; the delegate hears nothing
    // of it.
    void stopSpeaking(const AlarmPtr& context = {});
    // How loud the texts of the context are, 0.0 to 1.0.
    void setVolume(const AlarmPtr& context, float volume);

private:
    // A text that was to be spoken, until it is over.
    struct Text {
        AlarmPtr context;
        float volume = 1;
        std::unique_ptr<SpeechService::Utterance> utterance; // null until the voices are known
    };
    using Told = void (TextSpeakerDelegate::*)(TextSpeaker&);

    [[nodiscard]] int voiceNumber(const QString& voiceName) const;
    [[nodiscard]] std::uint64_t add();
    void speak(std::uint64_t number, const QString& text, int voiceNumber);
    void end(std::uint64_t number, Told told);
    void tell(Told told, AlarmPtr context);
    void addVoices(QMenu& menu);
    void whenVoicesKnown(std::function<void(TextSpeaker&)> callback);

    SpeechService& m_service;
    VoiceMenuTarget* m_target = nullptr;
    TextSpeakerDelegate* m_delegate = nullptr;
    AlarmPtr m_context;
    std::map<std::uint64_t, Text> m_texts;
    std::uint64_t m_nextNumber = 0;
    Lifeline<TextSpeaker> m_lifeline{*this};
};

} // namespace dorvane
