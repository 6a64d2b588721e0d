// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/BreakSoundChoice.h"

#include "breaks/BreakWindowServices.h"
#include "breaks/PendixTakeABreakSettings.h"
#include "breaks/RespitoAudioPlayerController.h"
#include "firing/SoundRepeat.h"
#include "platform/Bundle.h"
#include "platform/EscapedText.h"
#include "platform/Sound.h"
#include "platform/Workspace.h"
#include "sounds/AddingFiles.h"
#include "sounds/AudioStorageController.h"
#include "sounds/SoundFileWell.h"
#include "sounds/SoundName.h"
#include "ui_PendixRespitoWindowsController.h"

#include <QMenu>

namespace dorvane {

namespace {

constexpr int timesOfTrial = 3;

} // namespace

BreakSoundChoice::BreakSoundChoice(const BreakWindowServices& services,
                                   Ui::PendixRespitoWindowsController& controls, QWidget* window)
    : m_services(services)
    , m_controls(controls)
    , m_window(window)
    , m_asmc(services.library, QStringLiteral("Record Break Every/Duration Sound..."))
    , m_sound(services.runLoop, services.player) {
    m_asmc.setObjectMenu(&controls.selectSoundButton->menu());
    m_asmc.setTarget(this);
    addWell();
    const auto onClick = [this](QAbstractButton* button, void (BreakSoundChoice::*action)()) {
        QObject::connect(button, &QAbstractButton::clicked, button,
                         [this, action] { (this->*action)(); });
    };
    onClick(controls.breakEvery, &BreakSoundChoice::soundOption);
    onClick(controls.breakDuration, &BreakSoundChoice::soundOption);
    onClick(controls.playButton, &BreakSoundChoice::playButtonPushed);
    onClick(controls.chooseFileButton, &BreakSoundChoice::chooseAudioFile);
    QObject::connect(controls.selectSoundButton, &PullDownPopUp::menuWillOpen,
                     controls.selectSoundButton, [this] { constructMenu(); });
}

BreakSoundChoice::~BreakSoundChoice() = default;

// The well takes dropped files into the library by itself; a click shows the library.
void BreakSoundChoice::addWell() {
    const QIcon image(m_services.bundle.resourcePath(QStringLiteral("images/SoundWell.svg")));
    const auto well = new SoundFileWell(m_services.library, m_services.notifications,
                                        m_services.propertyLists, image, m_window);
    well->setObjectName(QStringLiteral("soundWell"));
    well->setReport(reportIn(*m_controls.wellHint));
    m_controls.wellRow->insertWidget(0, well);
    QWidget::setTabOrder(m_controls.playButton, well);
    m_wellClicks = m_services.notifications.addObserver(
        soundFileWellClickedNotification,
        [this](NotificationCenter::Sender) { soundWellClicked(); }, well);
}

void BreakSoundChoice::show() {
    const PendixTakeABreakSettings& settings = m_services.settings;
    if (!settings.soundPath().isNull())
        m_soundPath = settings.soundPath();
    if (!settings.durationSoundPath().isNull())
        m_durationSoundPath = settings.durationSoundPath();
    setSoundPath(m_soundPath);
}

// Its first item reads "Select Sound" though something is chosen; nobody sees it, since the button
// keeps its own face.
void BreakSoundChoice::constructMenu() {
    m_asmc.removeAllItems();
    m_controls.selectSoundButton->menu().addAction(QStringLiteral("Select Sound"));
    m_asmc.buildRecordSounds();
    m_asmc.insertSeparator();
    m_asmc.buildSystemSounds();
    m_asmc.buildiMovieSounds();
    m_asmc.buildAddedSounds();
    m_asmc.insertSeparator();
    buildRespitoSound();
}

void BreakSoundChoice::buildRespitoSound() {
    QAction* const track = m_controls.selectSoundButton->menu().addAction(builtInTrack);
    QObject::connect(track, &QAction::triggered, track, [this] { soundSelected(builtInTrack); });
}

void BreakSoundChoice::soundOption() {
    setSoundPath(m_controls.breakEvery->isChecked() ? m_soundPath : m_durationSoundPath);
}

void BreakSoundChoice::soundSelected(const QString& path) {
    stopPreview();
    if (m_services.library.isSystemSound(path)) {
        m_trial = std::make_unique<SoundRepeat>(m_services.runLoop, m_services.player);
        m_trial->playSoundAtPath(path, timesOfTrial);
    }
    setSoundPath(path);
}

void BreakSoundChoice::stopPreview() {
    m_sound.stop();
    m_trial.reset();
}

void BreakSoundChoice::manageReminders() {
    m_services.showRecordingWindow(*m_window);
}

void BreakSoundChoice::setSoundPath(const QString& path) {
    if (!path.isNull()) {
        PendixTakeABreakSettings& settings = m_services.settings;
        if (m_controls.breakEvery->isChecked()) {
            m_soundPath = path;
            settings.setSoundPath(path);
        } else if (m_controls.breakDuration->isChecked()) {
            m_durationSoundPath = path;
            settings.setDurationSoundPath(path);
        }
        settings.writePrefsAndSync();
    }
    m_controls.playButton->setEnabled(!path.isNull());
    showFace(path);
}

void BreakSoundChoice::showFace(const QString& path) {
    m_shown = path;
    const QString name = path.isNull() ? QStringLiteral("Select Sound") : soundName(path);
    PullDownPopUp* const button = m_controls.selectSoundButton;
    button->setFace(name, false);
    button->setToolTip(escapedText(QString()));
    if (path.isNull() || path == builtInTrack)
        return;
    m_services.player.lookFor(path, [weak = m_lifeline.weak(), button, path, name](bool isThere) {
        const BreakSoundChoice* const self = weak.get();
        if (!self || isThere || self->m_shown != path)
            return;
        button->setFace(name, true);
        button->setToolTip(escapedText(name + QStringLiteral(" (missing)")));
    });
}

// A start sound that is the track decides for both.
void BreakSoundChoice::playButtonPushed() {
    const bool isStart = m_controls.breakEvery->isChecked();
    if (!isStart && !m_controls.breakDuration->isChecked())
        return;
    const QString& chosen = isStart ? m_soundPath : m_durationSoundPath;
    stopPreview();
    if (m_soundPath == builtInTrack || chosen == builtInTrack)
        playTrack();
    else
        m_sound.playFaded(chosen);
}

void BreakSoundChoice::playTrack() {
    if (!m_respitoAudioPlayer) {
        m_respitoAudioPlayer = &m_services.audioPlayer();
        m_respitoAudioPlayer->setWindowWillClose([this] { respitoAudioPlayerWindowWillClose(); });
    }
    if (m_respitoAudioPlayer->isWindowOpen())
        return;
    m_respitoAudioPlayer->showWindow();
    m_respitoAudioPlayer->playVideo();
}

void BreakSoundChoice::respitoAudioPlayerWindowWillClose() {
    m_respitoAudioPlayer->stopVideoPlaying();
    m_respitoAudioPlayer->setIsWindowOpen(false);
}

// What is added can be chosen from then on; it is not chosen by that.
void BreakSoundChoice::chooseAudioFile() {
    chooseFilesToAdd(*m_window, m_services.library, *m_controls.wellHint);
}

void BreakSoundChoice::soundWellClicked() {
    m_services.workspace.reveal(m_services.library.storedSoundsPath());
}

} // namespace dorvane
