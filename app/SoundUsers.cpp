// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SoundUsers.h"

#include "breaks/PendixTakeABreakSettings.h"
#include "core/Isolated.h"
#include "sounds/SoundName.h"

namespace dorvane {

namespace {

constexpr qsizetype mostNamed = 3;

} // namespace

QStringList usersOfSound(const QString& path, const std::vector<AlarmPtr>& alarms,
                         const PendixTakeABreakSettings& breaks) {
    QStringList users;
    for (const AlarmPtr& alarm : alarms)
        if (alarm->soundPath() == path)
            users << QStringLiteral("the alarm “%1”").arg(isolated(shortened(alarm->title())));
    users.removeDuplicates();
    if (const qsizetype more = users.size() - mostNamed; more > 0)
        users = users.mid(0, mostNamed) << QStringLiteral("%1 more").arg(more);
    if (breaks.soundPath() == path || breaks.durationSoundPath() == path)
        users << QStringLiteral("the break reminder");
    return users;
}

} // namespace dorvane
