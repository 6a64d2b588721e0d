// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/linux/session/WallClock.h"
#include "platform/RunLoop.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <cstdint>
#include <map>

namespace dorvane {

// The run loop on Qt's event loop. All timers of uptime share one QTimer, and all of the wall clock
// one timer of the kernel, each armed for the earliest moment, so that timers which fall together
// cost one wake-up. Needs the application object; main thread only but for post().
class QtRunLoop final : public RunLoop {
public:
    QtRunLoop();
    ~QtRunLoop() override;

    [[nodiscard]] QDateTime now() const override;
    [[nodiscard]] Milliseconds uptime() const override;
    [[nodiscard]] Milliseconds sinceBoot() const override;
    [[nodiscard]] RunLoopTimer scheduleOnce(Milliseconds delay, Callback callback,
                                            RunLoopMode mode) override;
    [[nodiscard]] RunLoopTimer scheduleRepeating(Milliseconds interval, Callback callback,
                                                 RunLoopMode mode) override;
    [[nodiscard]] RunLoopTimer scheduleAt(const QDateTime& moment, Callback callback,
                                          RunLoopMode mode) override;
    [[nodiscard]] RunLoopTimer whenClockIsSet(Callback callback) override;
    void defer(Callback callback) override;
    void post(Callback callback) override;
    void beginEventTracking() override;
    void endEventTracking() override;

private:
    class Entry;
    class EntryRegistration;
    using Id = std::uint64_t;

    [[nodiscard]] RunLoopTimer add(std::shared_ptr<Entry> entry);
    void remove(Id id);
    void fireDue();
    void clockWasSet();
    void arm();
    [[nodiscard]] bool mayFire(const Entry& entry) const;
    [[nodiscard]] static Milliseconds leftOf(const Entry& entry, Milliseconds uptime,
                                             WallClock::Moment wall);

    QObject m_context;
    QTimer m_wake;
    WallClock m_wallClock;
    QElapsedTimer m_uptime;
    std::map<Id, std::shared_ptr<Entry>> m_entries;
    // Expires with the loop, so that a timer handle may outlive it.
    Lifeline<QtRunLoop> m_lifeline{*this};
    Id m_nextId = 1;
    int m_trackingDepth = 0;
};

} // namespace dorvane
