// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/QtRunLoop.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace dorvane {

namespace {

// QTimer counts in an int; a longer wait is armed in pieces.
constexpr std::chrono::milliseconds longestWait = std::chrono::hours(24);

} // namespace

class QtRunLoop::Entry {
public:
    RunLoopMode mode = RunLoopMode::Default;
    Callback callback;
    Milliseconds interval{0};           // zero: fires once
    std::optional<QDateTime> gridStart; // set: the grid lies on the wall clock
    QDateTime gridTarget;
    Milliseconds deadline{0}; // of uptime
    bool done = false;

    // Puts the deadline on the next wall-clock grid moment after `wall`.
    void alignAfter(const QDateTime& wall, Milliseconds uptime) {
        const qint64 since = gridStart->msecsTo(wall);
        const qint64 steps = since < 0 ? 0 : since / interval.count() + 1;
        gridTarget = gridStart->addMSecs(steps * interval.count());
        deadline = uptime + Milliseconds(wall.msecsTo(gridTarget));
    }
};

class QtRunLoop::EntryRegistration final : public RunLoopTimer::Registration {
public:
    EntryRegistration(std::weak_ptr<QtRunLoop*> loop, Id id) : m_loop(std::move(loop)), m_id(id) {}
    EntryRegistration(const EntryRegistration&) = delete;
    EntryRegistration& operator=(const EntryRegistration&) = delete;
    ~EntryRegistration() override {
        if (const auto loop = m_loop.lock())
            (*loop)->remove(m_id);
    }

private:
    std::weak_ptr<QtRunLoop*> m_loop;
    Id m_id;
};

QtRunLoop::QtRunLoop() : m_self(std::make_shared<QtRunLoop*>(this)) {
    m_uptime.start();
    m_wake.setSingleShot(true);
    m_wake.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_wake, &QTimer::timeout, &m_context, [this] { fireDue(); });
}

QtRunLoop::~QtRunLoop() = default;

QDateTime QtRunLoop::now() const {
    return QDateTime::currentDateTime();
}

RunLoop::Milliseconds QtRunLoop::uptime() const {
    return Milliseconds(m_uptime.elapsed());
}

RunLoopTimer QtRunLoop::scheduleOnce(Milliseconds delay, Callback callback, RunLoopMode mode) {
    auto entry = std::make_shared<Entry>();
    entry->mode = mode;
    entry->callback = std::move(callback);
    entry->deadline = uptime() + std::max(delay, Milliseconds(0));
    return add(std::move(entry));
}

RunLoopTimer QtRunLoop::scheduleRepeating(Milliseconds interval, Callback callback,
                                          RunLoopMode mode) {
    auto entry = std::make_shared<Entry>();
    entry->mode = mode;
    entry->callback = std::move(callback);
    entry->interval = std::max(interval, Milliseconds(1));
    entry->deadline = uptime() + entry->interval;
    return add(std::move(entry));
}

RunLoopTimer QtRunLoop::scheduleAligned(const QDateTime& first, Milliseconds interval,
                                        Callback callback, RunLoopMode mode) {
    auto entry = std::make_shared<Entry>();
    entry->mode = mode;
    entry->callback = std::move(callback);
    entry->interval = std::max(interval, Milliseconds(1));
    entry->gridStart = first;
    entry->gridTarget = first;
    entry->deadline = uptime() + std::max(Milliseconds(now().msecsTo(first)), Milliseconds(0));
    return add(std::move(entry));
}

void QtRunLoop::defer(Callback callback) {
    post(std::move(callback));
}

void QtRunLoop::post(Callback callback) {
    QMetaObject::invokeMethod(&m_context, std::move(callback), Qt::QueuedConnection);
}

void QtRunLoop::beginEventTracking() {
    ++m_trackingDepth;
    arm();
}

void QtRunLoop::endEventTracking() {
    m_trackingDepth = std::max(0, m_trackingDepth - 1);
    arm();
}

RunLoopTimer QtRunLoop::add(std::shared_ptr<Entry> entry) {
    const Id id = m_nextId++;
    m_entries.emplace(id, std::move(entry));
    arm();
    return RunLoopTimer(std::make_unique<EntryRegistration>(m_self, id));
}

void QtRunLoop::remove(Id id) {
    const auto found = m_entries.find(id);
    if (found == m_entries.end())
        return;
    found->second->done = true;
    // The callback, and what it owns, goes only after the map is whole again.
    const auto entry = std::move(found->second);
    m_entries.erase(found);
    arm();
}

bool QtRunLoop::mayFire(const Entry& entry) const {
    return entry.mode == RunLoopMode::Common || m_trackingDepth == 0;
}

void QtRunLoop::fireDue() {
    const Milliseconds uptimeNow = uptime();
    std::vector<std::pair<Id, std::shared_ptr<Entry>>> due;
    for (const auto& [id, entry] : m_entries)
        if (mayFire(*entry) && entry->deadline <= uptimeNow)
            due.emplace_back(id, entry);
    std::stable_sort(due.begin(), due.end(), [](const auto& a, const auto& b) {
        return a.second->deadline < b.second->deadline;
    });

    for (const auto& [id, entry] : due) {
        // An earlier callback may have cancelled it, opened a menu, or run a loop of its own that
        // has fired it already.
        if (entry->done || !mayFire(*entry) || entry->deadline > uptimeNow)
            continue;
        if (entry->gridStart) {
            const QDateTime wall = now();
            const bool early = wall < entry->gridTarget &&
                               wall.msecsTo(entry->gridTarget) < entry->interval.count();
            if (early) { // uptime and wall clock round differently
                entry->deadline = uptime() + Milliseconds(wall.msecsTo(entry->gridTarget));
                continue;
            }
            entry->alignAfter(wall, uptime());
        } else if (entry->interval > Milliseconds(0)) {
            const auto missed = (uptime() - entry->deadline) / entry->interval;
            entry->deadline += entry->interval * (missed + 1);
        } else {
            entry->done = true;
            m_entries.erase(id);
        }
        arm(); // before the callback, which may run a loop of its own
        entry->callback();
    }
    arm();
}

void QtRunLoop::arm() {
    Milliseconds earliest = Milliseconds::max();
    for (const auto& [id, entry] : m_entries)
        if (mayFire(*entry))
            earliest = std::min(earliest, entry->deadline);
    if (earliest == Milliseconds::max()) {
        m_wake.stop();
        return;
    }
    m_wake.start(std::clamp(earliest - uptime(), Milliseconds(0), longestWait));
}

} // namespace dorvane
