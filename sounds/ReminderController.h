// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"
#include "platform/NotificationCenter.h"
#include "platform/RunLoop.h"
#include "platform/UserFolders.h"
#include "sounds/ReminderRecording.h"

#include <QIcon>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class QWidget;

namespace dorvane {

class AudioRecorder;
class Bundle;
class ReminderStrings;
class Sound;
class SoundPlayer;
class Workspace;
struct ReminderControls;

// The window in which the user names a reminder, records up to ten seconds of sound for it, and
// plays, chooses or deletes earlier recordings. What would be lost of a recording that something
// plays, or of an old one that gives way, is asked for first. Shown, it keeps itself alive until it
// is closed; a recording that runs then is discarded. Main thread only.
class ReminderController : public std::enable_shared_from_this<ReminderController> {
public:
    // What the window works with; all of it must outlive the window.
    struct Surroundings {
        RunLoop& runLoop;
        NotificationCenter& notificationCenter;
        AudioRecorder& recorder;
        SoundPlayer& player;
        Workspace& workspace;
        const Bundle& bundle;
        UserFolders user;
        // Whether the file can be played.
        std::function<bool(const QString& path)> isSound;
        // What plays the file, in words: "the alarm “Tea”"; empty when nothing does.
        std::function<QStringList(const QString& path)> usersOf;
    };

    [[nodiscard]] static std::shared_ptr<ReminderController> create(Surroundings surroundings);
    virtual ~ReminderController();
    ReminderController(const ReminderController&) = delete;
    ReminderController& operator=(const ReminderController&) = delete;

    // Keeps the window above the one that asked for it. To be called once, before it is shown.
    void stayAbove(const QWidget& owner);

    // Called with the chosen recording when the user presses OK.
    void setAccepted(std::function<void(const QString& soundPath)> accepted) {
        m_accepted = std::move(accepted);
    }

    // Shows the window, or brings it to the front. With an alarm, its recording is chosen.
    void show() { runWithAlarm(nullptr); }
    void runWithAlarm(const AlarmPtr& alarm);
    void close();

    // What is chosen; empty when nothing is.
    [[nodiscard]] QString reminderString() const;
    [[nodiscard]] QString soundPath() const;

    // The actions of the controls.
    void startRecording(bool on);
    void stopRecording();
    void playSound();
    void deleteSound();
    void soundFolderPushed();
    void acceptReminder();

protected:
    // The same window from another form.
    ReminderController(Surroundings surroundings, ReminderControls (*loadForm)(QWidget& window));

private:
    void awakeFromNib();
    void connectControls();
    void ask(const QString& question, const QString& what, const QString& verb,
             void (ReminderController::*then)());
    [[nodiscard]] QString lossOf(const ReminderRecording::Take& take) const;
    void beginRecording();
    void removeSound();
    void cancelRecording();
    void recordingAdded(const ReminderRecording::Take& take);
    void soundDidFinishPlaying();
    void stopPlaying();
    void updatePlayButton();
    void forgetVanished();
    void windowWillClose();

    const Surroundings m_surroundings;
    const std::unique_ptr<QWidget> m_window;
    const std::unique_ptr<const ReminderControls> m_form;
    std::unique_ptr<ReminderStrings> m_reminderStrings;
    NotificationCenter::Observation m_reminderChanged;
    std::unique_ptr<ReminderRecording> m_recording;
    ReminderRecording::Take m_take; // that is asked about, or recorded
    std::unique_ptr<Sound> m_playingSound;
    std::function<void(const QString& soundPath)> m_accepted;
    std::shared_ptr<ReminderController> m_self; // while the window is shown
};

} // namespace dorvane
