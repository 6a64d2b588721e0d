// SPDX-License-Identifier: GPL-3.0-or-later
// The shared instance that brings sounds over from where they used to lie.

#include "app/Desktop.h"
#include "app/SharedInstances.h"
#include "breaks/PendixTakeABreakSettings.h"
#include "core/ActiveAlarms.h"
#include "core/StoredAlarms.h"
#include "sounds/OldSoundFolders.h"

namespace dorvane {

namespace {

void rewritePaths(const MovedSounds& moved, const std::function<void(bool)>& done) {
    sharedActiveAlarms().replaceSounds(moved);
    sharedStoredAlarms().replaceSounds(moved);
    PendixTakeABreakSettings::sharedInstance().replaceSounds(moved);
    saveAll([done](const std::optional<QString>& problem) { done(!problem); });
}

} // namespace

void bringSoundsOver() {
    Desktop& desktop = sharedDesktop();
    // A path may come from anywhere: from a journal, a copied file of preferences, a script.
    desktop.soundPlayer.setElsewhere(
        [user = desktop.folders](const QString& path) { return movedSoundPath(user, path); });
    static auto* const folders =
        new OldSoundFolders(desktop.runLoop, desktop.folders, rewritePaths);
    folders->bringOver();
}

} // namespace dorvane
