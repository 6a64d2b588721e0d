// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/Message.h"

#include "platform/EscapedText.h"

namespace dorvane {

QMessageBox* newMessage(QMessageBox::Icon icon, const QString& message, const QString& details) {
    auto* const box = new QMessageBox(icon, QStringLiteral("Dorvane"), message);
    box->setModal(false); // or no window of a ring could be answered meanwhile
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setAttribute(Qt::WA_ShowWithoutActivating);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(escapedText(details));
    return box;
}

} // namespace dorvane
