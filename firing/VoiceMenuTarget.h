// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QAction;

namespace dorvane {

// Receives what the user picks in a menu of voices. Main thread only.
class VoiceMenuTarget {
public:
    virtual ~VoiceMenuTarget() = default;

    // The item's data is the voice's name. Called from inside the menu's own event.
    virtual void voiceSelected(const QAction& item) = 0;
};

} // namespace dorvane
