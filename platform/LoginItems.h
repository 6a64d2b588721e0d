// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace dorvane {

// What the user's desktop starts at login. Main thread only.
class LoginItems {
public:
    struct Item {
        QString identity;   // names the item until the list changes
        QString bundlePath; // the folder of the program it starts, links resolved
    };

    virtual ~LoginItems() = default;

    // The items in a stable order. Those that are switched off, or whose program cannot be found,
    // are left out.
    [[nodiscard]] virtual std::vector<Item> snapshot() const = 0;

    // Has the program of a bundle started at login, in front of the others. False, with a line in
    // the log, when the list cannot be changed; it is then as it was.
    [[nodiscard]] virtual bool insertFirst(const QString& bundlePath) = 0;

    // Takes an item of the last snapshot out. False as for insertFirst().
    [[nodiscard]] virtual bool remove(const QString& identity) = 0;

    // Called after anybody changed the list.
    virtual void setChanged(std::function<void()> changed) = 0;
};

} // namespace dorvane
