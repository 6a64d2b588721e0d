// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/presence/SessionPresence.h"

#include "platform/linux/presence/LogindSession.h"
#include "platform/linux/presence/MutterIdleMonitor.h"
#include "platform/linux/presence/WaylandIdleNotifier.h"
#include "platform/linux/presence/XIdleCounter.h"

#include <algorithm>
#include <utility>

namespace dorvane {

SessionPresence::SessionPresence(std::function<Sources()> makeSources)
    : m_makeSources(std::move(makeSources)) {}

void SessionPresence::watch() {
    if (!m_sources.empty())
        return;
    m_sources = m_makeSources();
    m_away.resize(m_sources.size());
    for (std::size_t i = 0; i < m_sources.size(); ++i)
        m_sources[i]->watch([this, i](auto awaySince) { told(i, awaySince); });
}

void SessionPresence::told(std::size_t source, std::optional<RunLoop::Milliseconds> awaySince) {
    const auto before = this->awaySince();
    const bool wasKnown = std::exchange(m_isKnown, true);
    m_away[source] = awaySince;
    if ((before != this->awaySince() || !wasKnown) && m_changed)
        m_changed();
}

std::optional<RunLoop::Milliseconds> SessionPresence::awaySince() const {
    std::optional<RunLoop::Milliseconds> earliest;
    for (const auto& away : m_away)
        if (away && (!earliest || *away < *earliest))
            earliest = away;
    return earliest;
}

// A session on Wayland has an X server, too, which sees its own windows alone: to it, whoever types
// elsewhere is away.
SessionPresence::Sources awaySources(RunLoop& runLoop) {
    SessionPresence::Sources sources;
    sources.push_back(std::make_unique<LogindSession>(runLoop, QDBusConnection::systemBus()));
    sources.push_back(std::make_unique<MutterIdleMonitor>(runLoop, QDBusConnection::sessionBus()));
    const bool isWayland =
        qEnvironmentVariableIsSet("WAYLAND_DISPLAY") || qgetenv("XDG_SESSION_TYPE") == "wayland";
    if (isWayland)
        sources.push_back(std::make_unique<WaylandIdleNotifier>(runLoop));
    else
        sources.push_back(std::make_unique<XIdleCounter>(runLoop));
    return sources;
}

} // namespace dorvane
