// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/NumberedMenu.h"

#include <algorithm>
#include <utility>

namespace dorvane {

namespace {

using Item = NumberedMenu::Item;

bool isSame(const Item& item, const PanelMenuEntry& entry) {
    return item.number != NumberedMenu::rootNumber && item.entry.subject == entry.subject &&
           item.entry.key == entry.key && item.entry.isSeparator == entry.isSeparator &&
           item.children.empty() == entry.children.empty();
}

// Takes the old item that the entry carries on, which mostly follows the one taken last; an empty
// one for a new entry. Taken items have lost their number.
Item take(std::vector<Item>& old, std::size_t& next, const PanelMenuEntry& entry) {
    for (std::size_t i = 0; i < old.size(); ++i) {
        Item& candidate = old[(next + i) % old.size()];
        if (!isSame(candidate, entry))
            continue;
        next = (next + i + 1) % old.size();
        return std::exchange(candidate, {});
    }
    return {};
}

const Item* findBelow(const Item& item, int number) {
    if (item.number == number)
        return &item;
    for (const Item& child : item.children)
        if (const Item* found = findBelow(child, number))
            return found;
    return nullptr;
}

} // namespace

NumberedMenu::Change NumberedMenu::show(std::vector<PanelMenuEntry> entries) {
    Change change;
    replace(m_root, std::move(entries), change);
    return change;
}

void NumberedMenu::replace(Item& item, std::vector<PanelMenuEntry> entries, Change& change) {
    std::vector<Item> old = std::move(item.children);
    std::vector<int> numbersBefore;
    numbersBefore.reserve(old.size());
    for (const Item& child : old)
        numbersBefore.push_back(child.number);

    item.children.clear();
    item.children.reserve(entries.size());
    std::size_t next = 0;
    for (PanelMenuEntry& entry : entries) {
        Item& child = item.children.emplace_back(take(old, next, entry));
        const bool isNew = child.number == rootNumber;
        if (isNew)
            child.number = ++m_lastNumber;
        else if (child.entry.text != entry.text || child.entry.isEnabled != entry.isEnabled)
            change.looks.push_back(&child);
        std::vector<PanelMenuEntry> grandchildren = std::exchange(entry.children, {});
        child.entry = std::move(entry);
        // What is below a new item comes with it.
        Change ignored;
        replace(child, std::move(grandchildren), isNew ? ignored : change);
    }
    const bool isSameLayout = std::equal(
        item.children.begin(), item.children.end(), numbersBefore.begin(), numbersBefore.end(),
        [](const Item& child, int number) { return child.number == number; });
    if (!isSameLayout)
        change.layout = change.layout ? rootNumber : item.number;
}

const NumberedMenu::Item* NumberedMenu::find(int number) const {
    return findBelow(m_root, number);
}

} // namespace dorvane
