// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sounds/ReminderController.h"

namespace dorvane {

// The window in which the user records a sound for the break reminder: the reminder window with one
// button for starting and ending a recording. It always runs without an alarm, so accepting only
// closes it; what was recorded is found in the menus of recorded sounds. Main thread only.
class RespitoReminderController final : public ReminderController {
public:
    [[nodiscard]] static std::shared_ptr<RespitoReminderController>
    create(Surroundings surroundings);

    [[nodiscard]] static RespitoReminderController& sharedContorller();

private:
    explicit RespitoReminderController(Surroundings surroundings);
};

} // namespace dorvane
