// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

// A moment of the wall clock that is ten seconds ahead, and what happens after three of them.
TEST(VirtualRunLoopTest, momentOfTheWallClockComesWhereverTheClockGoes) {
    const struct {
        const char* what;
        std::function<void(VirtualRunLoop&)> happens;
        std::int64_t expected; // uptime
    } cases[] = {
        {"nothing", [](auto&) {}, 10'000},
        {"set forward past it", [](auto& loop) { loop.setWall(at("2026-11-21 09:00")); }, 3000},
        {"set forward onto it", [](auto& loop) { loop.setWall(at("2026-11-21 08:00:10")); }, 3000},
        {"set forward short of it", [](auto& loop) { loop.setWall(at("2026-11-21 08:00:09")); },
         4000},
        {"set back, to before the start", [](auto& loop) { loop.setWall(at("2026-11-21 07:59")); },
         73'000},
        {"slept through", [](auto& loop) { loop.sleepMachine(8h); }, 3000},
        {"slept short of it", [](auto& loop) { loop.sleepMachine(5s); }, 5000},
        {"a menu was open",
         [](auto& loop) {
             loop.beginEventTracking();
             loop.advance(40s);
             loop.endEventTracking();
         },
         43'000},
    };
    for (const auto& c : cases) {
        VirtualRunLoop loop(at("2026-11-21 08:00"));
        QList<std::int64_t> fired;
        const auto timer = loop.scheduleAt(
            at("2026-11-21 08:00:10"), [&] { fired << loop.uptime().count(); },
            RunLoopMode::Default);
        loop.advance(3s);
        c.happens(loop);
        loop.advance(100s);
        EXPECT_EQ(fired, QList{c.expected}) << c.what;
    }
}

} // namespace
