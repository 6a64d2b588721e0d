// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/SoundChoice.h"

#include "editor/AlarmForm.h"
#include "firing/SoundRepeat.h"
#include "platform/Bundle.h"
#include "platform/Workspace.h"
#include "sounds/AudioStorageController.h"
#include "sounds/SoundFileWell.h"
#include "sounds/SoundName.h"
#include "ui_AlarmSetController.h"

#include <QFileDialog>
#include <QFileInfo>

namespace dorvane {

namespace {

constexpr int timesOfTrial = 3;

} // namespace

SoundChoice::SoundChoice(const AlarmEditorServices& services, Ui::AlarmSetController& controls,
                         QWidget* window)
    : QObject(window)
    , m_services(services)
    , m_controls(controls)
    , m_window(window)
    , m_asmc(services.audioStorage)
    , m_preview(services.runLoop, services.soundPlayer) {
    m_asmc.setObjectMenu(&controls.selectSoundButton->menu());
    m_asmc.setTarget(this);
    addWell();
    connect(controls.playButton, &QPushButton::clicked, this, [this] { playButtonPushed(); });
    // Moving the slider plays the sound again, so that its new volume is heard.
    connect(controls.Volume, &QSlider::valueChanged, this, [this] { playButtonPushed(); });
    connect(controls.chooseFileButton, &QPushButton::clicked, this, [this] { chooseAudioFile(); });
}

SoundChoice::~SoundChoice() = default;

// The well takes dropped files into the library by itself; a click shows the library.
void SoundChoice::addWell() {
    const QIcon image(m_services.bundle.resourcePath(QStringLiteral("images/SoundWell.svg")));
    const auto well = new SoundFileWell(m_services.audioStorage, m_services.notificationCenter,
                                        m_services.propertyLists, image, m_window);
    well->setObjectName(QStringLiteral("soundWell"));
    m_controls.wellRow->insertWidget(0, well);
    QWidget::setTabOrder(m_controls.Volume, well);
    m_wellClicks = m_services.notificationCenter.addObserver(
        soundFileWellClickedNotification,
        [this](NotificationCenter::Sender) { soundWellClicked(); }, well);
}

void SoundChoice::setSoundPath(const QString& path) {
    m_soundPath = path;
    const bool isMissing = !path.isEmpty() && !QFileInfo::exists(path);
    const QString name = path.isEmpty() ? QStringLiteral("Select Sound") : soundName(path);
    m_controls.selectSoundButton->setFace(name, isMissing);
    m_controls.selectSoundButton->setToolTip(isMissing ? name + QStringLiteral(" (missing)")
                                                       : QString());
}

void SoundChoice::rebuildMenu() {
    m_asmc.constructMenu();
}

void SoundChoice::soundSelected(const QString& path) {
    m_services.soundRepeat.playSoundAtPath(path, timesOfTrial);
    setSoundPath(path);
    Q_EMIT soundPathChanged();
}

void SoundChoice::manageReminders() {
    m_services.openReminders();
}

void SoundChoice::playButtonPushed() {
    const int volume = m_controls.Volume->value();
    m_preview.play(m_soundPath, volume);
    m_controls.Volume->setToolTip(previewVolumeToolTip(volume));
}

// What is added can be chosen from then on; it is not chosen by that.
void SoundChoice::chooseAudioFile() {
    const auto panel = new QFileDialog(m_window, QStringLiteral("Choose audio file(s)"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::ExistingFiles);
    panel->setNameFilter(m_services.audioStorage.soundFileTypes().nameFilter());
    connect(panel, &QDialog::accepted, this, [this, panel] {
        m_services.audioStorage.addAudioFilesWithURLs(panel->selectedUrls());
    });
    panel->open();
}

void SoundChoice::soundWellClicked() {
    m_services.workspace.reveal(m_services.audioStorage.storedSoundsPath());
}

} // namespace dorvane
