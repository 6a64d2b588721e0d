// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/BreakOutlook.h"

#include "core/DateHelpers.h"

namespace dorvane {

QString outlookText(const BreakOutlook& outlook) {
    switch (outlook.phase) {
    case BreakOutlook::Phase::Off:
        break;
    case BreakOutlook::Phase::Working:
        return outlook.isNear ? QStringLiteral("break in half a minute")
                              : QStringLiteral("break at ") + timeString(outlook.moment);
    case BreakOutlook::Phase::Waiting:
        return QStringLiteral("break when you are back");
    case BreakOutlook::Phase::Resting:
        return QStringLiteral("break until ") + timeString(outlook.moment);
    }
    return {};
}

} // namespace dorvane
