// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"

#include <QString>

#include <string>
#include <vector>

namespace dorvane::testing {

// What happened, in order, each with its time: "1500 Ping.aiff play" is 1.5 s of uptime after the
// trace was made. Several fakes may write to one trace, so that a test compares everything that
// happened at once and an extra event fails too.
class Trace {
public:
    explicit Trace(const RunLoop& loop) : m_loop(loop), m_start(loop.uptime()) {}

    void add(const QString& event) {
        m_events.push_back(std::to_string((m_loop.uptime() - m_start).count()) + " " +
                           event.toStdString());
    }

    [[nodiscard]] const std::vector<std::string>& events() const { return m_events; }

    // What began to sound, and when: "60000 tea".
    [[nodiscard]] std::vector<std::string> plays() const {
        std::vector<std::string> found;
        for (const std::string& event : m_events)
            if (event.ends_with(" play"))
                found.push_back(event.substr(0, event.size() - 5));
        return found;
    }

    // Forgets what happened so far; times go on counting from the same start.
    void clear() { m_events.clear(); }

private:
    const RunLoop& m_loop;
    RunLoop::Milliseconds m_start;
    std::vector<std::string> m_events;
};

} // namespace dorvane::testing
