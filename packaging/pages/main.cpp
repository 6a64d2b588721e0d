// SPDX-License-Identifier: GPL-3.0-or-later
// Writes what the pages of the project tell of the commands of the terminal and the methods on the
// bus, from their tables; with --check only tells which pages are behind.
#include "cli/CommandPages.h"
#include "cli/RemoteCommands.h"

#include <QDir>
#include <QFile>

#include <cstdio>

using namespace dorvane;

int main(int argc, char** argv) {
    const bool isCheck = argc > 2 && qstrcmp(argv[2], "--check") == 0;
    const QDir root(QString::fromLocal8Bit(argc > 1 ? argv[1] : "."));
    const auto table = allCommands({});
    const struct {
        const char* path;
        const char* part;
        QString text;
    } parts[] = {
        {"packaging/dorvane.1", "synopsis", manSynopsis(table)},
        {"packaging/dorvane.1", "commands", manCommands(table)},
        {"resources/manual/command.html", "commands", manualCommands(table)},
        {"docs/bus.md", "methods", busMethods()},
    };
    int faults = 0;
    for (const auto& part : parts) {
        QFile file(root.filePath(QString::fromLatin1(part.path)));
        const QString before =
            file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        file.close();
        const QString page = withPart(before, QString::fromLatin1(part.part), part.text);
        if (page == before && !page.isNull())
            continue;
        const bool isWritten = !isCheck && !page.isNull() && file.open(QIODevice::WriteOnly) &&
                               file.write(page.toUtf8()) >= 0;
        std::printf("%s, %s: %s\n", part.path, part.part,
                    isWritten ? "written" : "not as the table has it; build the target `pages`");
        faults += isWritten ? 0 : 1;
    }
    return faults == 0 ? 0 : 1;
}
