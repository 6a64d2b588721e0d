// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"

#include <functional>
#include <optional>

namespace dorvane {

// Whether somebody is there: uses the keyboard or the mouse, in a session that is not locked. Main
// thread only.
class Presence {
public:
    virtual ~Presence() = default;

    // Begins to listen; a second call changes nothing. Before it, nothing is known and nothing
    // costs.
    virtual void watch() = 0;

    // Called each time that one of the answers below has become another.
    virtual void setChanged(std::function<void()> changed) = 0;

    // Whether anything here tells at all.
    [[nodiscard]] virtual bool isKnown() const = 0;

    // Since when nobody is there, by RunLoop::sinceBoot(); nothing while somebody is. It is told of
    // somebody who does nothing only after a minute or more.
    [[nodiscard]] virtual std::optional<RunLoop::Milliseconds> awaySince() const = 0;
};

} // namespace dorvane
