// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/bus/ServedBus.h"
#include "platform/linux/session/ApplicationObject.h"
#include "platform/linux/session/InstanceLock.h"

#include <QString>

#include <functional>
#include <optional>

namespace dorvane {

// Sees to it that a user has one instance of the program: by its name on the session bus, or by a
// lock file where there is no bus. A further launch hands its request to the instance that runs.
// Works before there is an application object; main thread only.
class SingleInstance {
public:
    // The bus must outlive it. `lockFolder` is only the user's to write, such as lockFolder().
    SingleInstance(ServedBus& sessionBus, QString lockFolder);

    enum class Standing {
        First,     // this instance is the one that runs
        Answered,  // another one runs and has taken the request
        Unanswered // another one runs but did not take the request within two seconds
    };

    // Called once. Waits for the bus, and for the other instance where there is one.
    [[nodiscard]] Standing claim(const LaunchRequest& request);

    // In the first instance, once there is an application object and before its loop runs:
    // `requested` is called on the main thread for the request of each further launch. From here on
    // the bus is served; what was asked since the claim has waited.
    void setRequested(std::function<void(const LaunchRequest&)> requested);

    // $XDG_RUNTIME_DIR, else `caches`.
    [[nodiscard]] static QString lockFolder(const QString& caches);

private:
    enum class Reply { Taken, Silent, Gone };

    [[nodiscard]] std::optional<Standing> claimOnBus(const LaunchRequest& request);
    [[nodiscard]] Standing claimLock(const LaunchRequest& request);
    [[nodiscard]] Reply askOnBus(const LaunchRequest& request) const;

    ServedBus& m_bus;
    QString m_lockFolder;
    ApplicationObject m_object;
    std::optional<InstanceLock> m_lock; // without a bus
};

} // namespace dorvane
