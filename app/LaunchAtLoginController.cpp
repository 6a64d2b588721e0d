// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/LaunchAtLoginController.h"

#include "platform/Log.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace dorvane {

namespace {

std::optional<LoginItems::Item> findItem(const QString& bundlePath, const LoginItems& items) {
    const auto all = items.snapshot();
    const auto found = std::find_if(all.begin(), all.end(), [&](const LoginItems::Item& item) {
        return item.bundlePath == bundlePath;
    });
    if (bundlePath.isEmpty() || found == all.end())
        return std::nullopt;
    return *found;
}

} // namespace

LaunchAtLoginController::LaunchAtLoginController(LoginItems& items, QString appPath)
    : m_items(items), m_appPath(std::move(appPath)) {
    m_items.setChanged([this] { tell(); });
}

bool LaunchAtLoginController::launchAtLogin() const {
    return willLaunchAtLogin(m_appPath);
}

void LaunchAtLoginController::setLaunchAtLogin(bool on) {
    setLaunchAtLogin(on, m_appPath);
    tell();
}

bool LaunchAtLoginController::willLaunchAtLogin(const QString& bundlePath) const {
    return findItem(bundlePath, m_items).has_value();
}

void LaunchAtLoginController::setLaunchAtLogin(bool on, const QString& bundlePath) {
    const auto item = findItem(bundlePath, m_items);
    if (on == item.has_value())
        return;
    const bool done = on ? m_items.insertFirst(bundlePath) : m_items.remove(item->identity);
    if (!done)
        qCWarning(logApp, "the login items stay as they are");
}

void LaunchAtLoginController::tell() const {
    if (m_changed)
        m_changed();
}

} // namespace dorvane
