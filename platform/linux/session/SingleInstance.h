// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/bus/ServedBus.h"
#include "platform/linux/session/ApplicationObject.h"
#include "platform/linux/session/InstanceLock.h"
#include "platform/RunLoop.h"

#include <QString>

#include <functional>

namespace dorvane {

// Sees to it that a user has one instance of the program: by a lock file, which is held whether
// there is a bus or not, and by its name on the session bus, where the lock file lies elsewhere for
// the other one. A further launch hands its request to the instance that runs, and takes the place
// of one that is ending.
// Works before there is an application object; main thread only.
class SingleInstance {
public:
    // The bus must outlive it. `lockFolder` is only the user's to write, such as lockFolder().
    SingleInstance(ServedBus& sessionBus, const QString& lockFolder);

    enum class Standing {
        First,     // this instance is the one that runs
        Answered,  // another one runs and has taken the request
        Unanswered // another one runs but did not take the request within two seconds, or does
                   // not end
    };

    // Called once. Waits for the bus, and for the other instance where there is one.
    [[nodiscard]] Standing claim(const LaunchRequest& request);

    // In the first instance, once there is an application object and before its loop runs:
    // `requested` is called on the main thread for the request of each further launch. From here on
    // the bus is served; what was asked since the claim has waited.
    void setRequested(std::function<void(const LaunchRequest&)> requested);

    // When the bus dies it is joined again, under the name, once it is back, which is looked for
    // ever more seldom. `joined` is called each time. The run loop must outlive this.
    void stayOnBus(RunLoop& runLoop, std::function<void()> joined);

    // When the program ends: requests are for whoever comes next, who waits until this process has
    // gone.
    void leave();

    // $XDG_RUNTIME_DIR, else `caches`.
    [[nodiscard]] static QString lockFolder(const QString& caches);

private:
    enum class Reply { Taken, Silent, Gone };

    [[nodiscard]] Standing claimOnBus(const LaunchRequest& request);
    [[nodiscard]] Reply askOnBus(const LaunchRequest& request) const;
    static int named(sd_bus_message* answer, void* data, sd_bus_error* error); // called by sd-bus

    ServedBus& m_bus;
    ApplicationObject m_object;
    InstanceLock m_lock;
    std::function<void()> m_joined;
    RunLoop::Milliseconds m_pause{0}; // until the next look for a bus that is gone
    RunLoopTimer m_look;
};

} // namespace dorvane
