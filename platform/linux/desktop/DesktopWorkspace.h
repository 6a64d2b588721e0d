// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Workspace.h"

#include <QDBusConnection>
#include <QObject>

namespace dorvane {

// The workspace of a freedesktop.org desktop: its handlers of addresses, its file manager, its
// database of file types.
class DesktopWorkspace final : public QObject, public Workspace {
public:
    explicit DesktopWorkspace(QDBusConnection sessionBus);

    void openUrl(const QUrl& url) override;

    // Opens the parent folder where no file manager takes the request.
    void reveal(const QString& path) override;

    [[nodiscard]] QString typeOfFile(const QString& path) const override;

private:
    QDBusConnection m_bus;
};

} // namespace dorvane
