// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/SoundChoice.h"

#include "platform/Bundle.h"
#include "platform/EscapedText.h"
#include "platform/Sound.h"
#include "platform/Workspace.h"
#include "sounds/AddingFiles.h"
#include "sounds/AudioStorageController.h"
#include "sounds/ReminderController.h"
#include "sounds/SoundFileWell.h"
#include "sounds/SoundName.h"
#include "ui_AlarmSetController.h"

#include <QPointer>

namespace dorvane {

namespace {

constexpr int timesOfTrial = 3;

} // namespace

SoundChoice::SoundChoice(const AlarmEditorServices& services, Ui::AlarmSetController& controls,
                         QDialog* window)
    : QObject(window)
    , m_services(services)
    , m_controls(controls)
    , m_window(window)
    , m_wellHint(controls.wellHint->text())
    , m_asmc(services.audioStorage)
    , m_preview(services.runLoop, services.soundPlayer,
                [this](SoundPreview::State state) { previewChanged(state); }) {
    m_asmc.setObjectMenu(&controls.selectSoundButton->menu());
    m_asmc.setTarget(this);
    addWell();
    connectControls();
    previewChanged(SoundPreview::State::Silent);
}

SoundChoice::~SoundChoice() {
    if (const auto reminders = m_reminders.lock())
        reminders->close();
}

// The well takes a dropped file into the library by itself; a click shows the library.
void SoundChoice::addWell() {
    const QIcon image(m_services.bundle.resourcePath(QStringLiteral("images/SoundWell.svg")));
    const auto well = new SoundFileWell(m_services.audioStorage, m_services.notificationCenter,
                                        m_services.propertyLists, image, m_window);
    well->setObjectName(QStringLiteral("soundWell"));
    well->setReport(reportIn(*m_controls.wellHint));
    m_controls.wellRow->insertWidget(0, well);
    QWidget::setTabOrder(m_controls.Volume, well);
    m_wellClicks = m_services.notificationCenter.addObserver(
        soundFileWellClickedNotification,
        [this](NotificationCenter::Sender) { soundWellClicked(); }, well);
}

void SoundChoice::connectControls() {
    connect(m_controls.playButton, &QPushButton::clicked, this, [this] { playButtonPushed(); });
    connect(m_controls.Volume, &QSlider::valueChanged, this, [this] { setSoundVolume(); });
    connect(m_controls.chooseFileButton, &QPushButton::clicked, this,
            [this] { chooseAudioFile(); });
    // The button that would stop it cannot be pressed then.
    connect(m_controls.playSoundCheck, &QCheckBox::toggled, this, [this](bool on) {
        if (!on)
            m_preview.stop();
    });
    connect(m_window, &QDialog::finished, this, [this] { windowClosed(); });
}

void SoundChoice::setSoundPath(const QString& path) {
    m_preview.stop();
    m_soundPath = path;
    const QString name = path.isEmpty() ? QStringLiteral("Select Sound") : soundName(path);
    m_controls.selectSoundButton->setFace(name, false);
    m_controls.selectSoundButton->setToolTip(escapedText(QString()));
    if (path.isEmpty())
        return;
    m_services.soundPlayer.lookFor(path, [self = QPointer(this), path, name](bool isThere) {
        if (self && !isThere && self->m_soundPath == path)
            self->showFault(name, QStringLiteral("missing"));
    });
}

void SoundChoice::showFault(const QString& name, const QString& fault) {
    m_controls.selectSoundButton->setFace(name, true);
    m_controls.selectSoundButton->setToolTip(
        escapedText(QStringLiteral("%1 (%2)").arg(name, fault)));
}

void SoundChoice::rebuildMenu() {
    m_asmc.constructMenu();
}

void SoundChoice::soundSelected(const QString& path) {
    setSoundPath(path);
    m_controls.wellHint->setText(m_wellHint);
    m_preview.playTimes(path, timesOfTrial);
    Q_EMIT soundPathChanged();
}

void SoundChoice::playButtonPushed() {
    if (m_preview.isPlaying())
        m_preview.stop();
    else
        setSoundVolume();
}

// Moving the slider plays the sound again, so that its new volume is heard.
void SoundChoice::setSoundVolume() {
    const int volume = m_controls.Volume->value();
    m_preview.play(m_soundPath, volume);
    m_controls.Volume->setToolTip(escapedText(previewVolumeToolTip(volume)));
}

// The button shows what pressing it does. A sound that stays silent is not chosen unawares.
void SoundChoice::previewChanged(SoundPreview::State state) {
    const bool isPlaying = state == SoundPreview::State::Playing;
    QPushButton& button = *m_controls.playButton;
    button.setIcon(QIcon(
        m_services.bundle.resourcePath(isPlaying ? QStringLiteral("images/StopRedButton.svg")
                                                 : QStringLiteral("images/PlayBlueButton.svg"))));
    button.setAccessibleName(isPlaying ? QStringLiteral("Stop") : QStringLiteral("Preview"));
    const QString action =
        isPlaying ? QStringLiteral("Stops the sound") : QStringLiteral("Plays the chosen sound");
    button.setToolTip(escapedText(action));
    button.setAccessibleDescription(action);
    if (isPlaying)
        Q_EMIT previewBegan();
    if (state != SoundPreview::State::Failed)
        return;
    const QString name = soundName(m_soundPath);
    showFault(name, QStringLiteral("cannot be played"));
    m_controls.wellHint->setText(
        QStringLiteral("“%1” cannot be played. Choose another sound.").arg(shortened(name)));
}

// What is added can be chosen from then on; it is not chosen by that.
void SoundChoice::chooseAudioFile() {
    chooseFilesToAdd(*m_window, m_services.audioStorage, *m_controls.wellHint);
}

void SoundChoice::soundWellClicked() {
    m_services.workspace.reveal(m_services.audioStorage.storedSoundsPath());
}

void SoundChoice::manageReminders() {
    auto reminders = m_reminders.lock();
    if (!reminders) {
        reminders = m_services.makeReminders();
        reminders->stayAbove(*m_window);
        reminders->setAccepted([self = QPointer(this)](const QString& path) {
            if (self)
                self->reminderAccepted(path);
        });
        m_reminders = reminders;
    }
    reminders->show();
}

void SoundChoice::reminderAccepted(const QString& path) {
    m_asmc.setFirstReminder(path);
    m_controls.wellHint->setText(
        QStringLiteral("“%1” is the first under Record Sound.").arg(shortened(soundName(path))));
}

void SoundChoice::windowClosed() {
    m_preview.stop();
    m_controls.wellHint->setText(m_wellHint);
    if (const auto reminders = m_reminders.lock())
        reminders->close();
}

} // namespace dorvane
