// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

namespace dorvane {

// When a timer may fire. While a menu of our own is open the loop is in its event-tracking mode:
// Default timers then stand still and catch up when the menu closes, Common timers go on.
enum class RunLoopMode { Default, Common };

// A scheduled timer. Owns the registration: destroying or cancelling the handle cancels the timer,
// also from inside its own callback. Move-only; main thread only.
class RunLoopTimer {
public:
    // What a run loop keeps for one timer; its destructor takes the timer off the loop.
    class Registration {
    public:
        virtual ~Registration() = default;
    };

    RunLoopTimer() = default;
    explicit RunLoopTimer(std::unique_ptr<Registration> registration)
        : m_registration(std::move(registration)) {}

    void cancel() { m_registration.reset(); }

    // True from scheduling until cancel(); a one-shot timer stays set after it fired.
    explicit operator bool() const { return m_registration != nullptr; }

private:
    std::unique_ptr<Registration> m_registration;
};

// The main thread's loop, and the only source of time. A timer is a hint: whether something is due
// is decided from now() when the timer fires. All members belong to the main thread but post().
class RunLoop {
public:
    using Callback = std::function<void()>;
    using Milliseconds = std::chrono::milliseconds;

    virtual ~RunLoop() = default;

    // The wall clock in local time, to the millisecond. Jumps when the clock is set.
    [[nodiscard]] virtual QDateTime now() const = 0;

    // Time since an arbitrary start that never jumps and stands still while the machine sleeps.
    [[nodiscard]] virtual Milliseconds uptime() const = 0;

    // Time since the machine was booted, its sleep included; never jumps.
    [[nodiscard]] virtual Milliseconds sinceBoot() const = 0;

    // Fires once, `delay` (of uptime) from now; a negative delay counts as zero. Never fires from
    // inside this call.
    [[nodiscard]] virtual RunLoopTimer scheduleOnce(Milliseconds delay, Callback callback,
                                                    RunLoopMode mode = RunLoopMode::Default) = 0;

    // Fires every `interval` (of uptime, at least 1 ms), first after one interval. Firings that
    // were missed are dropped, not made up for.
    [[nodiscard]] virtual RunLoopTimer
    scheduleRepeating(Milliseconds interval, Callback callback,
                      RunLoopMode mode = RunLoopMode::Default) = 0;

    // Fires once, when the wall clock shows `moment` or has been set past it, and never before it
    // by now(): at once when it is past already, right after waking when the machine slept through
    // it.
    [[nodiscard]] virtual RunLoopTimer scheduleAt(const QDateTime& moment, Callback callback,
                                                  RunLoopMode mode = RunLoopMode::Default) = 0;

    // Calls back, in any mode, each time that the wall clock was set or the zone changed, and
    // perhaps after a sleep; scheduleAt() needs no help of it.
    [[nodiscard]] virtual RunLoopTimer whenClockIsSet(Callback callback) = 0;

    // Runs `callback` in the next turn of the loop, in any mode, in the order of the calls.
    virtual void defer(Callback callback) = 0;

    // defer() for other threads.
    virtual void post(Callback callback) = 0;

    // Brackets the time a menu of ours is open; calls nest.
    virtual void beginEventTracking() = 0;
    virtual void endEventTracking() = 0;
};

} // namespace dorvane
