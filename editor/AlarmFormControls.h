// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Weekday.h"

#include <vector>

class QCheckBox;

namespace Ui {
class AlarmSetController;
}

namespace dorvane {

struct AlarmForm;
struct FormEnabling;

// Between the form as a value and the controls of the window; decides nothing. The controls must
// outlive it.
class AlarmFormControls {
public:
    explicit AlarmFormControls(Ui::AlarmSetController& controls);

    // Takes over what the controls say. The sound, the voice and the hidden date of the time
    // picker are shown by no control and stay as they are in the form.
    void readInto(AlarmForm& form) const;

    // Shows the form but for its sound and voice; no control reports a change.
    void show(const AlarmForm& form);

    void apply(const FormEnabling& enabling);

    [[nodiscard]] const std::vector<QCheckBox*>& dayBoxes() const { return m_dayBoxes; }

private:
    void fadePickersWhenDisabled();
    [[nodiscard]] WeekdaySet checkedDays() const;
    void showSnooze(qint64 minutes);

    Ui::AlarmSetController& m_controls;
    std::vector<QCheckBox*> m_dayBoxes; // Monday first
};

} // namespace dorvane
