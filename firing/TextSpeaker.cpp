// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/TextSpeaker.h"

#include "firing/MenuTypeAhead.h"
#include "firing/TextSpeakerDelegate.h"
#include "firing/VoiceMenuTarget.h"
#include "platform/Log.h"
#include "platform/SpeechService.h"
#include "sounds/LongMenuStyle.h"
#include "sounds/MenuText.h"

#include <QMenu>

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
    whenVoicesKnown([text, voiceNumber, context = m_context](TextSpeaker& self) {
        self.speak(text, voiceNumber, context);
    });
}

void TextSpeaker::speakText(const QString& text, const QString& voiceName) {
    whenVoicesKnown([text, voiceName, context = m_context](TextSpeaker& self) {
        const int number = self.voiceNumber(voiceName);
        if (number > 0) {
            self.speak(text, number, context);
            return;
        }
        qCWarning(logFiring).noquote()
            << "cannot speak: the voice" << voiceName << "is not installed";
        self.tell(&TextSpeakerDelegate::textSpeakerLacksVoice, context);
    });
}

// Zero for a voice that is not installed.
int TextSpeaker::voiceNumber(const QString& voiceName) const {
    return static_cast<int>(voiceNames().indexOf(voiceName)) + 1;
}

void TextSpeaker::speak(const QString& text, int voiceNumber, const AlarmPtr& context) {
    m_service.speak(text, voiceNumber, m_lifeline.guard([context](TextSpeaker& self) {
        self.tell(&TextSpeakerDelegate::textSpeakerFinishedSpeakingText, context);
    }));
}

void TextSpeaker::tell(void (TextSpeakerDelegate::*what)(TextSpeaker&), const AlarmPtr& context) {
    if (!m_delegate)
        return;
    const auto self = m_lifeline.weak();
    AlarmPtr next = std::exchange(m_context, context);
    (m_delegate->*what)(*this);
    if (!self.isCut())
        m_context = std::move(next);
}

void TextSpeaker::whenVoicesKnown(std::function<void(TextSpeaker&)> callback) {
    m_service.whenVoicesKnown(m_lifeline.guard(std::move(callback)));
}

} // namespace dorvane
