// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/NotificationCenter.h"

#include <vector>

namespace dorvane {

struct NotificationCenter::Entry {
    QString name;
    Handler handler;
    Sender sender;
};

struct NotificationCenter::Entries {
    std::vector<std::weak_ptr<Entry>> list;
};

NotificationCenter::NotificationCenter() : m_entries(std::make_unique<Entries>()) {}

NotificationCenter::~NotificationCenter() = default;

NotificationCenter::Observation NotificationCenter::addObserver(const QString& name,
                                                                Handler handler, Sender sender) {
    auto entry = std::make_shared<Entry>(Entry{name, std::move(handler), sender});
    m_entries->list.push_back(entry);
    return Observation(std::move(entry));
}

void NotificationCenter::post(const QString& name, Sender sender) {
    std::erase_if(m_entries->list, [](const auto& entry) { return entry.expired(); });
    const auto registered = m_entries->list;
    for (const auto& weak : registered) {
        const auto entry = weak.lock();
        if (entry && entry->name == name && (!entry->sender || entry->sender == sender))
            entry->handler(sender);
    }
}

} // namespace dorvane
