// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/UserFolders.h"
#include "sounds/LoadingThread.h"

#include <QHash>
#include <QString>

#include <functional>

namespace dorvane {

class RunLoop;

// Old full paths, and where the same files lie now.
using MovedSounds = QHash<QString, QString>;

// Where a file of an old folder lies after the move under its own name; empty for other files. Any
// thread.
[[nodiscard]] QString movedSoundPath(const UserFolders& user, const QString& path);

// What the user recorded or added used to lie among his caches, which people and cleaners empty.
// Brings it to where SoundFolders says, once; what could not be brought is tried again at the next
// start. In this order, so that whatever ends the program, and whenever, each path that is stored
// anywhere leads to its file: all files get their new place, on the disk; then the paths are
// rewritten, on the disk; then the old ones go. Main thread only.
class OldSoundFolders {
public:
    // Rewrites the paths wherever they are kept, and calls back when that is on the disk, else with
    // false.
    using Rewrite = std::function<void(const MovedSounds& moved, std::function<void(bool)> done)>;

    // The run loop must outlive the object.
    OldSoundFolders(RunLoop& runLoop, const UserFolders& user, Rewrite rewrite);

    // Nothing, and at once, where there is no old folder.
    void bringOver();

private:
    void rewrite(const MovedSounds& moved);

    RunLoop& m_runLoop;
    const UserFolders m_user;
    const Rewrite m_rewrite;
    Lifeline<OldSoundFolders> m_lifeline{*this};
    LoadingThread m_thread; // last: its jobs use the others
};

} // namespace dorvane
