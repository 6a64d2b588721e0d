// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/ReminderRecording.h"

#include "platform/AudioRecorder.h"
#include "platform/Log.h"
#include "sounds/LevelMeter.h"
#include "sounds/ReminderComboBox.h"
#include "sounds/ReminderControls.h"
#include "sounds/RoundButton.h"

#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

constexpr RunLoop::Milliseconds longestRecording = 10s;
constexpr RunLoop::Milliseconds tickInterval = 50ms;

} // namespace

ReminderRecording::ReminderRecording(RunLoop& runLoop, AudioRecorder& recorder,
                                     const Bundle& bundle, const ReminderControls& controls,
                                     Callbacks callbacks)
    : m_runLoop(runLoop)
    , m_recorder(recorder)
    , m_bundle(bundle)
    , m_controls(controls)
    , m_callbacks(std::move(callbacks)) {}

void ReminderRecording::begin(const Take& take) {
    const auto ended = [weak = m_lifeline.weak(), take](const auto& error) {
        if (ReminderRecording* const self = weak.get())
            self->finished(take, error);
    };
    if (!m_recorder.record(take.path, ended)) {
        qCWarning(logSounds) << "cannot record: another recording is running";
        exitRecording();
        m_controls.messageLabel->setText(
            QStringLiteral("Cannot record: another window is recording. Stop it there first."));
        return;
    }
    m_since = m_runLoop.uptime();
    m_timer = m_runLoop.scheduleRepeating(
        tickInterval, [this] { timerTick(); }, RunLoopMode::Common);
    prepareForRecording();
}

void ReminderRecording::prepareForRecording() {
    for (QWidget* idle : std::initializer_list<QWidget*>{
             m_controls.playButton, m_controls.deleteButton, m_controls.okButton,
             m_controls.comboBox, m_controls.reminderTitle})
        idle->setEnabled(false);
    setEndsEnabled(true);
    m_controls.messageLabel->clear();
    const QSignalBlocker silent(m_controls.recordButton);
    m_controls.recordButton->setChecked(true); // by the answer to a question, too
    showAction(*m_controls.recordButton, m_bundle, "StopRedButton",
               QStringLiteral("Stop recording"));
    // The title, where Return may have been pressed, is disabled.
    m_controls.recordButton->setFocus();
    showProgress(0ms);
}

void ReminderRecording::exitRecording() {
    m_timer.cancel();
    for (QWidget* idle : std::initializer_list<QWidget*>{m_controls.okButton, m_controls.comboBox,
                                                         m_controls.reminderTitle})
        idle->setEnabled(true);
    setEndsEnabled(false);
    const QSignalBlocker silent(m_controls.recordButton);
    m_controls.recordButton->setChecked(false);
    showAction(*m_controls.recordButton, m_bundle, "RecordButton", QStringLiteral("Record"));
    m_controls.levelMeter->reset();
    showProgress(0ms);
    if (std::exchange(m_isSaving, false))
        m_controls.messageLabel->clear();
    updateRecordButton();
    m_callbacks.idle();
}

void ReminderRecording::setEndsEnabled(bool enabled) {
    for (QPushButton* end : {m_controls.stopButton, m_controls.cancelButton})
        if (end)
            end->setEnabled(enabled);
}

// The level and the time come from the same clock as the limit, so that a late tick is no longer
// recording.
void ReminderRecording::timerTick() {
    const auto elapsed = m_runLoop.uptime() - m_since;
    m_controls.levelMeter->setLevel(m_recorder.takeLevel());
    showProgress(elapsed);
    if (elapsed >= longestRecording)
        stop();
}

void ReminderRecording::showProgress(RunLoop::Milliseconds elapsed) {
    elapsed = std::min(elapsed, longestRecording);
    m_controls.progressIndicator->setValue(static_cast<int>(elapsed.count()));
    m_controls.timeLabel->setText(QStringLiteral("%1 s of %2 s")
                                      .arg(static_cast<double>(elapsed.count()) / 1000, 0, 'f', 1)
                                      .arg(longestRecording.count() / 1000));
}

void ReminderRecording::stop() {
    if (!isRunning())
        return;
    m_timer.cancel();
    m_recorder.stop(); // finished() follows
    showSaving();
}

void ReminderRecording::cancel() {
    if (!isRunning())
        return;
    m_timer.cancel();
    m_recorder.cancel();
    exitRecording();
}

// A slow disk or server may take seconds; nothing can be pressed meanwhile.
void ReminderRecording::showSaving() {
    m_isSaving = true;
    m_controls.recordButton->window()->setFocus(); // or the keyboard went on to the next button
    setEndsEnabled(false);
    showAction(*m_controls.recordButton, m_bundle, "StopRedButton",
               QStringLiteral("Saving the recording"));
    m_controls.recordButton->setEnabled(false);
    m_controls.levelMeter->reset();
    m_controls.messageLabel->setText(QStringLiteral("Saving…"));
}

void ReminderRecording::finished(const Take& take, const std::optional<AudioError>& error) {
    exitRecording();
    m_controls.recordButton->setFocus();
    if (error) {
        qCWarning(logSounds).noquote() << "cannot record:" << error->domain << "-" << error->reason;
        m_controls.messageLabel->setText(
            error->isKept ? QStringLiteral("%1 What was heard before is kept.").arg(error->reason)
                          : error->reason);
        if (!error->isKept)
            return;
    }
    m_callbacks.added(take);
}

void ReminderRecording::updateRecordButton() {
    m_controls.recordButton->setEnabled(!m_controls.reminderTitle->text().isEmpty() && !m_isSaving);
}

} // namespace dorvane
