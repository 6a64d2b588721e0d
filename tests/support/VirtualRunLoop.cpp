// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/VirtualRunLoop.h"

#include <algorithm>

namespace dorvane::testing {

namespace {

constexpr RunLoop::Milliseconds never = RunLoop::Milliseconds::max();

RunLoop::Milliseconds sinceEpoch(const QDateTime& moment) {
    return RunLoop::Milliseconds(moment.toMSecsSinceEpoch());
}

} // namespace

struct VirtualRunLoop::Entry {
    Callback callback;
    RunLoopMode mode = RunLoopMode::Default;
    Milliseconds uptime = never; // when it is due, by the one clock or by the other
    Milliseconds wall = never;
    Milliseconds interval{0};
    bool hearsOfSetting = false;
    Id id = 0;
};

class VirtualRunLoop::EntryRegistration final : public RunLoopTimer::Registration {
public:
    EntryRegistration(Lifeline<VirtualRunLoop>::Weak loop, Id id)
        : m_loop(std::move(loop)), m_id(id) {}
    EntryRegistration(const EntryRegistration&) = delete;
    EntryRegistration& operator=(const EntryRegistration&) = delete;
    ~EntryRegistration() override {
        if (VirtualRunLoop* const loop = m_loop.get())
            const auto gone = loop->m_entries.extract(m_id);
    }

private:
    Lifeline<VirtualRunLoop>::Weak m_loop;
    Id m_id;
};

VirtualRunLoop::VirtualRunLoop(const QDateTime& start) : m_wallAtZero(sinceEpoch(start)) {}

VirtualRunLoop::~VirtualRunLoop() = default;

QDateTime VirtualRunLoop::now() const {
    return QDateTime::fromMSecsSinceEpoch((m_wallAtZero + m_uptime).count());
}

RunLoopTimer VirtualRunLoop::scheduleOnce(Milliseconds delay, Callback callback, RunLoopMode mode) {
    return add({.callback = std::move(callback),
                .mode = mode,
                .uptime = m_uptime + std::max(delay, Milliseconds(0))});
}

RunLoopTimer VirtualRunLoop::scheduleRepeating(Milliseconds interval, Callback callback,
                                               RunLoopMode mode) {
    interval = std::max(interval, Milliseconds(1));
    return add({.callback = std::move(callback),
                .mode = mode,
                .uptime = m_uptime + interval,
                .interval = interval});
}

RunLoopTimer VirtualRunLoop::scheduleAt(const QDateTime& moment, Callback callback,
                                        RunLoopMode mode) {
    return add({.callback = std::move(callback), .mode = mode, .wall = sinceEpoch(moment)});
}

RunLoopTimer VirtualRunLoop::whenClockIsSet(Callback callback) {
    return add({.callback = std::move(callback), .hearsOfSetting = true});
}

void VirtualRunLoop::advance(Milliseconds duration) {
    const Milliseconds until = m_uptime + duration;
    runDeferred();
    while (const auto entry = nextDue(until)) {
        m_uptime = std::max(m_uptime, dueTime(*entry));
        fire(entry);
        runDeferred();
    }
    m_uptime = until;
}

void VirtualRunLoop::sleepMachine(Milliseconds duration) {
    m_wallAtZero += duration;
    m_slept += duration;
    if (m_woken)
        m_woken();
    runPending();
}

void VirtualRunLoop::setWall(const QDateTime& wall) {
    m_wallAtZero = sinceEpoch(wall) - m_uptime;
    for (const auto& [id, entry] : std::map(m_entries))
        if (entry->hearsOfSetting && m_entries.contains(id))
            entry->callback();
}

RunLoopTimer VirtualRunLoop::add(Entry entry) {
    const auto id = entry.id = m_nextId++;
    m_entries.emplace(id, std::make_shared<Entry>(std::move(entry)));
    return RunLoopTimer(std::make_unique<EntryRegistration>(m_lifeline.weak(), id));
}

RunLoop::Milliseconds VirtualRunLoop::dueTime(const Entry& entry) const {
    return entry.wall == never ? entry.uptime : entry.wall - m_wallAtZero;
}

std::shared_ptr<VirtualRunLoop::Entry> VirtualRunLoop::nextDue(Milliseconds until) const {
    std::shared_ptr<Entry> best;
    for (const auto& [id, entry] : m_entries) {
        const bool isForgotten = m_forgetsMoments && entry->wall != never;
        const bool mayFire =
            !isForgotten && (entry->mode == RunLoopMode::Common || m_trackingDepth == 0);
        if (mayFire && dueTime(*entry) <= until && (!best || dueTime(*entry) < dueTime(*best)))
            best = entry;
    }
    return best;
}

void VirtualRunLoop::fire(const std::shared_ptr<Entry>& entry) {
    ++m_firings;
    if (entry->interval > Milliseconds(0))
        entry->uptime += entry->interval * ((m_uptime - entry->uptime) / entry->interval + 1);
    else
        m_entries.erase(entry->id);
    entry->callback();
}

void VirtualRunLoop::runDeferred() {
    const auto next = [this]() -> Callback {
        const std::lock_guard lock(m_mutex);
        if (m_deferred.empty())
            return {};
        Callback callback = std::move(m_deferred.front());
        m_deferred.pop_front();
        return callback;
    };
    while (const Callback callback = next())
        callback();
}

} // namespace dorvane::testing
