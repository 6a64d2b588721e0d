// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "breaks/BreakCycle.h"
#include "breaks/ClockBreaks.h"
#include "breaks/PendixRespitoWindowsController.h"
#include "breaks/PendixTakeABreakSettings.h"
#include "breaks/RespitoAudioPlayerController.h"
#include "core/NotificationNames.h"
#include "platform/Bundle.h"
#include "platform/linux/preferences/PropertyListCodec.h"
#include "sounds/AudioStorageController.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/FakePresence.h"
#include "tests/support/FakeSoundOutput.h"
#include "tests/support/MemoryDefaults.h"

namespace dorvane::testing {

// The break reminder with its cycle and its window, on a desktop of fakes; `makeSheet` says what a
// break looks like.
struct BreakRig : FakeDesktop {
    using MakeSheet = std::function<std::shared_ptr<BreakSheet>(BreakRig& rig)>;

    explicit BreakRig(MakeSheet sheets) : makeSheet(std::move(sheets)) {
        loop.setWoken([this] { notifications.post(wakeNotification); });
        settings.loadPrefs();
    }
    ~BreakRig() { loop.runPending(); }

    // As the menu, the bus and the terminal do, before there is a window.
    void start() {
        respito.enableRespito();
        cycle.enableRespito();
    }
    [[nodiscard]] bool isOn() {
        settings.loadPrefs();
        return settings.RespitoStatus() != 0;
    }

    const MakeSheet makeSheet;
    MemoryDefaults defaults;
    PropertyListCodec format;
    Bundle bundle{QStringLiteral(DORVANE_BUNDLE), {}};
    AudioStorageController library{loop, user, {}, player, workspace};
    RespitoAudioPlayerController track{loop, player, bundle};
    FakePresence presence{loop};
    FakeSoundOutput output{loop};
    PendixTakeABreakSettings settings{defaults, user, loop, notifications};
    ClockBreaks clock{loop, settings, defaults, player};
    BreakCycle cycle{{.runLoop = loop,
                      .settings = settings,
                      .player = player,
                      .output = output,
                      .notifications = notifications,
                      .presence = presence,
                      .track = u"track"_qs,
                      .makeSheet = [this] { return makeSheet(*this); }}};
    PendixRespitoWindowsController respito{
        {.runLoop = loop,
         .settings = settings,
         .cycle = cycle,
         .clock = clock,
         .presence = presence,
         .defaults = defaults,
         .notifications = notifications,
         .bundle = bundle,
         .propertyLists = format,
         .player = player,
         .library = library,
         .workspace = workspace,
         .audioPlayer = [this]() -> RespitoAudioPlayerController& { return track; },
         .showRecordingWindow = [this](const QWidget&) { trace.add(u"record"_qs); },
         .beep = [this] { trace.add(u"beep"_qs); }}};
};

} // namespace dorvane::testing
