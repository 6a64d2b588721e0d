// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmArchive.h"
#include "core/StoredAlarms.h"
#include "editor/AlarmEditorDelegate.h"
#include "editor/AlarmSetController.h"
#include "platform/Bundle.h"
#include "platform/linux/preferences/PropertyListCodec.h"
#include "platform/linux/preferences/PropertyListDefaults.h"
#include "sounds/AudioStorageController.h"
#include "sounds/PullDownPopUp.h"
#include "sounds/ReminderController.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/Files.h"
#include "tests/support/Windows.h"

namespace dorvane::testing {

// An editor with a library of its own on the disk, at a fixed moment, and a delegate that keeps
// what it was given.
class EditorFixture : public AlarmEditorDelegate, public FakeDesktop {
public:
    explicit EditorFixture(const char* now) : FakeDesktop(now) { editor.setDelegate(this); }

    AlarmEditorServices services() {
        return {loop,
                bundle,
                library,
                player,
                storage,
                speech,
                workspace,
                notifications,
                format,
                [this] { return ReminderController::create(reminderSurroundings()); },
                [this] { return defaultSound; },
                [](const AlarmPtr&) { return true; }};
    }

    ReminderController::Surroundings reminderSurroundings() {
        return {loop,
                notifications,
                recorder,
                player,
                workspace,
                bundle,
                user,
                [this](const QString& path) { return storage.soundFileTypes().isSound(path); },
                [](const QString&) { return QStringList(); }};
    }

    void acceptedAlarm(AlarmSetController&, const AlarmPtr& alarm) override {
        accepted.push_back(alarm);
    }

    void store(const AlarmOf& alarm) { library.put(*alarm.alarm(), instantNow(loop)); }

    [[nodiscard]] QStringList storedTitles() {
        return alarmTitles(library.alarms().value_or(std::vector<AlarmPtr>()));
    }

    template<typename Control>
    [[nodiscard]] Control* find(const char* name) const {
        return editor.findChild<Control*>(QString::fromLatin1(name));
    }

    void click(const char* name) { find<QAbstractButton>(name)->click(); }

    // A sound of the user's.
    QString addSound(const char* name, FakeSoundPlayer::File sound) {
        QString file = path("share/Dorvane/Sounds/") + QLatin1String(name) + u".aiff"_qs;
        writeFile(file);
        player.setFile(file, sound);
        return file;
    }

    // What the pull-down holds, each submenu behind its item.
    QList<QAction*> offered(const char* popUp) {
        auto* button = find<PullDownPopUp>(popUp);
        button->showPopup();
        loop.runPending(); // voices are listed when somebody asks
        QList<QAction*> items;
        for (QAction* item : button->menu().actions())
            items << item << (item->menu() ? item->menu()->actions() : QList<QAction*>());
        button->menu().close();
        return items;
    }
    void pick(const char* popUp, const QString& text) {
        for (QAction* item : offered(popUp))
            if (item->text() == text)
                return item->trigger();
        ADD_FAILURE() << "not offered: " << qPrintable(text);
    }

    Bundle bundle{QStringLiteral(DORVANE_BUNDLE), {}};
    PropertyListCodec format;
    PropertyListDefaults defaults{path("defaults.plist"), format, loop};
    AlarmArchive archive{format};
    StoredAlarms library{defaults, archive, notifications};
    AudioStorageController storage{loop, user, {}, player, workspace};
    AlarmSetController editor{services()};
    QString defaultSound; // none
    std::vector<AlarmPtr> accepted;
};

} // namespace dorvane::testing
