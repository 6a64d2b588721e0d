// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/AddedSound.h"

#include "sounds/SoundName.h"

#include <QStringList>

namespace dorvane {

QString messageAbout(const std::vector<AddedSound>& sounds) {
    QStringList added;
    QStringList refused;
    for (const AddedSound& sound : sounds) {
        const QString name = shortened(sound.name);
        if (sound.problem.isEmpty())
            added << name;
        else
            refused << QStringLiteral("“%1” was not added: %2.").arg(name, sound.problem);
    }
    QStringList lines;
    if (added.size() == 1)
        lines << QStringLiteral("Added “%1” – choose it under User Sound Library.")
                     .arg(added.first());
    else if (!added.isEmpty())
        lines << QStringLiteral("Added %1 sounds – choose them under User Sound Library.")
                     .arg(added.size());
    if (!refused.isEmpty())
        lines << refused.first();
    if (refused.size() > 1)
        lines << QStringLiteral("%1 more could not be added.").arg(refused.size() - 1);
    return lines.join(QLatin1Char('\n'));
}

} // namespace dorvane
