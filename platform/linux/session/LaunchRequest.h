// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace dorvane {

// What a launch of the program asks for: an action by its name, addresses to open, or, with
// neither, that the program shows itself.
struct LaunchRequest {
    QString action;
    QStringList uris;
    // The action of a start by login, which only wants the program to run.
    static constexpr QLatin1String login{"login"};

    friend bool operator==(const LaunchRequest&, const LaunchRequest&) = default;
};

} // namespace dorvane
