// SPDX-License-Identifier: GPL-3.0-or-later
// What opening the window of all alarms costs, for the first time and again, with half of the
// alarms running and half of them only stored.

#include "core/Clock.h"
#include "overview/AlarmsWindow.h"
#include "tests/support/VirtualRunLoop.h"

#include <QApplication>

#include <benchmark/benchmark.h>

using namespace dorvane;

namespace {

struct Alarms {
    explicit Alarms(int count) {
        for (int i = 0; i < count; ++i) {
            const AlarmPtr alarm = Alarm::initWithTime(loop.now().addSecs(3600 + 60 * i),
                                                       QStringLiteral("Alarm number %1").arg(i));
            alarm->setIsTimeWithDate(true);
            alarm->setShouldUseEveryDay(i % 3 == 0);
            if (i % 2 == 0)
                clock.insertAlarm(alarm);
            else
                stored.push_back(alarm);
        }
    }
    AlarmsWindow::Surroundings surroundings() {
        return {.runLoop = loop,
                .notifications = notifications,
                .running = [this] { return clock.allAlarms(); },
                .stored = [this] { return stored; },
                .summary = [] { return QString(); },
                .create = {},
                .edit = {},
                .switchOn = {},
                .switchOff = {},
                .skip = {},
                .duplicate = {},
                .remove = {},
                .undo = {},
                .undoable = [] { return std::optional<QString>(); }};
    }

    testing::VirtualRunLoop loop{QDateTime(QDate(2026, 11, 21), QTime(8, 0))};
    NotificationCenter notifications;
    Clock clock{loop, notifications};
    std::vector<AlarmPtr> stored;
};

void openAlarms(benchmark::State& state) {
    Alarms alarms(int(state.range(0)));
    while (state.KeepRunning()) {
        AlarmsWindow window(alarms.surroundings());
        window.present();
        QApplication::processEvents();
    }
}

BENCHMARK(openAlarms)->Arg(500)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
