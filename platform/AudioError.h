// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// Why a step of a recording failed.
struct AudioError {
    QString domain; // the step, with the code: "Failed to start AU: 6"
    int code = 0;   // of the sound server (positive) or of the encoder or the system (negative)
    QString reason; // what the code means
};

} // namespace dorvane
