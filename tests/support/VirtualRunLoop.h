// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/RunLoop.h"

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>

namespace dorvane::testing {

// A run loop whose time moves only when a test says so. Callbacks that fall on the same moment run
// in the order in which they were scheduled.
class VirtualRunLoop final : public RunLoop {
public:
    explicit VirtualRunLoop(const QDateTime& start);
    ~VirtualRunLoop() override;

    [[nodiscard]] QDateTime now() const override;
    [[nodiscard]] Milliseconds uptime() const override { return m_uptime; }
    [[nodiscard]] Milliseconds sinceBoot() const override { return m_uptime + m_slept; }
    [[nodiscard]] RunLoopTimer scheduleOnce(Milliseconds delay, Callback callback,
                                            RunLoopMode mode) override;
    [[nodiscard]] RunLoopTimer scheduleRepeating(Milliseconds interval, Callback callback,
                                                 RunLoopMode mode) override;
    [[nodiscard]] RunLoopTimer scheduleAt(const QDateTime& moment, Callback callback,
                                          RunLoopMode mode) override;
    [[nodiscard]] RunLoopTimer whenClockIsSet(Callback callback) override;
    void defer(Callback callback) override {
        const std::lock_guard lock(m_mutex);
        m_deferred.push_back(std::move(callback));
    }
    void post(Callback callback) override { defer(std::move(callback)); }
    void beginEventTracking() override { ++m_trackingDepth; }
    void endEventTracking() override { --m_trackingDepth; }

    // Lets time pass; lands exactly on now() + duration.
    void advance(Milliseconds duration);

    // Runs what is due at this moment and everything deferred.
    void runPending() { advance(Milliseconds(0)); }

    // The wall clock goes on by `duration` while nothing runs; then `woken` is called.
    void sleepMachine(Milliseconds duration);
    void setWoken(Callback woken) { m_woken = std::move(woken); }

    // From now on no moment of the wall clock is reported: a machine whose timers forget theirs.
    void forgetMoments() { m_forgetsMoments = true; }

    // Sets the wall clock and says so; also for a zone that was changed.
    void setWall(const QDateTime& wall);

    // How many callbacks of timers have run: what a real loop would have woken up for.
    [[nodiscard]] std::int64_t firings() const { return m_firings; }

private:
    struct Entry;
    class EntryRegistration;
    using Id = std::uint64_t;

    [[nodiscard]] RunLoopTimer add(Entry entry);
    [[nodiscard]] Milliseconds dueTime(const Entry& entry) const;
    [[nodiscard]] std::shared_ptr<Entry> nextDue(Milliseconds until) const;
    void fire(const std::shared_ptr<Entry>& entry);
    void runDeferred();

    Milliseconds m_wallAtZero; // since the epoch, at uptime 0
    Milliseconds m_uptime{0};
    Milliseconds m_slept{0};
    std::map<Id, std::shared_ptr<Entry>> m_entries;
    std::mutex m_mutex;
    std::deque<Callback> m_deferred; // guarded by the mutex
    Callback m_woken;
    Lifeline<VirtualRunLoop> m_lifeline{*this};
    Id m_nextId = 1;
    int m_trackingDepth = 0;
    bool m_forgetsMoments = false;
    std::int64_t m_firings = 0;
};

} // namespace dorvane::testing
