// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmContext.h"
#include "firing/AlarmRinger.h"
#include "firing/FlashingIcon.h"
#include "firing/SnoozeWindowController.h"
#include "firing/SnoozeWindowControllerDelegate.h"
#include "firing/SnoozeWindowStack.h"
#include "firing/SoundRepeat.h"
#include "firing/TextSpeaker.h"
#include "firing/WindowPlace.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/FakeSoundOutput.h"
#include "tests/support/Windows.h"

namespace dorvane::testing {

// Rings alarms with real windows; everything that happens goes to one trace.
class RingingFixture : public FakeDesktopTest,
                       protected FlashingIcon,
                       protected WindowPlace,
                       protected SnoozeWindowControllerDelegate {
protected:
    ~RingingFixture() override {
        for (const AlarmPtr& alarm : m_alarms)
            if (alarm->context())
                alarm->context()->close();
        loop.runPending();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void startFlashing() override { trace.add(u"flash"_qs); }
    void stopFlashing() override { trace.add(u"no flash"_qs); }
    [[nodiscard]] QPoint placeFor(QSize) const override { return {300, 40}; }
    [[nodiscard]] bool makeWay(std::function<void()>) override { return true; }
    void snoozeWindowDidSnooze(SnoozeWindowController& window) override {
        trace.add(window.windowAlarm()->title() + u" snoozed"_qs);
    }
    void snoozeWindowDidClear(SnoozeWindowController& window) override {
        trace.add(window.windowAlarm()->title() + u" cleared"_qs);
        window.close();
    }

    AlarmPtr alarm(AlarmOf values) {
        values.kind = Alarm::Dated;
        values.time = "11-24 07:30";
        values.snoozeTime = 5;
        m_alarms.push_back(values.alarm());
        if (!values.sound)
            m_alarms.back()->setSoundPath(u"unused"_qs);
        return m_alarms.back();
    }
    AlarmPtr ring(const AlarmOf& values) {
        AlarmPtr ringing = alarm(values);
        m_ringer.activateAlarm(ringing);
        return ringing;
    }

    static QList<QWidget*> windows() { return windowsNamed("SnoozeWindowController"); }
    static QWidget* windowOf(const char* title) {
        for (QWidget* window : windows())
            if (window->accessibleName().startsWith(QLatin1String(title)))
                return window;
        ADD_FAILURE() << "no window of " << title;
        return nullptr;
    }
    static void click(const char* title, const char* button) {
        QTest::mouseClick(windowOf(title)->findChild<QPushButton*>(QLatin1String(button)),
                          Qt::LeftButton);
    }

    // What each window says beside its title, oldest first.
    std::vector<std::string> notes() const {
        std::vector<std::string> found;
        for (const AlarmPtr& alarm : m_alarms)
            found.push_back(alarm->title().toStdString() + ": " +
                            windowOf(qPrintable(alarm->title()))
                                ->findChild<QLabel*>(u"noteLabel"_qs)
                                ->accessibleName()
                                .toStdString());
        return found;
    }

    SoundRepeat m_repeat{loop, player};
    TextSpeaker m_speaker{speech};
    FakeSoundOutput m_output{loop};
    FakeSleepInhibitor m_inhibitor;
    AlarmRinger m_ringer{{loop, player, m_repeat, m_speaker, *this, *this, *this,
                          [](const QString& path) { return path == u"ping"_qs; }, m_output,
                          m_inhibitor, [] { return u"ping"_qs; },
                          [this]() -> std::unique_ptr<Notice> {
                              return m_isHidden ? std::make_unique<FakeNotice>(*this) : nullptr;
                          },
                          [this] { return m_volume; }}};
    std::vector<AlarmPtr> m_alarms;
    bool m_isHidden = false; // windows, by others
    float m_volume = 1;
    std::function<void(const QString& key)> m_chosen;

private:
    class FakeNotice final : public Notice {
    public:
        explicit FakeNotice(RingingFixture& test) : m_test(test) {}
        ~FakeNotice() override { withdraw(); }
        void show(const QString& title, const QString& text, const std::vector<Action>& actions,
                  std::function<void(const QString& key)> chosen) override {
            m_test.trace.add(
                u"notice: %1, %2, %3, %4"_qs.arg(title, text, actions[0].label, actions[1].label));
            m_test.m_chosen = std::move(chosen);
        }
        void withdraw() override { m_test.trace.add(u"no notice"_qs); }

    private:
        RingingFixture& m_test;
    };
};

} // namespace dorvane::testing
