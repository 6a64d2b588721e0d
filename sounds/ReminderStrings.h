// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/UserFolders.h"
#include "sounds/StringContainer.h"

#include <QIcon>
#include <QPointer>

#include <functional>
#include <vector>

namespace dorvane {

class NotificationCenter;
class ReminderComboBox;
class RunLoop;

// Posted, with the list as the sender, in the turn of the loop after another recording was chosen.
inline const QString reminderChangedNotification = QStringLiteral("ReminderChangedNotification");

// The recordings behind a combo box: what lies in the recordings folder, in the order of the file
// system, until a recording is added: that one stands first then. Fifteen are kept, and what is
// played by something. Main thread only.
class ReminderStrings {
public:
    struct Surroundings {
        RunLoop& runLoop;
        NotificationCenter& notificationCenter;
        UserFolders user;
        // Whether the file can be played.
        std::function<bool(const QString& path)> isSound;
        QIcon soundImage;
        // What plays the file, in words: "the alarm “Tea”"; empty when nothing does.
        std::function<QStringList(const QString& path)> usersOf;
    };

    // The run loop and the centre must outlive the list.
    explicit ReminderStrings(Surroundings surroundings);
    ~ReminderStrings();
    ReminderStrings(const ReminderStrings&) = delete;
    ReminderStrings& operator=(const ReminderStrings&) = delete;

    // The folder of the recordings, which is made if it is not there; a failure is logged.
    [[nodiscard]] static QString soundDirectory(const UserFolders& user);

    // Shows the list in the combo box, from now on and in no other; not owned.
    void attachToComboBox(ReminderComboBox* comboBox);

    // Reads the folder again. What is chosen stays chosen, and nobody hears of it, while it is
    // still there.
    void refreshContent();

    // The text of the first entry that begins with what was typed, else that itself.
    [[nodiscard]] QString completedString(const QString& typed) const;

    // What a new recording of this path would be the sixteenth beside: the one made longest ago of
    // those that nothing plays. Empty when there is room, or all are played by something.
    [[nodiscard]] QString pathToReclaim(const QString& newPath);

    // Puts the recording first and chooses it. The other file, if one is given, is deleted, unless
    // something plays it by now.
    void addReminderString(const QString& text, const QString& path, const QString& toReclaim);

    // Deletes the chosen recording's file and chooses, in the next turn of the loop, the one
    // before. Where that fails, the choice stays, and the answer says why.
    [[nodiscard]] QString removeCurrentSound();

    // What the combo box reads: the chosen recording's text, or what was typed.
    [[nodiscard]] QString currentStringValue() const;
    // Of the chosen recording; empty when none is chosen.
    [[nodiscard]] QString currentSoundPath() const;
    [[nodiscard]] QString soundPathAtIndex(int index) const;

    // Chooses the first such recording, or none.
    void setCurrentStringValue(const QString& text);
    void setCurrentSoundPath(const QString& path);

private:
    void reloadData(const QString& chosenPath);
    void textEdited(const QString& text);
    [[nodiscard]] int indexOfText(const QString& text) const;
    [[nodiscard]] int indexOfPath(const QString& path) const;
    [[nodiscard]] int indexOf(const std::function<bool(const StringContainer&)>& matches) const;
    void select(int index);
    void finishSoundRemoving(int index);
    void reclaimSound(const QString& path);
    void comboBoxSelectionDidChange();
    void postReminderChangedNotificationWithDelay();
    void defer(std::function<void(ReminderStrings&)> work);

    const Surroundings m_surroundings;
    const QString m_folder;
    std::vector<StringContainer> m_stringContainers;
    QPointer<ReminderComboBox> m_comboBox;
    QString m_typed; // before what is typed now
    Lifeline<ReminderStrings> m_lifeline{*this};
};

} // namespace dorvane
