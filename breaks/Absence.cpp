// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/Absence.h"

#include "breaks/BreakOutlook.h"
#include "core/NotificationNames.h"
#include "platform/Presence.h"

#include <algorithm>
#include <utility>

namespace dorvane {

Absence::Absence(RunLoop& runLoop, Presence& presence, NotificationCenter& notifications,
                 std::function<void(RunLoop::Milliseconds length)> returned)
    : m_runLoop(runLoop)
    , m_presence(presence)
    , m_notifications(notifications)
    , m_returned(std::move(returned))
    , m_since(presence.awaySince())
    , m_slept(slept()) {
    m_presence.setChanged([this] { presenceChanged(); });
    m_wakeObservation =
        m_notifications.addObserver(wakeNotification, [this](const void*) { woke(); });
}

Absence::~Absence() {
    m_presence.setChanged({});
}

void Absence::presenceChanged() {
    const auto before = std::exchange(m_since, m_presence.awaySince());
    if (before && !m_since)
        m_returned(m_runLoop.sinceBoot() - *before);
    // A source that noticed it first may be the first to see the person come back, too.
    if (before && m_since)
        m_since = std::min(*before, *m_since);
    m_notifications.post(breaksDidChangeNotification, this);
}

// A sleep within an absence is part of it.
void Absence::woke() {
    const auto before = std::exchange(m_slept, slept());
    if (!m_since)
        m_returned(m_slept - before);
}

RunLoop::Milliseconds Absence::slept() const {
    return m_runLoop.sinceBoot() - m_runLoop.uptime();
}

} // namespace dorvane
