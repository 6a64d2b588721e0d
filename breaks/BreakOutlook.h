// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>

namespace dorvane {

// Posted when the outlook of the breaks is another.
inline const QString breaksDidChangeNotification = QStringLiteral("DorvaneBreaksDidChange");

// What comes next in the round of breaks.
struct BreakOutlook {
    enum class Phase {
        Off,
        Working, // the next break begins at `moment`
        Waiting, // a break is due and waits for somebody to come back
        Resting, // the break ends at `moment`
    };
    Phase phase = Phase::Off;
    QDateTime moment;    // local time
    bool isNear = false; // half a minute ahead of a break
    friend bool operator==(const BreakOutlook&, const BreakOutlook&) = default;
};

// For the tool tip and the menu: "break at 12:25"; empty while breaks are off.
[[nodiscard]] QString outlookText(const BreakOutlook& outlook);

} // namespace dorvane
