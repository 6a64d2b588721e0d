// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmArchive.h"
#include "core/StoredAlarms.h"
#include "editor/AlarmEditorDelegate.h"
#include "editor/AlarmSetController.h"
#include "platform/Bundle.h"
#include "platform/linux/preferences/LibplistFormat.h"
#include "platform/linux/preferences/PropertyListDefaults.h"
#include "platform/NotificationCenter.h"
#include "sounds/AudioStorageController.h"
#include "sounds/ReminderController.h"
#include "tests/support/FakeAudioRecorder.h"
#include "tests/support/FakeSoundPlayer.h"
#include "tests/support/FakeSpeechService.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/support/Testing.h"

namespace dorvane::testing {

// An editor with a library of its own on the disk, at a fixed moment, and a delegate that keeps
// what it was given.
class EditorFixture : public AlarmEditorDelegate {
public:
    explicit EditorFixture(const QDateTime& now)
        : loop(now)
        , trace(loop)
        , player(loop, trace)
        , speech(loop, trace)
        , workspace(trace)
        , bundle(QStringLiteral(DORVANE_TEST_BUNDLE), {})
        , defaults(folder.filePath(u"defaults.plist"_qs), format, loop)
        , archive(format)
        , library(defaults, archive, notifications)
        , storage(loop, {folder.path(), folder.path(), folder.path(), folder.path()}, {}, player,
                  workspace)
        , editor(services()) {
        editor.setDelegate(this);
    }

    AlarmEditorServices services() {
        return {loop,      bundle,
                library,   player,
                storage,   speech,
                workspace, notifications,
                format,    [this] { return ReminderController::create(reminderSurroundings()); }};
    }

    ReminderController::Surroundings reminderSurroundings() {
        const UserFolders user{folder.path(), folder.path(), folder.path(), folder.path()};
        return {loop,
                notifications,
                recorder,
                player,
                workspace,
                bundle,
                user,
                [this](const QString& path) { return storage.soundFileTypes().isSound(path); }};
    }

    void acceptedAlarm(AlarmSetController& from, const AlarmPtr& alarm) override {
        accepted.push_back(alarm);
        editedOne = from.editingOne();
    }

    // Stores an alarm that `change` completes.
    void store(
        const QString& title, const std::function<void(Alarm&)>& change = [](Alarm&) {}) {
        const AlarmPtr alarm = Alarm::initWithTime({}, title);
        change(*alarm);
        library.put(*alarm, instantNow(loop));
    }

    [[nodiscard]] QStringList storedTitles() {
        return alarmTitles(library.alarms().value_or(std::vector<AlarmPtr>()));
    }

    template<typename Control>
    [[nodiscard]] Control* find(const char* name) const {
        return editor.findChild<Control*>(QString::fromLatin1(name));
    }

    QTemporaryDir folder;
    VirtualRunLoop loop;
    Trace trace;
    FakeSoundPlayer player;
    FakeAudioRecorder recorder{loop, trace};
    FakeSpeechService speech;
    FakeWorkspace workspace;
    NotificationCenter notifications;
    Bundle bundle;
    LibplistFormat format;
    PropertyListDefaults defaults;
    AlarmArchive archive;
    StoredAlarms library;
    AudioStorageController storage;
    AlarmSetController editor;
    std::vector<AlarmPtr> accepted;
    AlarmPtr editedOne;
};

} // namespace dorvane::testing
