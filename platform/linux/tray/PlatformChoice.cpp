// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/PlatformChoice.h"

#include "platform/linux/tray/NotifierHostWatcher.h"

#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

namespace dorvane {

namespace {

constexpr auto platformVariable = "QT_QPA_PLATFORM";

bool isGnomeOnWayland() {
    return qEnvironmentVariableIsSet("WAYLAND_DISPLAY") && qEnvironmentVariableIsSet("DISPLAY") &&
           qEnvironmentVariable("XDG_CURRENT_DESKTOP")
               .split(u':')
               .contains(QLatin1String("GNOME"), Qt::CaseInsensitive);
}

bool showsIcons(const QDBusConnection& bus) {
    constexpr int longestWait = 200; // ms
    const QDBusReply<QDBusVariant> reply =
        bus.call(NotifierHostWatcher::question(), QDBus::Block, longestWait);
    return reply.isValid() && reply.value().variant().toBool();
}

} // namespace

void choosePlatform(const QDBusConnection& sessionBus) {
    if (!qEnvironmentVariableIsSet(platformVariable) && isGnomeOnWayland() &&
        !showsIcons(sessionBus))
        qputenv(platformVariable, "xcb;wayland"); // an X server may refuse us
}

} // namespace dorvane
