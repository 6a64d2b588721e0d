// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/desktop/PortalAppearance.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEvent>
#include <QGuiApplication>

namespace dorvane {

namespace {

const auto portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const auto appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const auto colorSchemeKey = QStringLiteral("color-scheme");

constexpr uint preferDark = 1;
constexpr uint preferLight = 2;

// Portals wrap the value in one variant or in two.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

PortalAppearance::PortalAppearance(QDBusConnection sessionBus)
    : m_bus(std::move(sessionBus)), m_dark(windowsAreDark()) {
    qGuiApp->installEventFilter(this);
    listen();
}

void PortalAppearance::setBus(QDBusConnection sessionBus) {
    m_bus = std::move(sessionBus);
    listen();
}

void PortalAppearance::listen() {
    if (!m_bus.isConnected())
        return;
    // Qt looks the type of the slot's argument up by its name.
    qRegisterMetaType<QDBusVariant>("QDBusVariant");
    // Without the service's name: with it Qt asks the bus for the owner and waits for the answer.
    m_bus.connect(QString(), portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
                  SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask();
}

// GNOME's bar is black in both.
bool PortalAppearance::isPanelDark() const {
    return m_dark || qEnvironmentVariable("XDG_CURRENT_DESKTOP")
                         .split(u':')
                         .contains(QLatin1String("GNOME"), Qt::CaseInsensitive);
}

void PortalAppearance::setChanged(std::function<void()> changed) {
    m_changed = std::move(changed);
}

bool PortalAppearance::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange && watched == qGuiApp)
        decide();
    return QObject::eventFilter(watched, event);
}

void PortalAppearance::ask() {
    QDBusMessage read = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface,
                                                       QStringLiteral("Read"));
    read << appearanceGroup << colorSchemeKey;
    auto* call = new QDBusPendingCallWatcher(m_bus.asyncCall(read), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *call;
        if (!reply.isError())
            take(reply.value().variant());
    });
}

void PortalAppearance::settingChanged(const QString& group, const QString& key,
                                      const QDBusVariant& value) {
    if (group == appearanceGroup && key == colorSchemeKey)
        take(value.variant());
}

void PortalAppearance::take(const QVariant& colorScheme) {
    const uint scheme = unwrapped(colorScheme).toUInt();
    m_preferred.reset();
    if (scheme == preferDark || scheme == preferLight)
        m_preferred = scheme == preferDark;
    m_windowColours.follow(m_preferred);
    decide();
}

void PortalAppearance::decide() {
    const bool dark = m_preferred.value_or(windowsAreDark());
    if (dark == m_dark)
        return;
    m_dark = dark;
    if (m_changed)
        m_changed();
}

} // namespace dorvane
