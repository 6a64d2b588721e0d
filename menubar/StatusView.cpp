// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/StatusView.h"

#include "core/Clock.h"
#include "core/DateHelpers.h"
#include "core/NotificationNames.h"
#include "menubar/OneLine.h"
#include "menubar/WholeSecond.h"
#include "platform/StatusItem.h"

#include <algorithm>
#include <limits>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

AlarmPtr nearestAlarm(const Clock& clock, Instant moment) {
    const std::vector<AlarmPtr>& alarms = clock.allAlarms();
    const auto nearest =
        std::min_element(alarms.begin(), alarms.end(), [moment](const auto& a, const auto& b) {
            return a->secondsFromNow(moment) < b->secondsFromNow(moment);
        });
    return nearest == alarms.end() ? nullptr : *nearest;
}

// Minutes, rounded up.
int minutesUntil(const Alarm& alarm, Instant moment) {
    const qint64 seconds = alarm.secondsFromNow(moment);
    const qint64 minutes = seconds / 60 + (seconds % 60 == 0 ? 0 : 1);
    return int(std::clamp<qint64>(minutes, std::numeric_limits<int>::min(),
                                  std::numeric_limits<int>::max()));
}

} // namespace

StatusView::StatusView(RunLoop& runLoop, Clock& clock, NotificationCenter& notifications,
                       StatusItem& item)
    : m_runLoop(runLoop), m_clock(clock), m_notifications(notifications), m_item(item) {
    m_item.setPressed([this] {
        mouseDown();
        mouseUp();
    });
    // The wedge is to look as if it were drawn ten times a second, but which alarm is the nearest
    // and how far off it is can only change right after a whole second of the wall clock. So one
    // pass a second is enough, on the same wake-up as the clock's tick. In the default mode: while
    // our menu is open the icon stands still.
    const QDateTime now = m_runLoop.now();
    m_refreshTimer = m_runLoop.scheduleAligned(
        now.addMSecs(1000 - now.time().msec()), 1s, [this] { updateStatusView(); },
        RunLoopMode::Default);
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
    m_wedge = {end, std::min(duration, 60)};
    display();
}

// A panel answers every icon with a round of messages, so it hears of a change only.
void StatusView::display() {
    if (m_shown && *m_shown == m_wedge)
        return;
    m_shown = m_wedge;
    m_item.setIcon(m_picture.icon(m_wedge));
}

// At launch and in the editor several changes come in a row: one pass serves them all.
void StatusView::updateSoon() {
    m_updateTimer = m_runLoop.scheduleOnce(
        0ms, [this] { updateStatusView(); }, RunLoopMode::Default);
}

void StatusView::updateStatusView() {
    const Instant moment = rightAfterWholeSecond(instantOf(m_runLoop.now()));
    const AlarmPtr nearest = nearestAlarm(m_clock, moment);
    showToolTip(nearest);
    if (m_flashTimer)
        return;
    if (nearest)
        setAngleEnd(nearest->minute(), minutesUntil(*nearest, moment));
    else
        setAngleEnd(0, 0);
}

// Nothing that counts down: it would have to be sent to the panel every second or minute.
void StatusView::showToolTip(const AlarmPtr& nearest) {
    QString text = QStringLiteral("Dorvane");
    if (nearest) {
        constexpr int longestTitle = 60;
        const QString title = oneLine(nearest->title(), longestTitle);
        text = dayTimeString(nearest->time(), m_runLoop.now());
        if (!title.isEmpty())
            text += QStringLiteral(" \u2013 ") + title;
    }
    if (text == m_toolTip)
        return;
    m_toolTip = text;
    m_item.setToolTip(text);
}

void StatusView::startFlashing() {
    if (m_flashTimer)
        return;
    m_flashPhase = true;
    m_item.setNeedsAttention(true);
    m_flashTimer = m_runLoop.scheduleRepeating(
        1s, [this] { flash(); }, RunLoopMode::Default);
}

void StatusView::flash() {
    setAngleEnd(0, m_flashPhase ? 60 : 0);
    m_flashPhase = !m_flashPhase;
}

void StatusView::stopFlashing() {
    if (!m_flashTimer)
        return;
    m_flashTimer.cancel();
    m_item.setNeedsAttention(false);
    m_action = {};
    setAngleEnd(0, 0);
    updateSoon();
}

void StatusView::mouseDown() {
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

QPoint StatusView::placeFor(QSize window) const {
    return m_item.placeFor(window);
}

} // namespace dorvane
