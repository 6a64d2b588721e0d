// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/RespitoReminderController.h"

#include "sounds/ReminderControls.h"
#include "ui_RespitoReminderController.h"

namespace dorvane {

std::shared_ptr<RespitoReminderController>
RespitoReminderController::create(Surroundings surroundings) {
    return std::shared_ptr<RespitoReminderController>(
        new RespitoReminderController(std::move(surroundings)));
}

RespitoReminderController::RespitoReminderController(Surroundings surroundings)
    : ReminderController(std::move(surroundings), loadReminderForm<Ui::RespitoReminderController>) {
}

} // namespace dorvane
