// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/presence/AwaySource.h"
#include "platform/Presence.h"

#include <memory>
#include <vector>

namespace dorvane {

// Presence in a desktop session. Whoever is away to one of those who know is away: one of them sees
// a locked screen, another one hands that rest.
class SessionPresence final : public Presence {
public:
    using Sources = std::vector<std::unique_ptr<AwaySource>>;

    // `makeSources` is called when somebody watches first.
    explicit SessionPresence(std::function<Sources()> makeSources);

    void watch() override;
    void setChanged(std::function<void()> changed) override { m_changed = std::move(changed); }
    [[nodiscard]] bool isKnown() const override { return m_isKnown; }
    [[nodiscard]] std::optional<RunLoop::Milliseconds> awaySince() const override;

private:
    void told(std::size_t source, std::optional<RunLoop::Milliseconds> awaySince);

    const std::function<Sources()> m_makeSources;
    std::vector<std::optional<RunLoop::Milliseconds>> m_away; // to each of the sources
    bool m_isKnown = false;
    std::function<void()> m_changed;
    Sources m_sources;
};

// Those who may know in a session of today: logind, GNOME's shell, a Wayland compositor, an X
// server. The run loop must outlive them.
[[nodiscard]] SessionPresence::Sources awaySources(RunLoop& runLoop);

} // namespace dorvane
