// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmArchive.h"
#include "core/StoredAlarms.h"
#include "editor/AlarmEditorDelegate.h"
#include "editor/AlarmSetController.h"
#include "editor/DescriptionLabel.h"
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
                [this] { return RingDefaults{defaultSound}; },
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

    void open(const AlarmPtr& alarm = nullptr) {
        editor.showWithAlarm(alarm);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&editor));
    }

    // A name of a key as in "Tab", "Alt+W" or "Space", or '=' and a text to type.
    void press(const std::vector<const char*>& keys, QWidget* window = nullptr) {
        for (const char* key : keys) {
            QWidget* focus = (window ? window : &editor)->focusWidget();
            ASSERT_NE(focus, nullptr) << key;
            if (*key == '=') {
                QTest::keyClicks(focus, QString::fromUtf8(key + 1));
            } else {
                const QKeyCombination combination =
                    QKeySequence::fromString(QString::fromLatin1(key))[0];
                QTest::keyClick(focus, combination.key(), combination.keyboardModifiers());
            }
            QCoreApplication::processEvents();
            // A button that is reached by its letter stays down for a moment.
            EXPECT_TRUE(QTest::qWaitFor([this] {
                return std::ranges::none_of(editor.findChildren<QAbstractButton*>(),
                                            &QAbstractButton::isDown);
            }));
        }
    }

    [[nodiscard]] std::string sentence() const {
        return find<DescriptionLabel>("descriptionLabel")->toPlainText().toStdString();
    }
    [[nodiscard]] bool isEnabled(const char* name) const {
        return find<QWidget>(name)->isEnabled();
    }

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
