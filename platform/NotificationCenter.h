// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace dorvane {

// Named announcements inside the process. Main thread only. Handlers run inside post(), in the
// order in which they were added; one that is added or removed meanwhile takes part from the next
// post() on, and a removed one is not called again.
class NotificationCenter {
    struct Entry;
    struct Entries;

public:
    // The sender is passed on as an identity only; the centre never looks into it.
    using Sender = const void*;
    using Handler = std::function<void(Sender sender)>;

    // Keeps a handler registered; destroying it removes the handler. May outlive the centre.
    class Observation {
    public:
        Observation() = default;

    private:
        friend class NotificationCenter;
        explicit Observation(std::shared_ptr<Entry> entry) : m_entry(std::move(entry)) {}
        std::shared_ptr<Entry> m_entry;
    };

    NotificationCenter();
    ~NotificationCenter();
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    // Calls `handler` for each post of `name`; with a `sender`, only for posts by that sender.
    [[nodiscard]] Observation addObserver(const QString& name, Handler handler,
                                          Sender sender = nullptr);

    void post(const QString& name, Sender sender = nullptr);

private:
    std::unique_ptr<Entries> m_entries;
};

} // namespace dorvane
