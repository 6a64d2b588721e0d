// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace dorvane {

// One entry of a menu that a panel draws for us, with the entries of its submenu. An entry with
// children only opens them.
struct PanelMenuEntry {
    QString text; // as it is to be read; nothing in it marks a key

    // Which entry it is among its siblings, while texts change and others come and go: whom it
    // stands for, and a word of its own. Kept alive by the panel's menu, so that no other comes to
    // live at its address meanwhile.
    std::shared_ptr<const void> subject;
    QString key;

    bool isEnabled = false;
    bool isSeparator = false;
    std::function<void()> chosen; // called from the event loop
    std::vector<PanelMenuEntry> children;
};

} // namespace dorvane
