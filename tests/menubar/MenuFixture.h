// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmContext.h"
#include "core/Clock.h"
#include "core/LastDeletion.h"
#include "core/WakeUps.h"
#include "editor/TitleBox.h"
#include "firing/SnoozeWindowController.h"
#include "firing/SoundRepeat.h"
#include "menubar/AlarmMenuController.h"
#include "platform/Appearance.h"
#include "platform/WakeAlarm.h"
#include "tests/editor/EditorFixture.h"
#include "tests/support/FakeSoundOutput.h"
#include "tests/support/FakeStatusItem.h"
#include "tests/support/Windows.h"

namespace dorvane::testing {

class LightDesktop final : public Appearance {
public:
    [[nodiscard]] bool isDark() const override { return false; }
    void setChanged(std::function<void()>) override {}
};

struct FakeWakeAlarm final : WakeAlarm {
    [[nodiscard]] Ability ability() const override { return Ability::Able; }
    void arm(const std::optional<QDateTime>& moment) override { armed = moment; }
    std::optional<QDateTime> armed;
};

// The whole front end on virtual time; only the panel and the sound are fakes. Alarms play their
// titles, so that the trace tells what rings.
class MenuFixture : public ::testing::Test, protected EditorFixture {
protected:
    MenuFixture() : EditorFixture("11-23 08:00") {} // a Monday
    ~MenuFixture() override {
        for (const AlarmPtr& alarm : std::vector(m_clock.allAlarms()))
            m_controller.deleteAlarm(alarm);
        loop.runPending();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    AlarmPtr schedule(AlarmOf values) {
        values.sound = values.title;
        if (values.snoozeTime == 0)
            values.snoozeTime = 5;
        AlarmPtr alarm = values.alarm();
        library.put(*alarm, instantNow(loop));
        m_controller.scheduleAlarm(alarm);
        return alarm;
    }
    AlarmPtr timer(const char* title) {
        return schedule({.title = title, .minutes = 1, .isPreset = true});
    }

    static SnoozeWindowController& windowOf(const AlarmPtr& alarm) {
        return static_cast<SnoozeWindowController&>(*alarm->context());
    }
    static qsizetype openWindows() { return windowsNamed("SnoozeWindowController").size(); }
    static QList<AlarmSetController*> openEditors() {
        return windowsNamed<AlarmSetController>("AlarmSetController");
    }
    // What edits this alarm, once it has the keyboard; a new one without any.
    AlarmSetController& editorOf(const AlarmPtr& alarm) {
        alarm ? m_controller.editAlarm(alarm) : m_controller.createAlarm();
        AlarmSetController& window = *openEditors().front();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        return window;
    }
    // "inTimeField=20": a button is clicked, a field is typed into and left.
    static void use(const AlarmSetController& window, const QString& control) {
        const QString name = control.section(u'=', 0, 0);
        const auto widget = window.findChild<QWidget*>(name);
        ASSERT_TRUE(widget && widget->isEnabled()) << qPrintable(name);
        if (const auto button = qobject_cast<QAbstractButton*>(widget))
            return button->click();
        widget->setFocus(Qt::TabFocusReason);
        if (const auto field = qobject_cast<QLineEdit*>(widget))
            field->selectAll();
        if (const auto box = qobject_cast<TitleBox*>(widget))
            box->lineEdit()->selectAll();
        QTest::keyClicks(widget, control.section(u'=', 1));
        QTest::keyClick(widget, Qt::Key_Tab);
    }

    static void set(AlarmSetController& window) {
        for (QPushButton* button : window.findChildren<QPushButton*>())
            if (button->text() == u"&Set"_qs)
                button->click();
    }

    QStringList m_told; // what befell alarms that rang: "tea snoozed", "tea missed 11-23 08:30"
    Clock m_clock{loop, notifications};
    FakeWakeAlarm m_wakeAlarm;
    WakeUps m_wakeUps{loop, notifications, m_clock, defaults, m_wakeAlarm};
    SoundRepeat m_repeat{loop, player};
    FakeStatusItem m_item;
    FakeSoundOutput m_output{loop};
    FakeSleepInhibitor m_inhibitor;
    LightDesktop m_appearance;
    LastDeletion m_lastDeletion{loop, m_clock, library};
    AlarmMenuController m_controller{
        {.runLoop = loop,
         .notifications = notifications,
         .clock = m_clock,
         .storedAlarms = library,
         .statusItem = m_item,
         .appearance = m_appearance,
         .bundle = bundle,
         .player = player,
         .repeat = m_repeat,
         .speech = speech,
         .soundOutput = m_output,
         .sleepInhibitor = m_inhibitor,
         .isSystemSound = [](const QString&) { return false; },
         .makeEditor =
             [this] {
                 AlarmEditorServices editing = services();
                 editing.runs = [this](const AlarmPtr& alarm) {
                     return std::ranges::count(m_clock.allAlarms(), alarm) > 0;
                 };
                 return std::make_unique<AlarmSetController>(editing);
             },
         .ringDefaults = [] { return RingDefaults{u"ping"_qs}; },
         .sharedRespito = {},
         .breakCycle = {},
         .breaksRun = {},
         .showAlarms = {},
         .openPrefs = {},
         .showGoogleHelp = {},
         .terminate = {},
         .ringing =
             [this](RingEvent event, const AlarmPtr& alarm) {
                 constexpr const char* words[] = {"rings", "snoozed", "cleared", "unanswered"};
                 m_told << alarm->title() + QLatin1Char(' ') + QLatin1String(words[int(event)]);
             },
         .cameRoundAgain =
             [this](const AlarmPtr& alarm, const QDateTime& due) {
                 m_told << alarm->title() + u" missed "_qs + due.toString(u"MM-dd HH:mm"_qs);
             },
         .lastDeletion = &m_lastDeletion}};
};

} // namespace dorvane::testing
