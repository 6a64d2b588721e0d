// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QSocketNotifier;

namespace dorvane {

// What the kernel tells of the wall clock: that it has reached a moment, and that somebody set it
// or linked another zone. Costs nothing while neither happens. Main thread only, needs the
// application object.
class WallClock {
public:
    // Milliseconds since the epoch.
    using Moment = std::chrono::sys_time<std::chrono::milliseconds>;

    struct Callbacks {
        std::function<void()> reached; // the moment asked for, or one before it: look at the clock
        std::function<void()> wasSet;  // the moment asked for is forgotten: ask again
    };

    // `zoneLink` names the zone of the machine.
    explicit WallClock(Callbacks callbacks, const char* zoneLink = "/etc/localtime");
    ~WallClock();
    WallClock(const WallClock&) = delete;
    WallClock& operator=(const WallClock&) = delete;

    // The one moment to tell of, in place of the one before; none to hear only of a clock that was
    // set. False when the kernel refuses: then the caller has to look at the clock itself.
    [[nodiscard]] bool wakeAt(std::optional<Moment> moment);

private:
    void readTimer();
    void readFolder();

    Callbacks m_callbacks;
    QByteArray m_zoneLinkName;
    QObject m_context;
    std::unique_ptr<QSocketNotifier> m_timer;
    std::unique_ptr<QSocketNotifier> m_folder;
};

} // namespace dorvane
