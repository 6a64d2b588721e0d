// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RingChoices.h"

#include "core/RingPreferences.h"
#include "platform/Bundle.h"
#include "platform/EscapedText.h"
#include "platform/Sound.h"
#include "sounds/AudioStorageController.h"
#include "sounds/ReminderController.h"
#include "sounds/SoundName.h"
#include "ui_RingChoices.h"

#include <algorithm>
#include <utility>

namespace dorvane {

RingChoices::RingChoices(Surroundings surroundings)
    : m_surroundings(std::move(surroundings))
    , m_form(std::make_unique<Ui::RingChoices>())
    , m_asmc(m_surroundings.library)
    , m_preview(m_surroundings.runLoop, m_surroundings.player,
                [this](SoundPreview::State state) { previewChanged(state); }) {
    m_form->setupUi(this);
    const RingPreferences& preferences = m_surroundings.preferences;
    auto lengths = snoozeLengths;
    std::ranges::sort(lengths);
    for (const qint64 minutes : lengths)
        m_form->snoozePopUp->addItem(QString::number(minutes), minutes);
    m_form->snoozePopUp->setCurrentIndex(m_form->snoozePopUp->findData(preferences.snooze()));
    m_form->volumeSlider->setMinimum(RingPreferences::leastVolume);
    m_form->volumeSlider->setValue(preferences.volume());
    showVolume(preferences.volume());
    const QString widest = QStringLiteral("100 %");
    m_form->volumeShown->setFixedWidth(
        m_form->volumeShown->fontMetrics().horizontalAdvance(widest));
    m_asmc.setObjectMenu(&m_form->selectSoundButton->menu());
    m_asmc.setTarget(this);
    previewChanged(SoundPreview::State::Silent);
    connectControls();
}

RingChoices::~RingChoices() {
    if (const auto reminders = m_reminders.lock())
        reminders->close();
}

void RingChoices::connectControls() {
    RingPreferences& preferences = m_surroundings.preferences;
    connect(m_form->selectSoundButton, &PullDownPopUp::menuWillOpen, this,
            [this] { m_asmc.constructMenu(); });
    connect(m_form->playButton, &QPushButton::clicked, this, [this] {
        if (m_preview.isPlaying())
            m_preview.stop();
        else
            play();
    });
    connect(m_form->snoozePopUp, &QComboBox::activated, this, [this, &preferences] {
        preferences.setSnooze(m_form->snoozePopUp->currentData().toLongLong());
    });
    // While it is dragged only the number follows.
    connect(m_form->volumeSlider, &QSlider::sliderMoved, this, &RingChoices::showVolume);
    connect(m_form->volumeSlider, &QSlider::valueChanged, this, [this, &preferences](int volume) {
        showVolume(volume);
        preferences.setVolume(volume);
        play();
    });
}

void RingChoices::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    showSound();
}

void RingChoices::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_preview.stop();
    if (const auto reminders = m_reminders.lock())
        reminders->close();
}

QString RingChoices::soundPath() const {
    const QString chosen = m_surroundings.preferences.soundPath();
    return chosen.isEmpty() ? m_surroundings.library.pingPath() : chosen;
}

// Greyed as soon as it is known that the file is gone.
void RingChoices::showSound() {
    const QString path = soundPath();
    m_form->selectSoundButton->setFace(soundName(path));
    m_form->selectSoundButton->setToolTip(escapedText(QString()));
    m_surroundings.player.lookFor(path, [weak = m_lifeline.weak(), path](bool isThere) {
        const RingChoices* const self = weak.get();
        if (!self || isThere || self->soundPath() != path)
            return;
        self->m_form->selectSoundButton->setFace(soundName(path), true);
        self->m_form->selectSoundButton->setToolTip(
            escapedText(soundName(path) + QStringLiteral(" (missing)")));
    });
}

void RingChoices::soundSelected(const QString& path) {
    const bool isPing = path == m_surroundings.library.pingPath();
    m_surroundings.preferences.setSoundPath(isPing ? QString() : path);
    showSound();
    play();
}

void RingChoices::manageReminders() {
    auto reminders = m_reminders.lock();
    if (!reminders) {
        reminders = m_surroundings.makeReminders();
        reminders->stayAbove(*window());
        m_reminders = reminders;
    }
    reminders->show();
}

void RingChoices::showVolume(int hundredths) {
    m_form->volumeShown->setText(QStringLiteral("%1 %").arg(hundredths));
}

void RingChoices::play() {
    m_preview.play(soundPath(), m_form->volumeSlider->value() * 255 / 100);
}

void RingChoices::previewChanged(SoundPreview::State state) {
    const bool isPlaying = state == SoundPreview::State::Playing;
    QPushButton& button = *m_form->playButton;
    button.setIcon(QIcon(m_surroundings.bundle.resourcePath(
        isPlaying ? QStringLiteral("images/StopRedButton.svg")
                  : QStringLiteral("images/PlayBlueButton.svg"))));
    button.setAccessibleName(isPlaying ? QStringLiteral("Stop") : QStringLiteral("Preview"));
    button.setToolTip(escapedText(isPlaying
                                      ? QStringLiteral("Stops the sound")
                                      : QStringLiteral("Plays the sound as loud as alarms ring")));
}

} // namespace dorvane
