// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmForm.h"

namespace dorvane {

class AlarmSetPreController;
class StoredAlarms;

// Who starts a quick alarm.
class AlarmPresetDelegate {
public:
    virtual ~AlarmPresetDelegate() = default;
    virtual void acceptedPreAlarm(AlarmSetPreController& controller, const AlarmPtr& alarm) = 0;
};

// Makes the one-click timers: a relative alarm titled "default". Lives for one
// click.
class AlarmSetPreController {
public:
    // The references must outlive the object.
    AlarmSetPreController(const RunLoop& runLoop, StoredAlarms& library, RingDefaults ring,
                          AlarmPresetDelegate& delegate);

    // Makes an alarm that is due in so many minutes, stores a copy of it in the library in the
    // place of the last quick alarm, and hands it to the delegate.
    void setDefault(int minutes);

private:
    [[nodiscard]] AlarmPtr saveCurrentAlarm(int minutes);

    const RunLoop& m_runLoop;
    StoredAlarms& m_library;
    RingDefaults m_ring;
    AlarmPresetDelegate& m_delegate;
};

} // namespace dorvane
