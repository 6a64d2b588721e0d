// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QSocketNotifier>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace dorvane {

struct LaunchRequest;

// One instance a user, whatever becomes of the message bus: a locked file, and beside it a socket
// on which the instance that holds the lock takes requests. The system lets go of the lock when the
// process ends, in whatever way.
class InstanceLock {
public:
    // Works in `folder`, which is made when it is missing.
    explicit InstanceLock(const QString& folder);
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    // False when another instance holds the lock. True as well when no lock can be had, which is
    // logged: two icons are better than none.
    [[nodiscard]] bool acquire();

    enum class Answer {
        Taken,
        Silent, // it is there and did not take the request
        Gone    // it has ended: the lock can be had
    };
    struct Patience {
        std::chrono::milliseconds answer; // for one that listens
        std::chrono::milliseconds end;    // for one that does not any more: it waits for the disk
    };
    // From the instance that did not get the lock: waits for the other one to take the request, or
    // to end.
    [[nodiscard]] Answer ask(const LaunchRequest& request, Patience patience);

    // In the instance that holds the lock, with an application object: calls `requested` on the
    // main thread for each request, those that came since acquire() included.
    void listen(std::function<void(const LaunchRequest&)> requested);

    // From now on nobody is listened to; the lock is held until the object goes.
    void stopListening();

private:
    [[nodiscard]] bool take();
    void openSocket();
    void receive(const std::function<void(const LaunchRequest&)>& requested) const;

    QByteArray m_lockPath; // as file names are on the disk
    QByteArray m_socketPath;
    bool m_isHeld = false;
    int m_lock = -1; // file descriptors
    int m_socket = -1;
    std::optional<QSocketNotifier> m_notifier;
};

} // namespace dorvane
