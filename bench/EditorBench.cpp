// SPDX-License-Identifier: GPL-3.0-or-later
// What a large library costs the editor: to open, and when one alarm of it changes meanwhile. And
// its sound menu with thousands of files.

#include "tests/editor/EditorFixture.h"

#include <QApplication>
#include <QFile>
#include <QMenu>

#include <benchmark/benchmark.h>

using namespace dorvane;
using namespace dorvane::testing;

namespace {

// Stores so many alarms and answers the first.
AlarmPtr fillLibrary(EditorFixture& fixture, qint64 count) {
    std::vector<AlarmPtr> alarms;
    for (qint64 i = 0; i < count; ++i)
        alarms.push_back(Alarm::initWithTime(fixture.loop.now().addSecs(60 * i),
                                             QStringLiteral("Alarm number %1").arg(i)));
    fixture.library.put(alarms, instantNow(fixture.loop));
    return alarms.front();
}

void openEditor(benchmark::State& state) {
    EditorFixture fixture("2026-11-21 08:00");
    fillLibrary(fixture, state.range(0));
    while (state.KeepRunning()) {
        AlarmSetController editor(fixture.services());
        editor.showWithAlarm(nullptr);
        QApplication::processEvents();
    }
}

void changeAlarm(benchmark::State& state) {
    EditorFixture fixture("2026-11-21 08:00");
    const AlarmPtr alarm = fillLibrary(fixture, state.range(0));
    fixture.editor.showWithAlarm(alarm);
    while (state.KeepRunning()) {
        alarm->setRingWithinUnits(alarm->ringWithinUnits() + 1);
        fixture.library.put(*alarm, instantNow(fixture.loop));
    }
}

void soundMenu(benchmark::State& state) {
    EditorFixture fixture("2026-11-21 08:00");
    const QString folder = fixture.storage.storedSoundsPath() + QStringLiteral("Sounds/");
    for (int i = 0; i < int(state.range(0)); ++i) {
        QFile file(folder + QStringLiteral("Sound number %1.mp3").arg(i));
        if (!file.open(QIODevice::WriteOnly))
            state.SkipWithError("cannot write a sound file");
    }
    QMenu menu;
    while (state.KeepRunning()) {
        fixture.storage.fillMenuWithAddedSounds(menu, [](const QString&) {});
        benchmark::DoNotOptimize(menu.sizeHint());
    }
}

BENCHMARK(openEditor)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(changeAlarm)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(soundMenu)->Arg(5000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
