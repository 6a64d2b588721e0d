// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/linux/presence/AwaySource.h"

#include <QObject>

#include <memory>

class QSocketNotifier;

namespace dorvane {

// A Wayland compositor that speaks ext-idle-notify-v1, over a connection of its own: Qt hands its
// own out to nobody. What keeps the screen lit, a film for one, counts as somebody.
class WaylandIdleNotifier final : public QObject, public AwaySource {
public:
    // The run loop must outlive it.
    explicit WaylandIdleNotifier(RunLoop& runLoop);
    ~WaylandIdleNotifier() override;

    void watch(Told told) override;

private:
    struct Connection;
    void begin();
    void read();

    RunLoop& m_runLoop;
    Told m_told;
    std::unique_ptr<Connection> m_connection;
    std::unique_ptr<QSocketNotifier> m_notifier;
    Lifeline<WaylandIdleNotifier> m_lifeline{*this};
};

} // namespace dorvane
