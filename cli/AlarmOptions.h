// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/RemoteCommands.h"
#include "core/WrittenInterval.h"

#include <QLocale>
#include <QVariantMap>

#include <variant>

namespace dorvane {

// The options with which the terminal describes an alarm, read as the editor reads what is typed.
[[nodiscard]] std::vector<CommandOption> alarmOptions(const CommandServices& services);

// What they say of an alarm that is set at `now`, as docs/bus.md describes it; or what is wrong
// with them, for whoever typed them. Of one that is `edited` they may leave out what they like.
[[nodiscard]] std::variant<QVariantMap, QString>
readAlarmOptions(const QCommandLineParser& parser, const QLocale& territory, const QDateTime& now,
                 const std::optional<QVariantMap>& edited = {});

// A fault of the program's with the option that says it in the place of the key of docs/bus.md.
[[nodiscard]] QString inOptions(const QString& reason);

// The length as a description has it.
void insertInterval(const WrittenInterval& interval, QVariantMap& alarm);

// What lengths of time can be typed, for the message about another.
[[nodiscard]] QString intervalFault(const QString& what, const QString& typed);

} // namespace dorvane
