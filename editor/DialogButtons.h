// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialogButtonBox>
#include <QPushButton>

namespace dorvane {

// Gives a window its two buttons, in the order of the desktop: the default one, which accepts and
// is returned, and Cancel. They are named setButton and cancelButton.
inline QPushButton* addAcceptAndCancel(QDialogButtonBox& box, const QString& acceptText) {
    QPushButton* accept = box.addButton(acceptText, QDialogButtonBox::AcceptRole);
    accept->setObjectName(QStringLiteral("setButton"));
    accept->setDefault(true);
    QPushButton* cancel = box.addButton(QStringLiteral("&Cancel"), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cancelButton"));
    return accept;
}

} // namespace dorvane
