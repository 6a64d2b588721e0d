// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/QtRunLoop.h"

#include <algorithm>
#include <ctime>
#include <optional>
#include <vector>

namespace dorvane {

namespace {

// QTimer counts in an int; a longer wait is armed in pieces.
constexpr std::chrono::milliseconds longestWait = std::chrono::hours(24);
constexpr std::chrono::milliseconds longestBlindness = std::chrono::seconds(1);

WallClock::Moment momentOf(const QDateTime& date) {
    return WallClock::Moment(std::chrono::milliseconds(date.toMSecsSinceEpoch()));
}

WallClock::Moment wallNow() {
    return WallClock::Moment(std::chrono::milliseconds(QDateTime::currentMSecsSinceEpoch()));
}

} // namespace

class QtRunLoop::Entry {
public:
    enum class Kind { Uptime, Wall, ClockSet };

    Kind kind = Kind::Uptime;
    RunLoopMode mode = RunLoopMode::Default;
    Callback callback;
    Milliseconds interval{0}; // zero: fires once
    Milliseconds deadline{0}; // of uptime
    WallClock::Moment moment;
    bool done = false;
};

class QtRunLoop::EntryRegistration final : public RunLoopTimer::Registration {
public:
    EntryRegistration(Lifeline<QtRunLoop>::Weak loop, Id id) : m_loop(std::move(loop)), m_id(id) {}
    EntryRegistration(const EntryRegistration&) = delete;
    EntryRegistration& operator=(const EntryRegistration&) = delete;
    ~EntryRegistration() override {
        if (QtRunLoop* const loop = m_loop.get())
            loop->remove(m_id);
    }

private:
    Lifeline<QtRunLoop>::Weak m_loop;
    Id m_id;
};

QtRunLoop::QtRunLoop()
    : m_wallClock({.reached = [this] { fireDue(); }, .wasSet = [this] { clockWasSet(); }}) {
    m_uptime.start();
    m_wake.setSingleShot(true);
    m_wake.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_wake, &QTimer::timeout, &m_context, [this] { fireDue(); });
    arm();
}

QtRunLoop::~QtRunLoop() = default;

QDateTime QtRunLoop::now() const {
    return QDateTime::currentDateTime();
}

RunLoop::Milliseconds QtRunLoop::uptime() const {
    return Milliseconds(m_uptime.elapsed());
}

RunLoop::Milliseconds QtRunLoop::sinceBoot() const {
    timespec time{};
    ::clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::duration_cast<Milliseconds>(std::chrono::seconds(time.tv_sec) +
                                                    std::chrono::nanoseconds(time.tv_nsec));
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

RunLoopTimer QtRunLoop::scheduleAt(const QDateTime& moment, Callback callback, RunLoopMode mode) {
    auto entry = std::make_shared<Entry>();
    entry->kind = Entry::Kind::Wall;
    entry->mode = mode;
    entry->callback = std::move(callback);
    entry->moment = momentOf(moment);
    return add(std::move(entry));
}

RunLoopTimer QtRunLoop::whenClockIsSet(Callback callback) {
    auto entry = std::make_shared<Entry>();
    entry->kind = Entry::Kind::ClockSet;
    entry->callback = std::move(callback);
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
    return RunLoopTimer(std::make_unique<EntryRegistration>(m_lifeline.weak(), id));
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
    return entry.kind != Entry::Kind::ClockSet &&
           (entry.mode == RunLoopMode::Common || m_trackingDepth == 0);
}

RunLoop::Milliseconds QtRunLoop::leftOf(const Entry& entry, Milliseconds uptime,
                                        WallClock::Moment wall) {
    return entry.kind == Entry::Kind::Wall ? entry.moment - wall : entry.deadline - uptime;
}

void QtRunLoop::fireDue() {
    struct Due {
        Milliseconds left;
        Id id;
        std::shared_ptr<Entry> entry;
    };
    const Milliseconds uptimeNow = uptime();
    const WallClock::Moment wall = wallNow();
    std::vector<Due> due;
    for (const auto& [id, entry] : m_entries)
        if (const Milliseconds left = leftOf(*entry, uptimeNow, wall);
            mayFire(*entry) && left <= Milliseconds(0))
            due.push_back({left, id, entry});
    std::stable_sort(due.begin(), due.end(),
                     [](const Due& a, const Due& b) { return a.left < b.left; });

    for (const auto& [left, id, entry] : due) {
        // An earlier callback may have cancelled it, opened a menu, or run a loop of its own that
        // has fired it already.
        if (entry->done || !mayFire(*entry) || leftOf(*entry, uptimeNow, wall) > Milliseconds(0))
            continue;
        if (entry->interval > Milliseconds(0)) {
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

void QtRunLoop::clockWasSet() {
    std::vector<std::shared_ptr<Entry>> listeners;
    for (const auto& [id, entry] : m_entries)
        if (entry->kind == Entry::Kind::ClockSet)
            listeners.push_back(entry);
    for (const auto& entry : listeners)
        if (!entry->done)
            entry->callback();
    fireDue();
}

void QtRunLoop::arm() {
    const Milliseconds uptimeNow = uptime();
    Milliseconds earliest = Milliseconds::max();
    std::optional<WallClock::Moment> moment;
    for (const auto& [id, entry] : m_entries) {
        if (!mayFire(*entry))
            continue;
        if (entry->kind == Entry::Kind::Uptime)
            earliest = std::min(earliest, entry->deadline - uptimeNow);
        else
            moment = std::min(moment.value_or(entry->moment), entry->moment);
    }
    // Where the kernel does not tell, an alarm is worth a look a second.
    if (!m_wallClock.wakeAt(moment) && moment)
        earliest = std::min(earliest, longestBlindness);
    if (earliest == Milliseconds::max())
        m_wake.stop();
    else
        m_wake.start(std::clamp(earliest, Milliseconds(0), longestWait));
}

} // namespace dorvane
