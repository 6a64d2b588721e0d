// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PanelMenuEntry.h"

#include <optional>
#include <vector>

namespace dorvane {

// A panel's menu in which every item has a number. An entry that stays keeps its number, and no
// number is used twice: what a panel has shown for a while still does what it says, or nothing.
class NumberedMenu {
public:
    struct Item {
        int number = 0;
        PanelMenuEntry entry; // without its children
        std::vector<Item> children;
    };

    // What a panel has to be told.
    struct Change {
        // The item below which others came, went or moved; the root when there are several such.
        std::optional<int> layout;
        std::vector<const Item*> looks; // items that look different; valid until the next show()
    };

    static constexpr int rootNumber = 0;

    // Shows these entries from now on.
    [[nodiscard]] Change show(std::vector<PanelMenuEntry> entries);

    [[nodiscard]] const Item& root() const { return m_root; }

    // Null when there is no item of this number, or none any more.
    [[nodiscard]] const Item* find(int number) const;

private:
    void replace(Item& item, std::vector<PanelMenuEntry> entries, Change& change);

    Item m_root;
    int m_lastNumber = rootNumber;
};

} // namespace dorvane
