// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/LoginItems.h"

#include <functional>

namespace dorvane {

// Whether this program is started when the user logs in: not a setting of ours, but its presence
// among the user's login items. Main thread only.
class LaunchAtLoginController {
public:
    // `appPath` is the bundle of this program. The items must outlive the controller.
    LaunchAtLoginController(LoginItems& items, QString appPath);

    // The one instance of the application.
    static LaunchAtLoginController& sharedController();

    [[nodiscard]] bool launchAtLogin() const;
    // What cannot be changed stays as it was; the items say why in the log.
    void setLaunchAtLogin(bool on);

    [[nodiscard]] bool willLaunchAtLogin(const QString& bundlePath) const;
    void setLaunchAtLogin(bool on, const QString& bundlePath);

    // Called after launchAtLogin() may have changed, whoever changed it.
    void setChanged(std::function<void()> changed) { m_changed = std::move(changed); }

private:
    void tell() const;

    LoginItems& m_items;
    QString m_appPath;
    std::function<void()> m_changed;
};

} // namespace dorvane
