// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Appearance.h"
#include "platform/linux/desktop/WindowColours.h"

#include <QDBusConnection>
#include <QObject>

#include <functional>
#include <optional>

class QDBusVariant;
class QVariant;

namespace dorvane {

// Light or dark as the desktop's portal says, which answers a moment after the start. Where there
// is no portal, or the user has no preference, the lightness of the application's palette decides.
// Our windows follow, whatever the desktop's theme does. Needs the application object.
class PortalAppearance final : public QObject, public Appearance {
    Q_OBJECT

public:
    explicit PortalAppearance(QDBusConnection sessionBus);

    // Another connection, once the first has gone.
    void setBus(QDBusConnection sessionBus);

    [[nodiscard]] bool isDark() const override { return m_dark; }
    [[nodiscard]] bool isPanelDark() const override;
    void setChanged(std::function<void()> changed) override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void listen();
    void ask();
    void take(const QVariant& colorScheme);
    void decide();

    QDBusConnection m_bus;
    std::function<void()> m_changed;
    std::optional<bool> m_preferred;
    WindowColours m_windowColours;
    bool m_dark;
};

} // namespace dorvane
