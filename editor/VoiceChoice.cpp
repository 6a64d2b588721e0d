// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/VoiceChoice.h"

#include "editor/VoiceService.h"
#include "ui_AlarmSetController.h"

#include <QMenu>

namespace dorvane {

VoiceChoice::VoiceChoice(VoiceService& voices, Ui::AlarmSetController& controls, QObject* parent)
    : QObject(parent), m_voices(voices), m_controls(controls) {
    connect(&controls.voiceNamePopUp->menu(), &QMenu::triggered, this,
            [this](const QAction* item) { voiceSelected(item->data().toString()); });
}

void VoiceChoice::setVoiceName(const QString& name) {
    m_voiceName = name;
    m_controls.voiceNamePopUp->setFace(name.isEmpty() ? QStringLiteral("Select Voice") : name);
}

void VoiceChoice::fillMenu() {
    m_voices.fillMenuWithVoices(m_controls.voiceNamePopUp->menu());
}

void VoiceChoice::voiceSelected(const QString& name) {
    if (!name.isEmpty()) {
        setVoiceName(name);
        Q_EMIT voiceNameChanged();
    }
    const QString title = m_controls.titleBox->title();
    m_voices.speakText(title.isEmpty() ? QStringLiteral("Name alarm please!") : title,
                       int(m_voices.voiceNames().indexOf(name)) + 1);
}

} // namespace dorvane
