// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/StatusPlacement.h"

#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

// A second screen to the left, so that nothing relies on an origin at zero.
const QRect full(-1280, 0, 1280, 800);
const ScreenArea topPanel{full, full.adjusted(0, 30, 0, 0)};
const ScreenArea bottomPanel{full, full.adjusted(0, 0, 0, -30)};
const ScreenArea leftPanel{full, full.adjusted(40, 0, 0, 0)};
const ScreenArea rightPanel{full, full.adjusted(0, 0, -40, 0)};
const ScreenArea topAndDock{full, full.adjusted(0, 30, 0, -60)};
const ScreenArea bare{full, full};

TEST(StatusPlacementTest, windowsHangFromTheIconAwayFromThePanel) {
    constexpr QSize window(200, 80);
    const struct {
        const char* name;
        QRect icon;
        ScreenArea screen;
        QPoint place;
    } cases[] = {
        {"below a panel at the top", {-400, 4, 22, 22}, topPanel, {-400, 30}},
        {"not beyond the right edge", {-30, 4, 22, 22}, topPanel, {-200, 30}},
        {"above a panel at the bottom", {-400, 774, 22, 22}, bottomPanel, {-400, 690}},
        {"beside a panel on the left", {-1271, 700, 22, 22}, leftPanel, {-1240, 700}},
        {"a panel that reserves no place", {-30, 776, 22, 22}, bare, {-200, 696}},
        {"a clock floating in the lower half", {-700, 500, 54, 54}, topPanel, {-700, 420}},
        {"icon unknown, panel at the top", {}, topPanel, {-200, 30}},
        {"icon unknown, panel on the right", {}, rightPanel, {-240, 720}},
        {"icon unknown, a dock below too", {}, topAndDock, {-200, 30}},
        {"icon unknown, no panel", {}, bare, {-200, 0}},
    };
    for (const auto& each : cases)
        EXPECT_EQ(hangingPlace(each.icon, window, each.screen), each.place) << each.name;
    EXPECT_EQ(hangingPlace({-400, 4, 22, 22}, {3000, 2000}, topPanel), QPoint(-1280, 30))
        << "a window that is too large shows its beginning";
}

TEST(StatusPlacementTest, aClickTellsWhereTheIconIsOnlyWhereAPanelCanBe) {
    const struct {
        const char* name;
        QPoint click;
        ScreenArea screen;
        QRect icon;
    } cases[] = {
        {"across a panel at the top", {-100, 3}, topPanel, {-111, 0, 22, 30}},
        {"across a panel at the bottom", {-100, 799}, bottomPanel, {-111, 770, 22, 30}},
        {"chosen with the keyboard, the pointer elsewhere", {-600, 400}, topPanel, {}},
        {"a panel that hides itself", {-600, 790}, bare, {-611, 779, 22, 21}},
        {"the middle of a bare screen", {-600, 400}, bare, {}},
    };
    for (const auto& each : cases)
        EXPECT_EQ(iconAroundClick(each.click, each.screen), each.icon) << each.name;
}

TEST(StatusPlacementTest, theFloatingClockIsAlwaysWithinReach) {
    const QRect other(0, 0, 1000, 600);
    const struct {
        const char* name;
        std::optional<QPoint> wanted;
        QPoint place;
    } cases[] = {
        {"top right of the first screen at first", std::nullopt, {-66, 94}},
        {"out from under the panel", QPoint(-500, 2), {-500, 30}},
        {"half over the edge", QPoint(970, 580), {946, 546}},
        {"on a screen that is gone", QPoint(2500, 300), {-66, 94}},
    };
    for (const auto& each : cases)
        EXPECT_EQ(floatingPlace(each.wanted, {54, 54}, {topPanel, {other, other}}), each.place)
            << each.name;
}

TEST(StatusPlacementTest, withTheIconUnknownThingsOpenOnTheScreenThatHasThePanel) {
    const QRect left(-800, 0, 800, 600);
    const QRect primary(0, 0, 1000, 800);
    const QRect below(0, 800, 1000, 600);
    const struct {
        const char* name;
        QList<QRect> panels;
        QRect icon;
        ScreenArea screen;
    } cases[] = {
        {"no panel: the primary one", {}, {}, {primary, primary}},
        {"at the bottom of another", {{0, 1370, 1000, 30}}, {}, {below, {0, 800, 1000, 570}}},
        {"on all", {{0, 0, 1000, 30}, {-800, 0, 800, 30}}, {}, {primary, {0, 30, 1000, 770}}},
        {"in the middle: no panel", {{0, 400, 1000, 30}}, {}, {primary, primary}},
        {"the icon known", {{-800, 0, 800, 30}}, {500, 900, 22, 22}, {below, below}},
        {"the icon nowhere", {{-800, 0, 800, 30}}, {5000, 0, 22, 22}, {primary, primary}},
    };
    for (const auto& each : cases) {
        QList<ScreenArea> screens{{primary, primary}, {left, left}, {below, below}};
        for (ScreenArea& screen : screens)
            for (const QRect& panel : each.panels)
                screen = withPanel(screen, panel);
        const ScreenArea found = screenOf(each.icon, screens);
        EXPECT_EQ(found.full, each.screen.full) << each.name;
        EXPECT_EQ(found.available, each.screen.available) << each.name;
    }
}

} // namespace
