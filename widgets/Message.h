// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMessageBox>
#include <QString>

namespace dorvane {

// A window that tells something and holds nobody up: no window waits for it, and what is typed
// elsewhere goes on. Not shown yet; the caller shows it, and it deletes itself when it is closed.
// The details stand below the message as they are, whatever they look like. Main thread only.
[[nodiscard]] QMessageBox* newMessage(QMessageBox::Icon icon, const QString& message,
                                      const QString& details);

} // namespace dorvane
