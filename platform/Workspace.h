// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QUrl;

namespace dorvane {

// What the desktop does with files and addresses on our behalf. Nothing here waits for another
// program.
class Workspace {
public:
    virtual ~Workspace() = default;

    // Opens the address in the user's program for it. Failures are logged.
    virtual void openUrl(const QUrl& url) = 0;

    // Shows the file or folder in the file manager, inside its parent folder.
    virtual void reveal(const QString& path) = 0;

    // The file's MIME type by content and name; empty when the file cannot be read. Any thread.
    [[nodiscard]] virtual QString typeOfFile(const QString& path) const = 0;
};

} // namespace dorvane
