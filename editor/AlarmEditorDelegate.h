// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

namespace dorvane {

class AlarmSetController;

// Who takes the alarm that was set in an editor.
class AlarmEditorDelegate {
public:
    virtual ~AlarmEditorDelegate() = default;

    // Called before the editor closes; editor.editingOne() is the alarm that it was opened for.
    virtual void acceptedAlarm(AlarmSetController& editor, const AlarmPtr& alarm) = 0;
};

} // namespace dorvane
