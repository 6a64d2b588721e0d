// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"
#include "core/AlarmContext.h"
#include "platform/RunLoop.h"

#include <QPoint>
#include <QSize>

#include <memory>

class QWidget;

namespace Ui {
class SnoozeWindowController;
}

namespace dorvane {

class SnoozeWindowControllerDelegate;
class SnoozeWindowStack;
class Notice;
class TypingGuard;

// The small window of one ringing alarm: its time, its title, Snooze and Clear. It keeps itself
// alive until it is closed. Main thread only.
class SnoozeWindowController final : public AlarmContext {
public:
    // Opens the window for the alarm as soon as the stack has a place for it, above the other
    // windows. All but the alarm must outlive the window.
    static std::shared_ptr<SnoozeWindowController>
    showCloseTo(SnoozeWindowStack& stack, RunLoop& runLoop,
                SnoozeWindowControllerDelegate& delegate, const AlarmPtr& alarm);

    ~SnoozeWindowController() override;

    [[nodiscard]] const AlarmPtr& windowAlarm() const { return m_windowAlarm; }

    // For how many minutes the alarm was snoozed: its own, or those chosen for this once.
    [[nodiscard]] qint64 snoozeLength() const { return m_snoozeLength; }

    void snoozeButtonPressed();
    void snoozeForButtonChose(qint64 minutes);
    void clearButtonPressed();
    void clearAllButtonPressed();

    // One line of what the person should know of how this alarm rings; empty for nothing. A long
    // name in it, which stands where the text has %1, gives way in its middle.
    struct Note {
        QString text;
        QString name;
    };
    void setNote(const Note& note);

    void close() override;

    // For the stack. The size is the same from the beginning to the end.
    [[nodiscard]] QSize size() const;
    void showAt(QPoint place, bool takesKeyboard);
    void setOffersClearAll(bool isOffered);
    // The keyboard: whether the window has it; takes it, guarded from what is being typed, or from
    // the key that has just answered another one.
    [[nodiscard]] bool hasKeyboard() const;
    void takeKeyboard(bool isAfterAnswer);

private:
    SnoozeWindowController(SnoozeWindowStack& stack, RunLoop& runLoop,
                           SnoozeWindowControllerDelegate& delegate);

    void setAlarm(const AlarmPtr& alarm);
    void setNextAlarm();
    void offerSnoozeLengths();
    void showNotice();
    void answer(void (SnoozeWindowControllerDelegate::*choice)(SnoozeWindowController&));

    SnoozeWindowStack& m_stack;
    RunLoop& m_runLoop;
    SnoozeWindowControllerDelegate& m_delegate;
    AlarmPtr m_windowAlarm;
    qint64 m_snoozeLength = 0;
    RunLoopTimer m_nextAlarmTimer;
    std::unique_ptr<Ui::SnoozeWindowController> m_form;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<Notice> m_notice; // null where nothing hides the window
    TypingGuard* m_typingGuard;       // the window's
    bool m_isAnswered = false;
    std::shared_ptr<SnoozeWindowController> m_self; // until closed
};

} // namespace dorvane
