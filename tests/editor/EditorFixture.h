// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmArchive.h"
#include "core/StoredAlarms.h"
#include "editor/AlarmEditorDelegate.h"
#include "editor/AlarmSetController.h"
#include "editor/VoiceService.h"
#include "firing/SoundRepeat.h"
#include "platform/Bundle.h"
#include "platform/linux/preferences/LibplistFormat.h"
#include "platform/linux/preferences/PropertyListDefaults.h"
#include "platform/NotificationCenter.h"
#include "platform/Workspace.h"
#include "sounds/AudioStorageController.h"
#include "tests/support/FakeSoundPlayer.h"
#include "tests/support/Trace.h"
#include "tests/support/VirtualRunLoop.h"

#include <QMenu>
#include <QTemporaryDir>

#include <functional>
#include <vector>

namespace dorvane::testing {

// Voices that only note in the trace what they were asked to say.
class FakeVoices final : public VoiceService {
public:
    explicit FakeVoices(Trace& trace) : m_trace(trace) {}

    [[nodiscard]] QStringList voiceNames() const override {
        return {QStringLiteral("Alex"), QStringLiteral("Vera")};
    }
    void fillMenuWithVoices(QMenu& menu) override {
        const QList<QAction*> items = menu.actions();
        for (QAction* item : items.mid(1))
            menu.removeAction(item);
        for (const QString& name : voiceNames())
            menu.addAction(name)->setData(name);
    }
    void speakText(const QString& text, int voiceNumber) override {
        m_trace.add(QStringLiteral("voice %1 says %2").arg(QString::number(voiceNumber), text));
    }

private:
    Trace& m_trace;
};

class FakeWorkspace final : public Workspace {
public:
    explicit FakeWorkspace(Trace& trace) : m_trace(trace) {}

    void openUrl(const QUrl& /*url*/) override {}
    void reveal(const QString& path) override { m_trace.add(QStringLiteral("reveal ") + path); }
    [[nodiscard]] QString typeOfFile(const QString& /*path*/) const override { return {}; }

private:
    Trace& m_trace;
};

// An editor with a library of its own on the disk, at a fixed moment, and a delegate that keeps
// what it was given.
class EditorFixture : public AlarmEditorDelegate {
public:
    explicit EditorFixture(const QDateTime& now)
        : loop(now)
        , trace(loop)
        , player(loop, trace)
        , repeat(loop, player)
        , voices(trace)
        , workspace(trace)
        , bundle(QStringLiteral(DORVANE_TEST_BUNDLE), {})
        , defaults(folder.filePath(QStringLiteral("defaults.plist")), format, loop)
        , archive(format, loop)
        , library(defaults, archive, loop)
        , storage({folder.path(), folder.path(), folder.path(), folder.path()}, {}, player,
                  workspace)
        , editor(services()) {
        editor.setDelegate(this);
    }

    AlarmEditorServices services() {
        return {loop,
                bundle,
                library,
                player,
                repeat,
                storage,
                voices,
                workspace,
                notifications,
                format,
                [this] { trace.add(QStringLiteral("reminders")); }};
    }

    void acceptedAlarm(AlarmSetController& from, const AlarmPtr& alarm) override {
        accepted.push_back(alarm);
        editedOne = from.editingOne();
    }

    // Stores an alarm that `change` completes.
    void store(
        const QString& title, const std::function<void(Alarm&)>& change = [](Alarm&) {}) {
        const AlarmPtr alarm = Alarm::initWithTime(loop, {}, title);
        change(*alarm);
        library.put(*alarm);
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
    SoundRepeat repeat;
    FakeVoices voices;
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
