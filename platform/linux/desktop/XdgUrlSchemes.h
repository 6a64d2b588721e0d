// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/UrlSchemes.h"
#include "platform/UserFolders.h"

#include <QObject>
#include <QString>

#include <deque>

namespace dorvane {

// The handlers of x-scheme-handler/… types, asked and set through xdg-mime.
class XdgUrlSchemes final : public UrlSchemes {
public:
    explicit XdgUrlSchemes(const UserFolders& folders);

    void applicationForScheme(const QString& scheme,
                              std::function<void(const Handler&)> answer) override;

    // Through the desktop file of the installation, or for a bundle that is none through a desktop
    // file of its own that no menu shows.
    void registerBundle(const QString& bundlePath, const QString& scheme) override;

private:
    struct Registration {
        QString scheme;
        QString desktopFile;
    };

    void makeNextDefault();

    QString m_applicationsFolder;
    std::deque<Registration> m_waiting; // the tool works on the first
    QObject m_context;
};

} // namespace dorvane
