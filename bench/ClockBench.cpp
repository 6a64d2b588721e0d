// SPDX-License-Identifier: GPL-3.0-or-later
// What ten thousand running alarms cost: a tick, and looking for the nearest.

#include "core/AlarmDelegate.h"
#include "core/Clock.h"
#include "tests/support/VirtualRunLoop.h"

#include <benchmark/benchmark.h>

using namespace dorvane;
using namespace std::chrono_literals;

namespace {

class NoDelegate final : public AlarmDelegate {
public:
    void alarmTriggered(const AlarmPtr&) override {}
};

struct ManyAlarms {
    explicit ManyAlarms(int count) {
        for (int i = 0; i < count; ++i) {
            const AlarmPtr alarm = Alarm::create();
            alarm->setSelRowNo(i % 3);
            alarm->setIsTimeWithDate(i % 3 == Alarm::Dated);
            alarm->setIsMinuteUnits(true);
            alarm->setRingWithinUnits(60 + i);
            alarm->setTime(loop.now().addSecs(3600 + i));
            alarm->setDelegate(&delegate);
            clock.insertAlarmAtIndex(alarm, 0);
        }
    }

    testing::VirtualRunLoop loop{QDateTime(QDate(2026, 11, 21), QTime(8, 0))};
    NotificationCenter notifications;
    Clock clock{loop, notifications};
    NoDelegate delegate;
};

void tick(benchmark::State& state) {
    ManyAlarms alarms(int(state.range(0)));
    while (state.KeepRunning())
        alarms.clock.runTimer();
}

void nearest(benchmark::State& state) {
    const ManyAlarms alarms(int(state.range(0)));
    while (state.KeepRunning())
        benchmark::DoNotOptimize(alarms.clock.nearestAlarm(instantNow(alarms.loop)));
}

BENCHMARK(tick)->Arg(10'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(nearest)->Arg(10'000)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
