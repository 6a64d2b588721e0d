// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "firing/TextSpeaker.h"
#include "firing/VoiceMenuTarget.h"

#include <QObject>
#include <QString>

#include <functional>

namespace Ui {
class AlarmSetController;
}

namespace dorvane {

// The voice row of the alarm editor: which voice is chosen, and a sample of it.
class VoiceChoice final : public QObject, private VoiceMenuTarget {
    Q_OBJECT

public:
    // The controls are those of the window that is the parent; the service must outlive it.
    VoiceChoice(SpeechService& speech, Ui::AlarmSetController& controls, QObject* parent);

    // Has the voices listed, so that they are there when the menu is opened, and a chosen one that
    // is not among them is marked as missing.
    void askForVoices();

    // Empty for none.
    [[nodiscard]] const QString& voiceName() const { return m_voiceName; }
    // Does not emit voiceNameChanged().
    void setVoiceName(const QString& name);

    // Ends the sample.
    void stopSample() { m_textSpeaker.stopSpeaking(); }

Q_SIGNALS:
    // By the user.
    void voiceNameChanged();

private:
    void showFace();
    void fillMenu(const std::function<void()>& filled);
    void voiceSelected(const QAction& item) override;

    SpeechService& m_speech;
    TextSpeaker m_textSpeaker; // of its own: a sample announces no alarm
    Ui::AlarmSetController& m_controls;
    QString m_voiceName;
};

} // namespace dorvane
