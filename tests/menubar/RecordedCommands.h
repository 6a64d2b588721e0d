// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "menubar/MenuCommands.h"
#include "tests/support/Testing.h"

namespace dorvane::testing {

// Commands that write down their names and arguments.
inline MenuCommands recordedCommands(QStringList& trace) {
    const auto plain = [&trace](const char* name) {
        return [&trace, name] { trace << QLatin1String(name); };
    };
    const auto onAlarm = [&trace](const char* name) {
        return [&trace, name](const AlarmPtr& alarm) {
            trace << QLatin1String(name) + u' ' + alarm->title();
        };
    };
    return {
        .createAlarm = plain("createAlarm"),
        .showAlarms = plain("showAlarms"),
        .createPreAlarm = [&trace](int minutes) { trace << u"createPreAlarm %1"_qs.arg(minutes); },
        .quick = plain("quick"),
        .editAlarm = onAlarm("editAlarm"),
        .clearFromMenu = onAlarm("clearFromMenu"),
        .saveFromMenu = onAlarm("saveFromMenu"),
        .deleteAlarm = onAlarm("deleteAlarm"),
        .setAlarm = onAlarm("setAlarm"),
        .clearAll = plain("clearAll"),
        .skipNext = onAlarm("skipNext"),
        .pauseAlarms = [&trace](int days) { trace << u"pauseAlarms %1"_qs.arg(days); },
        .resumeAlarms = plain("resumeAlarms"),
        .createRespito = plain("createRespito"),
        .startRespito = plain("startRespito"),
        .stopRespito = plain("stopRespito"),
        .openPrefs = plain("openPrefs"),
        .showGoogleHelp = plain("showGoogleHelp"),
        .terminate = plain("terminate")};
}

} // namespace dorvane::testing
