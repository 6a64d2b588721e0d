// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "breaks/BreakOutlook.h"
#include "core/Alarm.h"
#include "core/Coalescer.h"
#include "firing/FlashingIcon.h"
#include "firing/WindowPlace.h"
#include "menubar/StatusPicture.h"
#include "platform/NotificationCenter.h"
#include "platform/RunLoop.h"

#include <QMenu>
#include <QPointer>

#include <functional>
#include <optional>

namespace dorvane {

class Clock;
class StatusItem;

// Keeps the icon in the status area up to date: a wedge that shows how far off the nearest alarm
// is, or flashing between a full disc and nothing while an alarm rings. Main thread only.
class StatusView final : public FlashingIcon, public WindowPlace {
public:
    // Shows the nearest alarm at once. All four must outlive the view.
    StatusView(RunLoop& runLoop, Clock& clock, NotificationCenter& notifications, StatusItem& item);
    ~StatusView() override;
    StatusView(const StatusView&) = delete;
    StatusView& operator=(const StatusView&) = delete;

    // The clock below the wedge, an SVG file; see StatusPicture.
    void setBackgroundImage(const QString& svgFile);

    // The menu that a press opens. Not owned.
    void setAlarmMenu(QMenu* menu) { m_targetMenu = menu; }
    // An action that a press performs instead of opening the menu; an empty one for none.
    void setTarget(std::function<void()> action) { m_action = std::move(action); }

    // The wedge: the minute of the hour where it ends, and its length in minutes, of which more
    // than 60 count as 60.
    void setAngleEnd(int end, int duration);

    void startFlashing() override;
    // Also clears the target.
    void stopFlashing() override;

    // Tells in the tool tip when the next break comes, marks the icon shortly before, and asks for
    // attention while a break goes unseen.
    void showBreaks(const BreakOutlook& outlook, bool isUnseen);

    // Tells in the tool tip and by the icon of a pause; an empty text for none.
    void showPause(const QString& pause);

    // What is next, in words, as the tool tip has it: within the hour with the minutes that are
    // left, which change with the wedge. Empty when nothing is; summaryDidChangeNotification tells
    // of each change.
    [[nodiscard]] const QString& summary() const { return m_summary; }

    // Looks at the clock once and shows what is nearest, unless the icon flashes.
    void updateStatusView();

    // Has the menu brought up to date and opens it, unless there is a target: on a press, and for
    // somebody who did not press the icon and may not be there.
    void mouseDown();
    void openMenuUnasked();
    void mouseUp();

    [[nodiscard]] QPoint placeFor(QSize window) const override;
    // A menu that nobody pressed the icon for closes at once, any other three seconds later.
    [[nodiscard]] bool makeWay(std::function<void()> isFree) override;

private:
    void openMenu();
    void flash();
    void updateSoon() { m_updateSoon.request(); }
    void sleepUntilNextChange(Instant moment, const AlarmPtr& nearest);
    void display();
    void tellAttention();
    void showToolTip(const AlarmPtr& nearest, Instant moment);

    RunLoop& m_runLoop;
    Clock& m_clock;
    NotificationCenter& m_notifications;
    StatusItem& m_item;

    StatusPicture m_picture;
    StatusPicture::Wedge m_wedge;
    std::optional<StatusPicture::Wedge> m_shown; // nothing when the icon must be sent again
    QString m_toolTip;
    QString m_summary;
    QPointer<QMenu> m_targetMenu;
    std::function<void()> m_action;
    bool m_flashPhase = false;
    QString m_breaks;
    QString m_pause;
    bool m_isBreakUnseen = false;
    bool m_needsAttention = false;
    bool m_isMenuAskedFor = false;
    RunLoopTimer m_closeMenu;
    RunLoopTimer m_menuClosed;

    RunLoopTimer m_refreshTimer;
    Coalescer m_updateSoon;
    RunLoopTimer m_flashTimer;
    RunLoopTimer m_clockSet;
    NotificationCenter::Observation m_alarmsObservation;
    NotificationCenter::Observation m_wakeObservation;
};

} // namespace dorvane
