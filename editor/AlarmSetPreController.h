// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

namespace dorvane {

class AlarmSetPreController;
class StoredAlarms;

// Who starts a quick alarm.
class AlarmPresetDelegate {
public:
    virtual ~AlarmPresetDelegate() = default;
    virtual void acceptedPreAlarm(AlarmSetPreController& controller, const AlarmPtr& alarm) = 0;
};

// Makes the one-click timers: a relative alarm titled "default" that plays Ping. Lives for one
// click.
class AlarmSetPreController {
public:
    // `soundPath` is the full path of the sound to play. The references must outlive the object.
    AlarmSetPreController(const RunLoop& runLoop, StoredAlarms& library, QString soundPath,
                          AlarmPresetDelegate& delegate);

    // Makes an alarm that is due in so many minutes, stores a copy of it in the library in the
    // place of the last quick alarm, and hands it to the delegate.
    void setDefault(int minutes);

private:
    [[nodiscard]] AlarmPtr saveCurrentAlarm(int minutes);

    const RunLoop& m_runLoop;
    StoredAlarms& m_library;
    QString m_soundPath;
    AlarmPresetDelegate& m_delegate;
};

} // namespace dorvane
