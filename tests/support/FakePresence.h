// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Presence.h"

#include <utility>

namespace dorvane::testing {

// Somebody who goes and comes when the test says so.
class FakePresence final : public Presence {
public:
    explicit FakePresence(const RunLoop& loop) : m_loop(loop) {}

    void watch() override {}
    void setChanged(std::function<void()> changed) override { m_changed = std::move(changed); }
    [[nodiscard]] bool isKnown() const override { return known; }
    [[nodiscard]] std::optional<RunLoop::Milliseconds> awaySince() const override { return m_away; }

    // Somebody who does nothing is noticed a minute later.
    void leave() { set(m_loop.sinceBoot() - std::chrono::minutes(1)); }
    void comeBack() { set(std::nullopt); }

    bool known = true;

private:
    void set(std::optional<RunLoop::Milliseconds> away) {
        m_away = away;
        if (m_changed)
            m_changed();
    }

    const RunLoop& m_loop;
    std::function<void()> m_changed;
    std::optional<RunLoop::Milliseconds> m_away;
};

} // namespace dorvane::testing
