// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QToolButton;
class QWidget;

namespace dorvane {

class LevelMeter;
class ReminderComboBox;

// The controls of a window that records reminders, whichever form they come from. Owned by the
// window.
struct ReminderControls {
    QLineEdit* reminderTitle;
    QToolButton* recordButton;
    LevelMeter* levelMeter;
    QProgressBar* progressIndicator;
    QLabel* timeLabel;
    QLabel* messageLabel;
    ReminderComboBox* comboBox;
    QToolButton* playButton;
    QPushButton* deleteButton;
    QPushButton* folderButton;
    QLabel* playFeedback;
    QPushButton* okButton;
    // Null in a form that leaves stopping to the record button and cancelling to Escape.
    QPushButton* stopButton = nullptr;
    QPushButton* cancelButton = nullptr;
};

// Fills the window from a form.
template<typename Form>
ReminderControls loadReminderForm(QWidget& window) {
    Form form;
    form.setupUi(&window);
    ReminderControls controls{form.reminderTitle,     form.recordButton, form.levelMeter,
                              form.progressIndicator, form.timeLabel,    form.messageLabel,
                              form.comboBox,          form.playButton,   form.deleteButton,
                              form.folderButton,      form.playFeedback, form.okButton};
    if constexpr (requires { form.stopButton; }) {
        controls.stopButton = form.stopButton;
        controls.cancelButton = form.cancelButton;
    }
    return controls;
}

} // namespace dorvane
