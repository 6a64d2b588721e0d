// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/FormValidation.h"

#include "editor/AlarmForm.h"
#include "editor/IntervalRule.h"

namespace dorvane {

FormFaults faultsOf(const AlarmForm& form) {
    FormFaults faults;
    if (form.title.isEmpty()) {
        faults.message += QStringLiteral("Title must not be empty.\n");
        faults.field = FormFaults::Field::Title;
    }
    // What the field refuses while it is edited is no time either.
    if (form.row == Alarm::Relative && !isValidInterval(form.interval)) {
        faults.message += QStringLiteral("Alarm time is not set.\n");
        faults.field = FormFaults::Field::Interval;
    }
    if (form.isPlaySound && form.soundPath.isEmpty())
        faults.message += QStringLiteral("Please select sound to play.\n");
    if (form.isSpeakAlarmName && form.voiceName.isEmpty())
        faults.message += QStringLiteral("Please select voice to speak with.\n");
    return faults;
}

} // namespace dorvane
