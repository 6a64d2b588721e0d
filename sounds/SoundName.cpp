// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/SoundName.h"

#include "sounds/ReminderFileName.h"
#include "sounds/SoundFolders.h"

#include <QFileInfo>

namespace dorvane {

QString soundName(const QString& path) {
    const QFileInfo file(path);
    const QString name = file.completeBaseName();
    return file.path().endsWith(SoundFolders::recordingsBelow) ? reminderText(name).simplified()
                                                               : name;
}

QString shortened(const QString& name) {
    constexpr qsizetype longest = 36;
    return name.size() <= longest ? name
                                  : name.left(longest / 2).trimmed() + QStringLiteral("…") +
                                        name.right(longest / 2 - 1).trimmed();
}

} // namespace dorvane
