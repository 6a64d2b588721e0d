// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// Why a step of a recording failed, or why it ended before its time.
struct AudioError {
    QString domain; // the step, with the code: "Failed to start AU: 6"
    int code = 0;   // of the sound server (positive) or of the encoder or the system (negative)
    QString reason; // what that means, in a sentence for the user
    // What arrived before that is in the file all the same.
    bool isKept = false;
};

} // namespace dorvane
