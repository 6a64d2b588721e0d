// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Relocator.h"
#include "platform/UserFolders.h"

namespace dorvane {

// Programs live in /usr, in /opt, and in the user's own ~/Applications or, installed for him alone,
// ~/.local; administrators are asked by polkit, disk images are loop devices, and the trash is the
// desktop's.
class UnixRelocator final : public Relocator {
public:
    // `localApplications` is where programs from elsewhere go, /opt.
    // `pkexec` is who asks for an administrator.
    UnixRelocator(UserFolders user, QString localApplications,
                  QString pkexec = QStringLiteral("/usr/bin/pkexec"));

    [[nodiscard]] Folders folders() const override;
    [[nodiscard]] bool exists(const QString& path) const override;
    [[nodiscard]] bool isWritable(const QString& path) const override;
    [[nodiscard]] std::optional<QString> diskImageDevice(const QString& folder) const override;
    [[nodiscard]] bool isRunning(const QString& bundlePath) const override;
    [[nodiscard]] std::optional<QString> copyBeside(const QString& source,
                                                    const QString& destination) override;
    [[nodiscard]] std::optional<QString> putInPlace(const QString& destination) override;
    void discardCopy(const QString& destination) override;
    [[nodiscard]] Authorised copyWithAuthorisation(const QString& source,
                                                   const QString& destination) override;
    [[nodiscard]] std::optional<QString> removeCopied(const QString& source,
                                                      const QString& copy) override;
    [[nodiscard]] bool moveToTrash(const QString& path) override;
    void open(const QString& bundlePath) override;
    void openAfterTheEnd(const QString& bundlePath) override;
    void detachSoon(const QString& device) override;

private:
    UserFolders m_user;
    QString m_localApplications;
    QString m_pkexec;
};

} // namespace dorvane
