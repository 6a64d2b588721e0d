// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QString;

namespace dorvane {

// Receives what the user picks in a sound menu. Called from inside the menu's own event.
class SoundMenuTarget {
public:
    virtual ~SoundMenuTarget() = default;

    // A sound file, by its full path.
    virtual void soundSelected(const QString& path) = 0;

    // Asks for the window that records sounds.
    virtual void manageReminders() = 0;
};

} // namespace dorvane
