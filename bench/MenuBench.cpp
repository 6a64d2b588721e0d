// SPDX-License-Identifier: GPL-3.0-or-later
// What opening the menu costs: building it anew and showing it, with two hundred alarms.

#include "core/Clock.h"
#include "menubar/MainMenuConstructor.h"
#include "menubar/StatusMenu.h"
#include "tests/support/FakeStatusItem.h"
#include "tests/support/VirtualRunLoop.h"

#include <QApplication>

#include <benchmark/benchmark.h>

using namespace dorvane;

namespace {

void openMenu(benchmark::State& state) {
    testing::VirtualRunLoop loop(QDateTime(QDate(2026, 11, 21), QTime(8, 0)));
    NotificationCenter notifications;
    Clock clock(loop, notifications);
    std::vector<AlarmPtr> stored;
    for (int i = 0; i < int(state.range(0)); ++i) {
        const AlarmPtr alarm = Alarm::initWithTime(loop.now().addSecs(3600 + i),
                                                   QStringLiteral("Alarm number %1").arg(i));
        alarm->setIsTimeWithDate(true);
        alarm->setIsExisInActiveAlarmList(true);
        if (i % 2 == 0)
            clock.insertAlarm(alarm);
        else
            stored.push_back(alarm);
    }
    testing::FakeStatusItem item;
    MainMenuConstructor constructor(
        loop, clock, notifications, item,
        {.storedAlarms = [&] { return std::optional(stored); }, .breaksRun = {}}, MenuCommands());
    StatusMenu menu(loop);
    constructor.setObjectMenu(&menu);
    while (state.KeepRunning()) {
        // Something changed since the last time: the menu cannot be shown as it is.
        clock.insertAlarm(clock.allAlarms().back());
        constructor.constructMenu();
        menu.popup(QPoint(100, 20));
        QApplication::processEvents();
        state.PauseTiming();
        menu.hide();
        state.ResumeTiming();
    }
}

BENCHMARK(openMenu)->Arg(200)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
