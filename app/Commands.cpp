// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Commands.h"

#include "app/CheckCommand.h"
#include "app/MissedCommand.h"
#include "cli/RemoteCommands.h"
#include "platform/linux/control/BusProgram.h"
#include "platform/linux/folders/XdgFolders.h"
#include "platform/linux/session/QtRunLoop.h"
#include "sounds/SoundFolders.h"

#include <QDir>
#include <QFileInfo>

namespace dorvane {

namespace {

// Made when a command needs it, never destroyed: it must not outlive the application object.
RemoteProgram& program() {
    static auto* const program = new BusProgram(QDBusConnection::sessionBus());
    return *program;
}

QDateTime now() {
    static auto* const runLoop = new QtRunLoop;
    return runLoop->now();
}

QStringList soundNames() {
    const SoundFolders folders(xdgFolders());
    QStringList names;
    for (const QString& folder : {folders.sounds, folders.rings})
        for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files))
            names << file.completeBaseName();
    names.removeDuplicates();
    return names;
}

} // namespace

const std::vector<Command>& commands() {
    static const std::vector<Command> table = allCommands({.program = program,
                                                           .now = now,
                                                           .soundNames = soundNames,
                                                           .check = runCheck,
                                                           .missed = runMissed});
    return table;
}

} // namespace dorvane
