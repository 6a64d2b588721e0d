// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MissedCommand.h"

#include "app/Announce.h"
#include "app/StatePaths.h"
#include "cli/Console.h"
#include "journal/JournalFormat.h"
#include "journal/MissedReport.h"
#include "platform/linux/folders/XdgFolders.h"
#include "platform/linux/preferences/PlainFile.h"
#include "platform/linux/preferences/PropertyListCodec.h"
#include "platform/linux/session/QtRunLoop.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

namespace dorvane {

namespace {

bool isDorvaneRunning() {
    const auto bus = QDBusConnection::sessionBus();
    return bus.isConnected() &&
           bus.interface()->isServiceRegistered(QStringLiteral("com.brackenfold.Dorvane"));
}

} // namespace

ExitStatus runMissed(const QCommandLineParser& /*parser*/) {
    const QString path = journalPath(xdgFolders());
    const PlainFile file = PlainFile::read(path);
    if (!file.error.isEmpty()) {
        writeFault(QStringLiteral("cannot read %1: %2").arg(path, file.error));
        return ExitStatus::Refused;
    }
    const PropertyListCodec propertyLists;
    const auto [journal, isComplete] = JournalFormat(propertyLists).decode(file.contents);
    if (!isComplete)
        writeFault(QStringLiteral("%1 is damaged; some may be missing").arg(path));
    const QStringList lines =
        missedReport(journal, isDorvaneRunning(), announcedAlarms(xdgFolders()), QtRunLoop().now());
    for (const QString& line : lines)
        writeLine(line);
    if (lines.isEmpty())
        writeLine(QStringLiteral("Nothing was missed."));
    return ExitStatus::Done;
}

} // namespace dorvane
