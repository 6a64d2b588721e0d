// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/SnoozeWindowStack.h"

#include "firing/SnoozeWindowController.h"
#include "firing/WindowPlace.h"

#include <QGuiApplication>
#include <QRect>
#include <QScreen>

#include <algorithm>

namespace dorvane {

namespace {

constexpr int gap = 4;

// One direction of the grid: how many windows stand from the first one to the screen's edge on the
// side where there is more room, and how far apart.
struct Line {
    int count = 1;
    int step = 0;
};

Line lineFrom(int first, int extent, int areaBegin, int areaEnd) {
    const int before = first - areaBegin;
    const int after = areaEnd - (first + extent);
    const int pitch = extent + gap;
    return {1 + std::max({before, after, 0}) / pitch, after >= before ? pitch : -pitch};
}

} // namespace

QPoint SnoozeWindowStack::nextPlace(QSize window) const {
    const QPoint first = m_place.placeFor(window);
    const QScreen* screen = QGuiApplication::screenAt(QRect(first, window).center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect area = screen->availableGeometry();
    const Line rows = lineFrom(first.y(), window.height(), area.top(), area.top() + area.height());
    const Line columns =
        lineFrom(first.x(), window.width(), area.left(), area.left() + area.width());
    const int slot = int(freeSlot());
    // On a full screen the next ones lie on the first, a little aside, so that they are seen.
    const int layer = slot / (rows.count * columns.count);
    constexpr int aside = 12;
    return first +
           QPoint(slot / rows.count % columns.count * columns.step, slot % rows.count * rows.step) +
           QPoint(layer % 5, layer % 5) * aside;
}

void SnoozeWindowStack::add(SnoozeWindowController& window) {
    const std::size_t slot = freeSlot();
    m_slots.resize(std::max(m_slots.size(), slot + 1));
    m_slots[slot] = &window;
}

void SnoozeWindowStack::remove(const SnoozeWindowController& window) {
    std::replace_if(
        m_slots.begin(), m_slots.end(), [&](const auto* slot) { return slot == &window; }, nullptr);
    const auto next = std::find_if(m_slots.begin(), m_slots.end(), [](auto* slot) { return slot; });
    if (window.hasKeyboard() && next != m_slots.end())
        (*next)->takeKeyboard();
}

bool SnoozeWindowStack::hasKeyboard() const {
    return std::any_of(m_slots.begin(), m_slots.end(),
                       [](const auto* slot) { return slot && slot->hasKeyboard(); });
}

std::size_t SnoozeWindowStack::freeSlot() const {
    return std::size_t(std::find(m_slots.begin(), m_slots.end(), nullptr) - m_slots.begin());
}

} // namespace dorvane
