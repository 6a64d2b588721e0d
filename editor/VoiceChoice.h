// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

namespace Ui {
class AlarmSetController;
}

namespace dorvane {

class VoiceService;

// The voice row of the alarm editor: which voice is chosen, and a sample of it.
class VoiceChoice final : public QObject {
    Q_OBJECT

public:
    // The controls are those of the window that is the parent.
    VoiceChoice(VoiceService& voices, Ui::AlarmSetController& controls, QObject* parent);

    // Empty for none.
    [[nodiscard]] const QString& voiceName() const { return m_voiceName; }
    // Does not emit voiceNameChanged().
    void setVoiceName(const QString& name);

    // To be called before the voice menu opens: lists the voices that are there.
    void fillMenu();

Q_SIGNALS:
    // By the user.
    void voiceNameChanged();

private:
    void voiceSelected(const QString& name);

    VoiceService& m_voices;
    Ui::AlarmSetController& m_controls;
    QString m_voiceName;
};

} // namespace dorvane
