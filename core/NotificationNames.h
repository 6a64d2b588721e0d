// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// Posted when the machine has woken from sleep.
inline const QString wakeNotification = QStringLiteral("Hollisward.Dorvane.Wake");

// Posted by the clock when its list of running alarms, or an alarm in it, changed.
inline const QString alarmsDidChangeNotification = QStringLiteral("DorvaneAlarmsDidChange");

// Posted by the library of stored alarms when it changed.
inline const QString storedAlarmsDidChangeNotification =
    QStringLiteral("DorvaneStoredAlarmsDidChange");

// Posted when what is next, in words, has become another: see StatusView::summary().
inline const QString summaryDidChangeNotification = QStringLiteral("DorvaneSummaryDidChange");

// Posted right before the main menu opens, and when what it shows has changed.
inline const QString mainMenuWillAppearNotification = QStringLiteral("DorvaneMainMenuWillAppear");

} // namespace dorvane
