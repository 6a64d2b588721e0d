// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/SnoozeWindowStack.h"

#include "firing/SnoozeWindowController.h"
#include "firing/WindowPlace.h"
#include "platform/RunLoop.h"

#include <QGuiApplication>
#include <QRect>
#include <QScreen>

#include <algorithm>

namespace dorvane {

namespace {

constexpr int gap = 4;

// From so many on it is a toil to answer them one by one.
constexpr std::size_t manyAlarms = 3;

// One direction of the grid: where windows stand, the first place first, then those on the side
// where there is more room, then those on the other.
std::vector<int> lineFrom(int first, int extent, int areaBegin, int areaEnd) {
    const int pitch = extent + gap;
    const int before = std::max(0, first - areaBegin) / pitch;
    const int after = std::max(0, areaEnd - (first + extent)) / pitch;
    std::vector<int> line{first};
    const auto add = [&](int count, int step) {
        for (int i = 1; i <= count; ++i)
            line.push_back(first + i * step);
    };
    add(after >= before ? after : before, after >= before ? pitch : -pitch);
    add(after >= before ? before : after, after >= before ? -pitch : pitch);
    return line;
}

} // namespace

std::vector<QPoint> SnoozeWindowStack::placesFor(QSize window) const {
    const QPoint first = m_place.placeFor(window);
    const QScreen* screen = QGuiApplication::screenAt(QRect(first, window).center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect area = screen->availableGeometry();
    std::vector<QPoint> places;
    for (const int x : lineFrom(first.x(), window.width(), area.left(), area.left() + area.width()))
        for (const int y :
             lineFrom(first.y(), window.height(), area.top(), area.top() + area.height()))
            places.emplace_back(x, y);
    return places;
}

void SnoozeWindowStack::add(SnoozeWindowController& window) {
    m_waiting.push_back(&window);
    offerClearAll();
    showWaiting();
}

void SnoozeWindowStack::showWaiting() {
    if (m_waiting.empty())
        return;
    if (!m_place.makeWay(m_lifeline.guard([](SnoozeWindowStack& self) { self.showWaiting(); })))
        return;
    const std::vector<QPoint> places = placesFor(m_waiting.front()->size());
    m_slots.resize(std::max(m_slots.size(), places.size()));
    for (std::size_t slot = 0; slot < places.size() && !m_waiting.empty(); ++slot) {
        if (m_slots[slot])
            continue;
        SnoozeWindowController& window = *m_waiting.front();
        m_waiting.pop_front();
        // Who is about to answer another one goes on with that.
        const bool takesKeyboard = !hasKeyboard();
        m_slots[slot] = &window;
        window.showAt(places[slot], takesKeyboard);
    }
}

void SnoozeWindowStack::remove(SnoozeWindowController& window, Left how) {
    std::erase(m_waiting, &window);
    std::replace_if(
        m_slots.begin(), m_slots.end(), [&](const auto* slot) { return slot == &window; }, nullptr);
    const auto next = std::find_if(m_slots.begin(), m_slots.end(), [](auto* slot) { return slot; });
    if (window.hasKeyboard() && next != m_slots.end())
        (*next)->takeKeyboard(how == Left::Answered);
    offerClearAll();
    // Later: the others may be about to go as well.
    m_runLoop.defer(m_lifeline.guard([](SnoozeWindowStack& self) { self.showWaiting(); }));
}

bool SnoozeWindowStack::hasKeyboard() const {
    return std::any_of(m_slots.begin(), m_slots.end(),
                       [](const auto* slot) { return slot && slot->hasKeyboard(); });
}

void SnoozeWindowStack::offerClearAll() {
    const auto shown =
        m_slots.size() - std::size_t(std::count(m_slots.begin(), m_slots.end(), nullptr));
    const auto offer = [isOffered = shown + m_waiting.size() >= manyAlarms](auto* window) {
        if (window)
            window->setOffersClearAll(isOffered);
    };
    std::for_each(m_slots.begin(), m_slots.end(), offer);
    std::for_each(m_waiting.begin(), m_waiting.end(), offer);
}

} // namespace dorvane
