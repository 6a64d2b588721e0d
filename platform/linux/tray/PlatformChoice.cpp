// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/PlatformChoice.h"

#include <QByteArray>
#include <QStringList>

#include <algorithm>

namespace dorvane {

namespace {

constexpr auto platformVariable = "QT_QPA_PLATFORM";

bool isGnomeOrPlasma() {
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    return std::any_of(desktops.begin(), desktops.end(), [](const QString& desktop) {
        return desktop.compare(QLatin1String("GNOME"), Qt::CaseInsensitive) == 0 ||
               desktop.compare(QLatin1String("KDE"), Qt::CaseInsensitive) == 0;
    });
}

} // namespace

PlatformChoice::PlatformChoice() {
    const bool hasBoth =
        qEnvironmentVariableIsSet("WAYLAND_DISPLAY") && qEnvironmentVariableIsSet("DISPLAY");
    m_isOurs = hasBoth && isGnomeOrPlasma() && !qEnvironmentVariableIsSet(platformVariable);
    if (m_isOurs)
        qputenv(platformVariable, "xcb;wayland"); // an X server may refuse us
}

PlatformChoice::~PlatformChoice() {
    if (m_isOurs)
        qunsetenv(platformVariable);
}

} // namespace dorvane
