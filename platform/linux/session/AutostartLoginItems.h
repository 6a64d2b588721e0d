// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/LoginItems.h"
#include "platform/UserFolders.h"

#include <QFileSystemWatcher>

namespace dorvane {

// Login items as desktop files in the user's autostart folder. Files of others are read, and never
// written.
class AutostartLoginItems final : public LoginItems {
public:
    explicit AutostartLoginItems(const UserFolders& folders);

    // Entries that earlier versions made here, and nobody changed since, become what is made here
    // now. Waits for the disk; any thread.
    static void renew(const UserFolders& folders);

    [[nodiscard]] std::vector<Item> snapshot() const override;
    [[nodiscard]] bool insertFirst(const QString& bundlePath) override;
    [[nodiscard]] bool remove(const QString& identity) override;
    void setChanged(std::function<void()> changed) override;

private:
    void watch();
    [[nodiscard]] QString freeName() const;

    QString m_folder;
    QFileSystemWatcher m_watcher;
    std::function<void()> m_changed;
};

} // namespace dorvane
