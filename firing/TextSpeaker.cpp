// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/TextSpeaker.h"

#include "firing/MenuTypeAhead.h"
#include "firing/TextSpeakerDelegate.h"
#include "firing/VoiceMenuTarget.h"
#include "platform/Log.h"
#include "sounds/LongMenuStyle.h"
#include "sounds/MenuText.h"

#include <QMenu>

#include <algorithm>
#include <utility>

namespace dorvane {

TextSpeaker::TextSpeaker(SpeechService& service) : m_service(service) {}

QStringList TextSpeaker::voiceNames() const {
    return m_service.voiceNames();
}

void TextSpeaker::fillMenuWithVoices(QMenu* menu) {
    whenVoicesKnown([menu = QPointer(menu)](TextSpeaker& self) {
        if (menu)
            self.addVoices(*menu);
    });
}

void TextSpeaker::addVoices(QMenu& menu) {
    if (!dynamic_cast<LongMenuStyle*>(menu.style())) {
        const auto style = new LongMenuStyle;
        style->setParent(&menu);
        menu.setStyle(style);
        new MenuTypeAhead(menu);
    }
    const QList<QAction*> present = menu.actions();
    for (QAction* item : present.mid(1)) {
        menu.removeAction(item);
        item->deleteLater();
    }
    QList<QAction*> items;
    for (const QString& name : voiceNames()) {
        const auto item = new QAction(menuText(name), &menu);
        item->setData(name);
        if (m_target)
            QObject::connect(item, &QAction::triggered, item,
                             [target = m_target, item] { target->voiceSelected(*item); });
        items << item;
    }
    menu.addActions(items);
}

void TextSpeaker::prepareText(const QString& text, const QString& voiceName) {
    whenVoicesKnown([text, voiceName](TextSpeaker& self) {
        self.m_service.prepare(text, self.voiceNumber(voiceName));
    });
}

void TextSpeaker::speakText(const QString& text, int voiceNumber) {
    whenVoicesKnown([text, voiceNumber, number = add()](TextSpeaker& self) {
        self.speak(number, text, voiceNumber);
    });
}

void TextSpeaker::speakText(const QString& text, const QString& voiceName) {
    whenVoicesKnown([text, voiceName, number = add()](TextSpeaker& self) {
        const int voice = self.voiceNumber(voiceName);
        if (voice > 0) {
            self.speak(number, text, voice);
            return;
        }
        qCWarning(logFiring).noquote()
            << "cannot speak: the voice" << voiceName << "is not installed";
        self.end(number, &TextSpeakerDelegate::textSpeakerLacksVoice);
    });
}

void TextSpeaker::stopSpeaking(const AlarmPtr& context) {
    std::erase_if(m_texts, [&](const auto& text) { return text.second.context == context; });
}

void TextSpeaker::setVolume(const AlarmPtr& context, float volume) {
    for (auto& [number, text] : m_texts)
        if (text.context == context) {
            text.volume = volume;
            if (text.utterance)
                text.utterance->setVolume(volume);
        }
}

// Zero for a voice that is not installed.
int TextSpeaker::voiceNumber(const QString& voiceName) const {
    return static_cast<int>(voiceNames().indexOf(voiceName)) + 1;
}

std::uint64_t TextSpeaker::add() {
    m_texts[++m_nextNumber].context = m_context;
    return m_nextNumber;
}

void TextSpeaker::speak(std::uint64_t number, const QString& text, int voiceNumber) {
    const auto found = m_texts.find(number);
    if (found == m_texts.end())
        return; // ended before the voices were known
    if (voiceNumber < 1 || voiceNumber > voiceNames().size()) {
        m_texts.erase(found);
        return;
    }
    const auto weak = m_lifeline.weak();
    const auto begun = [number, weak] {
        if (TextSpeaker* const self = weak.get(); self && self->m_texts.contains(number))
            self->tell(&TextSpeakerDelegate::textSpeakerBeganSpeakingText,
                       self->m_texts.at(number).context);
    };
    const auto done = [number, weak](bool isSpoken) {
        if (TextSpeaker* const self = weak.get())
            self->end(number, isSpoken ? &TextSpeakerDelegate::textSpeakerFinishedSpeakingText
                                       : &TextSpeakerDelegate::textSpeakerCouldNotSpeak);
    };
    found->second.utterance = m_service.speak(text, voiceNumber, begun, done);
    found->second.utterance->setVolume(found->second.volume);
}

void TextSpeaker::end(std::uint64_t number, Told told) {
    if (const auto over = m_texts.extract(number))
        tell(told, over.mapped().context);
}

// By value: the text may end meanwhile.
void TextSpeaker::tell(Told told, AlarmPtr context) {
    if (!m_delegate)
        return;
    const auto self = m_lifeline.weak();
    AlarmPtr next = std::exchange(m_context, std::move(context));
    (m_delegate->*told)(*this);
    if (!self.isCut())
        m_context = std::move(next);
}

void TextSpeaker::whenVoicesKnown(std::function<void(TextSpeaker&)> callback) {
    m_service.whenVoicesKnown(m_lifeline.guard(std::move(callback)));
}

} // namespace dorvane
