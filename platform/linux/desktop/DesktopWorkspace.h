// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Workspace.h"

#include <QDBusConnection>
#include <QObject>

#include <functional>

namespace dorvane {

// The workspace of a freedesktop.org desktop: its handlers of addresses, its file manager, its
// database of file types.
class DesktopWorkspace final : public QObject, public Workspace {
public:
    explicit DesktopWorkspace(QDBusConnection sessionBus);

    // Another connection, once the first has gone.
    void setBus(QDBusConnection sessionBus) { m_bus = std::move(sessionBus); }

    void openUrl(const QUrl& url) override;

    // Told of addresses that nothing here opens, so that the user can be.
    void setNothingOpens(std::function<void(const QUrl&)> told) {
        m_nothingOpens = std::move(told);
    }

    // Opens the parent folder where no file manager takes the request.
    void reveal(const QString& path) override;

    [[nodiscard]] QString typeOfFile(const QString& path) const override;

private:
    std::function<void(const QUrl&)> m_nothingOpens;
    QDBusConnection m_bus;
};

} // namespace dorvane
