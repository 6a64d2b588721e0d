// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QString>

#include <functional>
#include <memory>

class QMenu;
class QStyle;

namespace dorvane {

class AudioStorageController;
class SoundMenuTarget;

// Builds the menu of a pull-down button from which the user picks a sound. Item 0 is the button's
// face: it carries the title of the current choice and is not shown among the others. After it
// comes a submenu for each group of the sound library.
class AlarmSoundMenuContructor {
public:
    // The library must outlive this. `recordTitle` is the text of the item that asks for the window
    // that records sounds.
    explicit AlarmSoundMenuContructor(
        const AudioStorageController& library,
        QString recordTitle = QStringLiteral("Record Alarm Sound..."));
    ~AlarmSoundMenuContructor();
    AlarmSoundMenuContructor(const AlarmSoundMenuContructor&) = delete;
    AlarmSoundMenuContructor& operator=(const AlarmSoundMenuContructor&) = delete;

    // The menu to fill; not owned.
    [[nodiscard]] QMenu* objectMenu() const;
    void setObjectMenu(QMenu* menu);

    // Receives the actions of the menus built from now on, and must outlive those menus; not owned.
    [[nodiscard]] SoundMenuTarget* target() const { return m_target; }
    void setTarget(SoundMenuTarget* target) { m_target = target; }

    // The recording that comes first in its submenu; none at first.
    void setFirstReminder(const QString& path) { m_firstReminder = path; }

    // Rebuilds the menu from what is in the library now; only the title of the face is kept. Needs
    // a menu and a target. To be called each time the menu is about to show.
    void constructMenu();

    void removeAllItems();

    // Append one entry each.
    void buildRecordSounds();
    void buildSystemSounds();
    void buildiMovieSounds();
    void buildAddedSounds();
    void insertSeparator();

private:
    using SoundAction = std::function<void(const QString&)>;
    using Fill = void (AudioStorageController::*)(QMenu&, const SoundAction&) const;
    QMenu& addSubmenu(const QString& title, Fill fill);

    const AudioStorageController& m_library;
    const QString m_recordTitle;
    const std::unique_ptr<QStyle> m_scrolling;
    QPointer<QMenu> m_objectMenu;
    SoundMenuTarget* m_target = nullptr;
    QString m_firstReminder;
};

} // namespace dorvane
