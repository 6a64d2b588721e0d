// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/AlarmSoundMenuContructor.h"

#include "sounds/AudioStorageController.h"
#include "sounds/LongMenuStyle.h"
#include "sounds/SoundMenuTarget.h"

#include <QMenu>

#include <algorithm>

namespace dorvane {

AlarmSoundMenuContructor::AlarmSoundMenuContructor(const AudioStorageController& library,
                                                   QString recordTitle)
    : m_library(library)
    , m_recordTitle(std::move(recordTitle))
    , m_scrolling(std::make_unique<LongMenuStyle>()) {}

AlarmSoundMenuContructor::~AlarmSoundMenuContructor() = default;

QMenu* AlarmSoundMenuContructor::objectMenu() const {
    return m_objectMenu;
}

void AlarmSoundMenuContructor::setObjectMenu(QMenu* menu) {
    m_objectMenu = menu;
}

void AlarmSoundMenuContructor::constructMenu() {
    const QList<QAction*> items = m_objectMenu->actions();
    const QString title = items.isEmpty() ? QStringLiteral("Select Sound") : items.first()->text();
    removeAllItems();
    m_objectMenu->addAction(title)->setVisible(false);
    buildRecordSounds();
    insertSeparator();
    buildSystemSounds();
    insertSeparator();
    buildiMovieSounds();
    insertSeparator();
    buildAddedSounds();
}

void AlarmSoundMenuContructor::removeAllItems() {
    m_objectMenu->clear();
    // Clearing takes submenus off the menu but leaves them in its care. They may be on the way up
    // the call stack, when choosing a sound leads to a rebuild.
    for (QMenu* submenu : m_objectMenu->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly))
        submenu->deleteLater();
}

void AlarmSoundMenuContructor::buildRecordSounds() {
    QMenu& submenu = addSubmenu(QStringLiteral("Record Sound"),
                                &AudioStorageController::fillMenuWithReminderSounds);
    auto* record = new QAction(m_recordTitle, &submenu);
    QObject::connect(record, &QAction::triggered, record,
                     [target = m_target] { target->manageReminders(); });
    const QList<QAction*> reminders = submenu.actions();
    const auto first =
        std::find_if(reminders.begin(), reminders.end(), [this](const QAction* reminder) {
            return reminder->data().toString() == m_firstReminder;
        });
    if (first != reminders.end() && first != reminders.begin())
        submenu.insertAction(reminders.first(), *first);
    submenu.insertAction(submenu.actions().value(0), record);
    submenu.menuAction()->setEnabled(true);
}

void AlarmSoundMenuContructor::buildSystemSounds() {
    addSubmenu(QStringLiteral("System Sounds"), &AudioStorageController::fillMenuWithSystemSounds);
}

void AlarmSoundMenuContructor::buildiMovieSounds() {
    addSubmenu(QStringLiteral("iMovie Sounds"), &AudioStorageController::fillMenuWithiMovieSounds);
}

void AlarmSoundMenuContructor::buildAddedSounds() {
    addSubmenu(QStringLiteral("User Sound Library"),
               &AudioStorageController::fillMenuWithAddedSounds);
}

void AlarmSoundMenuContructor::insertSeparator() {
    m_objectMenu->addSeparator();
}

QMenu& AlarmSoundMenuContructor::addSubmenu(const QString& title, Fill fill) {
    QMenu* submenu = m_objectMenu->addMenu(title);
    submenu->setStyle(m_scrolling.get());
    (m_library.*fill)(*submenu,
                      [target = m_target](const QString& path) { target->soundSelected(path); });
    // An empty menu opens as nothing that could be seen, and would take the keyboard.
    submenu->menuAction()->setEnabled(!submenu->isEmpty());
    return *submenu;
}

} // namespace dorvane
