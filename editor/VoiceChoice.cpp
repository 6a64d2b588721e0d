// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/VoiceChoice.h"

#include "platform/EscapedText.h"
#include "platform/SpeechService.h"
#include "ui_AlarmSetController.h"

#include <QMenu>
#include <QPointer>

namespace dorvane {

VoiceChoice::VoiceChoice(SpeechService& speech, Ui::AlarmSetController& controls, QObject* parent)
    : QObject(parent), m_speech(speech), m_textSpeaker(speech), m_controls(controls) {
    m_textSpeaker.setTarget(this);
    controls.voiceNamePopUp->setFill(
        [this](const std::function<void()>& filled) { fillMenu(filled); });
}

void VoiceChoice::askForVoices() {
    m_speech.whenVoicesKnown([self = QPointer(this)] {
        if (self)
            self->showFace();
    });
}

void VoiceChoice::setVoiceName(const QString& name) {
    m_voiceName = name;
    showFace();
}

void VoiceChoice::showFace() {
    const QStringList known = m_speech.voiceNames(); // none before somebody has asked for them
    const bool isMissing =
        !m_voiceName.isEmpty() && !known.isEmpty() && !known.contains(m_voiceName);
    m_controls.voiceNamePopUp->setFace(
        m_voiceName.isEmpty() ? QStringLiteral("Select Voice") : m_voiceName, isMissing);
    m_controls.voiceNamePopUp->setToolTip(
        escapedText(isMissing ? m_voiceName + QStringLiteral(" (missing)") : QString()));
}

void VoiceChoice::fillMenu(const std::function<void()>& filled) {
    m_speech.whenVoicesKnown([self = QPointer(this), filled] {
        if (!self)
            return;
        QMenu& menu = self->m_controls.voiceNamePopUp->menu();
        if (self->m_speech.voiceNames().isEmpty()) {
            if (menu.actions().size() == 1)
                menu.addAction(QStringLiteral("No voices installed"))->setEnabled(false);
        } else {
            self->m_textSpeaker.fillMenuWithVoices(&menu);
        }
        filled();
    });
}

void VoiceChoice::voiceSelected(const QAction& item) {
    const QString name = item.data().toString();
    if (!name.isEmpty()) {
        setVoiceName(name);
        Q_EMIT voiceNameChanged();
    }
    const QString title = m_controls.titleBox->title();
    stopSample(); // of the voice that was tried before
    m_textSpeaker.speakText(title.isEmpty() ? QStringLiteral("Name alarm please!") : title,
                            int(m_textSpeaker.voiceNames().indexOf(name)) + 1);
}

} // namespace dorvane
