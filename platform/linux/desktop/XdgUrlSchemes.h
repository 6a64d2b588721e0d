// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/UrlSchemes.h"
#include "platform/UserFolders.h"

#include <QObject>
#include <QStringList>

namespace dorvane {

// The handlers of x-scheme-handler/… types, asked and set through xdg-mime.
class XdgUrlSchemes final : public UrlSchemes {
public:
    explicit XdgUrlSchemes(const UserFolders& folders);

    void applicationForScheme(const QString& scheme,
                              std::function<void(const Handler&)> answer) override;

    // Through a desktop file of its own that no menu shows.
    void registerBundle(const QString& bundlePath, const QString& scheme) override;

private:
    void makeNextDefault();

    QString m_applicationsFolder;
    QStringList m_waiting; // schemes to be registered; the tool works on the first
    QObject m_context;
};

} // namespace dorvane
