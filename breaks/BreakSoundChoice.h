// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "breaks/BreakSounds.h"
#include "platform/Lifeline.h"
#include "platform/NotificationCenter.h"
#include "sounds/AlarmSoundMenuContructor.h"
#include "sounds/SoundMenuTarget.h"

#include <QString>

#include <memory>

class QWidget;

namespace Ui {
class PendixRespitoWindowsController;
}

namespace dorvane {

class RespitoAudioPlayerController;
class SoundRepeat;
struct BreakWindowServices;

// The sound rows of the break preferences window: which sound a break starts with and which it ends
// with, hearing it, and adding files to those that can be chosen. Belongs to the window.
class BreakSoundChoice final : private SoundMenuTarget {
public:
    // The controls must be those of the window; all must outlive this.
    BreakSoundChoice(const BreakWindowServices& services,
                     Ui::PendixRespitoWindowsController& controls, QWidget* window);
    ~BreakSoundChoice() override;

    // Takes over the two sounds of the settings as they were loaded.
    void show();

    void constructMenu();
    void buildRespitoSound();

    // The radio buttons: which of the two sounds is edited.
    void soundOption();

    // The sound of the radio button that is on; null for none.
    void setSoundPath(const QString& path);

    void playButtonPushed();
    void stopPreview();

private:
    void addWell();
    void soundSelected(const QString& path) override;
    void manageReminders() override;
    void playTrack();
    void respitoAudioPlayerWindowWillClose();
    void chooseAudioFile();
    void soundWellClicked();
    void showFace(const QString& path);

    const BreakWindowServices& m_services;
    Ui::PendixRespitoWindowsController& m_controls;
    QWidget* m_window;
    QString m_soundPath;
    QString m_durationSoundPath;
    QString m_shown; // the path whose name the button shows
    AlarmSoundMenuContructor m_asmc;
    BreakSounds m_sound;
    std::unique_ptr<SoundRepeat> m_trial; // of a system sound that was chosen
    RespitoAudioPlayerController* m_respitoAudioPlayer = nullptr;
    NotificationCenter::Observation m_wellClicks;
    Lifeline<BreakSoundChoice> m_lifeline{*this};
};

} // namespace dorvane
