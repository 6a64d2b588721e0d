// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/VirtualRunLoop.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace dorvane::testing {

struct VirtualRunLoop::Entry {
    Id id = 0;
    RunLoopMode mode = RunLoopMode::Default;
    Callback callback;
    Milliseconds interval{0};
    std::optional<QDateTime> gridStart;
    Milliseconds deadline{0};
    bool done = false;
};

class VirtualRunLoop::EntryRegistration final : public RunLoopTimer::Registration {
public:
    EntryRegistration(std::weak_ptr<VirtualRunLoop*> loop, Id id)
        : m_loop(std::move(loop)), m_id(id) {}
    EntryRegistration(const EntryRegistration&) = delete;
    EntryRegistration& operator=(const EntryRegistration&) = delete;
    ~EntryRegistration() override {
        const auto loop = m_loop.lock();
        if (!loop)
            return;
        auto node = (*loop)->m_entries.extract(m_id);
        if (!node.empty())
            node.mapped()->done = true;
    }

private:
    std::weak_ptr<VirtualRunLoop*> m_loop;
    Id m_id;
};

VirtualRunLoop::VirtualRunLoop(const QDateTime& start)
    : m_wallAtZero(start.toMSecsSinceEpoch()), m_self(std::make_shared<VirtualRunLoop*>(this)) {}

VirtualRunLoop::~VirtualRunLoop() = default;

QDateTime VirtualRunLoop::now() const {
    return QDateTime::fromMSecsSinceEpoch(m_wallAtZero + m_uptime.count());
}

RunLoopTimer VirtualRunLoop::scheduleOnce(Milliseconds delay, Callback callback, RunLoopMode mode) {
    auto entry = std::make_shared<Entry>();
    entry->mode = mode;
    entry->callback = std::move(callback);
    entry->deadline = m_uptime + std::max(delay, Milliseconds(0));
    return add(std::move(entry));
}

RunLoopTimer VirtualRunLoop::scheduleRepeating(Milliseconds interval, Callback callback,
                                               RunLoopMode mode) {
    auto entry = std::make_shared<Entry>();
    entry->mode = mode;
    entry->callback = std::move(callback);
    entry->interval = std::max(interval, Milliseconds(1));
    entry->deadline = m_uptime + entry->interval;
    return add(std::move(entry));
}

RunLoopTimer VirtualRunLoop::scheduleAligned(const QDateTime& first, Milliseconds interval,
                                             Callback callback, RunLoopMode mode) {
    auto entry = std::make_shared<Entry>();
    entry->mode = mode;
    entry->callback = std::move(callback);
    entry->interval = std::max(interval, Milliseconds(1));
    entry->gridStart = first;
    entry->deadline = m_uptime + std::max(Milliseconds(now().msecsTo(first)), Milliseconds(0));
    return add(std::move(entry));
}

void VirtualRunLoop::defer(Callback callback) {
    m_deferred.push_back(std::move(callback));
}

void VirtualRunLoop::post(Callback callback) {
    defer(std::move(callback));
}

void VirtualRunLoop::advance(Milliseconds duration) {
    const Milliseconds until = m_uptime + duration;
    m_stepsInAdvance = 0;
    runDeferred();
    while (const auto entry = nextDue(until)) {
        m_uptime = std::max(m_uptime, entry->deadline);
        fire(*entry);
        runDeferred();
    }
    m_uptime = until;
}

void VirtualRunLoop::sleepMachine(Milliseconds duration) {
    m_wallAtZero += duration.count();
    if (m_woken)
        m_woken();
    runPending();
}

void VirtualRunLoop::setWall(const QDateTime& wall) {
    m_wallAtZero = wall.toMSecsSinceEpoch() - m_uptime.count();
}

RunLoopTimer VirtualRunLoop::add(std::shared_ptr<Entry> entry) {
    entry->id = m_nextId++;
    const Id id = entry->id;
    m_entries.emplace(id, std::move(entry));
    return RunLoopTimer(std::make_unique<EntryRegistration>(m_self, id));
}

std::shared_ptr<VirtualRunLoop::Entry> VirtualRunLoop::nextDue(Milliseconds until) {
    std::shared_ptr<Entry> best;
    for (const auto& [id, entry] : m_entries) {
        const bool mayFire = entry->mode == RunLoopMode::Common || m_trackingDepth == 0;
        if (mayFire && entry->deadline <= until && (!best || entry->deadline < best->deadline))
            best = entry;
    }
    return best;
}

void VirtualRunLoop::fire(Entry& entry) {
    countStep();
    ++m_firings;
    if (entry.gridStart) {
        const qint64 since = entry.gridStart->msecsTo(now());
        const qint64 steps = since < 0 ? 0 : since / entry.interval.count() + 1;
        const QDateTime target = entry.gridStart->addMSecs(steps * entry.interval.count());
        entry.deadline = m_uptime + Milliseconds(now().msecsTo(target));
    } else if (entry.interval > Milliseconds(0)) {
        const auto missed = (m_uptime - entry.deadline) / entry.interval;
        entry.deadline += entry.interval * (missed + 1);
    } else {
        m_entries.erase(entry.id);
    }
    const Callback callback = entry.callback;
    callback();
}

void VirtualRunLoop::runDeferred() {
    while (!m_deferred.empty()) {
        countStep();
        const Callback callback = std::move(m_deferred.front());
        m_deferred.pop_front();
        callback();
    }
}

void VirtualRunLoop::countStep() {
    constexpr std::int64_t storm = 1'000'000;
    if (++m_stepsInAdvance > storm)
        throw std::runtime_error("timer storm: more than a million callbacks in one advance()");
}

} // namespace dorvane::testing
