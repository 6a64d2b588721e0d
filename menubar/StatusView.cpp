// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/StatusView.h"

#include "core/Clock.h"
#include "core/DateHelpers.h"
#include "core/Isolated.h"
#include "core/LocalTime.h"
#include "core/NotificationNames.h"
#include "core/Rearm.h"
#include "core/ShownTitle.h"
#include "core/WholeSecond.h"
#include "menubar/OneLine.h"
#include "platform/StatusItem.h"

#include <algorithm>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

constexpr int fullCircle = 60; // minutes

// The length of the wedge: minutes, rounded up.
int minutesUntil(const Alarm& alarm, Instant moment) {
    const Alarm::MinutesAndSeconds left = alarm.minutesFromNow(moment);
    return int(std::clamp<qint64>(left.minutes + (left.seconds == 0 ? 0 : 1), -1, fullCircle));
}

} // namespace

StatusView::StatusView(RunLoop& runLoop, Clock& clock, NotificationCenter& notifications,
                       StatusItem& item)
    : m_runLoop(runLoop)
    , m_clock(clock)
    , m_notifications(notifications)
    , m_item(item)
    // At launch and in the editor several changes come in a row, from a script a thousand.
    , m_updateSoon(runLoop, 100ms, [this] { updateStatusView(); }) {
    m_item.setPressed([this] {
        mouseDown();
        mouseUp();
    });
    m_clockSet = m_runLoop.whenClockIsSet([this] { updateSoon(); });
    m_alarmsObservation = m_notifications.addObserver(alarmsDidChangeNotification,
                                                      [this](const void*) { updateSoon(); });
    m_wakeObservation =
        m_notifications.addObserver(wakeNotification, [this](const void*) { updateSoon(); });
    updateStatusView();
    display();
}

StatusView::~StatusView() {
    m_item.setPressed({});
}

void StatusView::setBackgroundImage(const QString& svgFile) {
    m_picture.setBackgroundImage(svgFile);
    m_shown.reset();
    display();
}

void StatusView::setAngleEnd(int end, int duration) {
    m_wedge.end = end;
    m_wedge.duration = std::min(duration, fullCircle);
    display();
}

// A panel answers every icon with a round of messages, so it hears of a change only.
void StatusView::display() {
    if (m_shown && *m_shown == m_wedge)
        return;
    m_shown = m_wedge;
    using Sizes = StatusItem::IconSizes;
    m_item.setIcon([this, wedge = m_wedge](int pixels) { return m_picture.image(wedge, pixels); },
                   m_flashTimer ? Sizes::Few : Sizes::All);
}

void StatusView::updateStatusView() {
    const Instant moment = rightAfterWholeSecond(instantNow(m_runLoop));
    const AlarmPtr nearest = m_clock.nearestAlarm(moment);
    sleepUntilNextChange(moment, nearest);
    showToolTip(nearest, moment);
    if (m_flashTimer)
        return;
    if (nearest)
        setAngleEnd(nearest->minute(moment), minutesUntil(*nearest, moment));
    else
        setAngleEnd(0, 0);
}

// The picture is to look as if it were drawn ten times a second, but time alone changes it only
// when the wedge loses a minute, and around the seconds at which alarms fall due, when another one
// may become the nearest: the seconds to go of one that is just past stand still for a second.
void StatusView::sleepUntilNextChange(Instant moment, const AlarmPtr& nearest) {
    m_refreshTimer.cancel();
    if (!nearest)
        return;
    Instant next = instantOf(localMoment(localDateTimeOf(moment).date().addDays(1), QTime(0, 0)));
    const auto lookAt = [&](Instant candidate) { next = std::min(next, candidate); };
    for (const AlarmPtr& alarm : m_clock.allAlarms()) {
        const std::optional<Instant> due = alarm->due(moment);
        if (alarm->isHeld(moment))
            continue;
        if (alarm->countsFromNow())
            lookAt(moment);
        else if (due && *due >= moment - 1s)
            lookAt(*due - 1s);
        if (const int shown = alarm == nearest ? minutesUntil(*alarm, moment) : 0; due && shown > 0)
            lookAt(*due - 1s - std::chrono::minutes(shown - 1));
    }
    // In the default mode: while our menu is open the icon stands still.
    m_refreshTimer = m_runLoop.scheduleAt(
        localDateTimeOf(std::max(next, nextWholeSecond(moment))), [this] { updateStatusView(); },
        RunLoopMode::Default);
}

// What counts down changes with the wedge, which is sent at that moment anyway. What a pause holds
// has no wedge, and is told of where it rings first of all.
void StatusView::showToolTip(const AlarmPtr& nearest, Instant moment) {
    AlarmPtr first = nearest;
    std::optional<Instant> rings = nearest ? nearest->due(moment) : std::nullopt;
    for (const AlarmPtr& alarm : m_clock.allAlarms()) {
        const auto held = alarm->isHeld(moment) ? nextRing(*alarm, moment) : std::nullopt;
        if (held && (!rings || *held < *rings)) {
            first = alarm;
            rings = held;
        }
    }
    QStringList parts;
    if (first) {
        constexpr int longestTitle = 60;
        const QString title = isolated(oneLine(shownTitle(*first), longestTitle));
        QString next =
            dayTimeString(localDateTimeOf(rings.value_or(moment)), localDateTimeOf(moment));
        const int left = first == nearest ? minutesUntil(*nearest, moment) : 0;
        if (left > 0 && left < fullCircle)
            next += QStringLiteral(", in %1 min").arg(left);
        if (!title.isEmpty())
            next += QStringLiteral(" \u2013 ") + title;
        parts << next;
    }
    for (const QString& part : {m_breaks, m_pause})
        if (!part.isEmpty())
            parts << part;
    m_summary = parts.join(QStringLiteral(" \u00b7 "));
    QString text = m_summary;
    if (!first)
        text = QStringLiteral("Dorvane") +
               (text.isEmpty() ? QString() : QStringLiteral(" \u2013 ") + text);
    if (text == m_toolTip)
        return;
    m_toolTip = text;
    m_item.setToolTip(text);
    m_notifications.post(summaryDidChangeNotification, this);
}

void StatusView::startFlashing() {
    if (m_flashTimer)
        return;
    m_flashPhase = true;
    m_flashTimer = m_runLoop.scheduleRepeating(
        1s, [this] { flash(); }, RunLoopMode::Default);
    tellAttention();
}

void StatusView::flash() {
    setAngleEnd(0, m_flashPhase ? 60 : 0);
    m_flashPhase = !m_flashPhase;
}

void StatusView::stopFlashing() {
    if (!m_flashTimer)
        return;
    m_flashTimer.cancel();
    m_shown.reset(); // of few sizes
    tellAttention();
    m_action = {};
    setAngleEnd(0, 0);
    updateSoon();
}

void StatusView::showBreaks(const BreakOutlook& outlook, bool isUnseen) {
    m_breaks = outlookText(outlook);
    m_isBreakUnseen = isUnseen;
    tellAttention();
    m_wedge.isMarked = outlook.isNear;
    display();
    updateSoon();
}

void StatusView::showPause(const QString& pause) {
    if (pause == m_pause)
        return;
    m_pause = pause;
    m_wedge.isPaused = !pause.isEmpty();
    display();
    updateSoon();
}

void StatusView::tellAttention() {
    const bool needsAttention = m_flashTimer || m_isBreakUnseen;
    if (needsAttention != std::exchange(m_needsAttention, needsAttention))
        m_item.setNeedsAttention(needsAttention);
}

void StatusView::mouseDown() {
    m_isMenuAskedFor = true;
    openMenu();
}

void StatusView::openMenuUnasked() {
    m_isMenuAskedFor = m_isMenuAskedFor && m_targetMenu && m_targetMenu->isVisible();
    openMenu();
}

void StatusView::openMenu() {
    if (m_action)
        return;
    m_notifications.post(mainMenuWillAppearNotification, this);
    if (m_targetMenu)
        m_item.popUp(*m_targetMenu);
}

void StatusView::mouseUp() {
    // The action may set another target, so it is called on a copy.
    if (const std::function<void()> action = m_action)
        action();
}

bool StatusView::makeWay(std::function<void()> isFree) {
    if (m_targetMenu && m_targetMenu->isVisible() && !m_isMenuAskedFor)
        m_targetMenu->close();
    if (!m_targetMenu || !m_targetMenu->isVisible())
        return true;
    if (!m_menuClosed)
        m_closeMenu = m_runLoop.scheduleOnce(
            3s,
            [menu = m_targetMenu] {
                if (menu)
                    menu->close();
            },
            RunLoopMode::Common);
    // In the default mode, which comes back when the menu has closed, whoever closed it.
    m_menuClosed = m_runLoop.scheduleOnce(
        0ms,
        [this, isFree = std::move(isFree)] {
            const auto freed = isFree; // which goes with the timer
            m_closeMenu.cancel();
            m_menuClosed.cancel();
            freed();
        },
        RunLoopMode::Default);
    return false;
}

QPoint StatusView::placeFor(QSize window) const {
    return m_item.placeFor(window);
}

} // namespace dorvane
