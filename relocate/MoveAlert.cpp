// SPDX-License-Identifier: GPL-3.0-or-later
#include "relocate/MoveAlert.h"

#include "platform/EscapedText.h"
#include "relocate/MoveOffer.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QMessageBox>
#include <QPushButton>

namespace dorvane {

namespace {

QString localised(const char* text) {
    return QCoreApplication::translate("MoveApplication", text);
}

QString folderOf(const QString& path) {
    return path.left(path.lastIndexOf(QLatin1Char('/')));
}

QString explanation(const MoveOffer& offer) {
    QString text = localised(QT_TRANSLATE_NOOP(
        "MoveApplication", "I can move myself to the Applications folder if you'd like."));
    const char* note = nullptr;
    if (offer.needsAuthorisation)
        note = QT_TRANSLATE_NOOP("MoveApplication",
                                 "Note that this will require an administrator password.");
    else if (offer.isDownload)
        note = QT_TRANSLATE_NOOP("MoveApplication",
                                 "This will keep your Downloads folder uncluttered.");
    if (note)
        text += QLatin1Char(' ') + localised(note);
    return text + QLatin1Char(' ') +
           localised(QT_TRANSLATE_NOOP("MoveApplication", "The folder is %1."))
               .arg(folderOf(offer.destination));
}

std::unique_ptr<QMessageBox> alert(QMessageBox::Icon icon, const QString& message) {
    auto box = std::make_unique<QMessageBox>(icon, QStringLiteral("Dorvane"),
                                             QStringLiteral("<b>%1</b>").arg(message));
    box->setTextFormat(Qt::RichText);
    box->setModal(false); // or no ring window could be answered meanwhile
    return box;
}

} // namespace

std::unique_ptr<QMessageBox> moveAlert(const MoveOffer& offer) {
    auto box =
        alert(QMessageBox::Question,
              localised(QT_TRANSLATE_NOOP("MoveApplication", "Move to Applications folder?")));
    box->setInformativeText(escapedText(explanation(offer)));
    box->addButton(localised(QT_TRANSLATE_NOOP("MoveApplication", "Move to Applications Folder")),
                   QMessageBox::AcceptRole);
    auto* const stay = box->addButton(
        localised(QT_TRANSLATE_NOOP("MoveApplication", "Do Not Move")), QMessageBox::RejectRole);
    box->setEscapeButton(stay);

    auto suppression = std::make_unique<QCheckBox>(
        localised(QT_TRANSLATE_NOOP("MoveApplication", "Do not show this message again")));
    QFont small = suppression->font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    suppression->setFont(small);
    box->setCheckBox(suppression.release());
    return box;
}

void takeDefaultButton(QMessageBox& moveAlert) {
    for (QPushButton* button : moveAlert.findChildren<QPushButton*>()) {
        button->setAutoDefault(false);
        button->setDefault(false);
    }
    moveAlert.setFocusPolicy(Qt::StrongFocus);
    moveAlert.setFocus();
}

void giveDefaultButton(QMessageBox& moveAlert) {
    auto* const stay = qobject_cast<QPushButton*>(moveAlert.escapeButton());
    stay->setDefault(true);
    if (moveAlert.hasFocus())
        stay->setFocus();
}

std::unique_ptr<QMessageBox> moveFailure(const MoveOffer& offer, const QString& reason) {
    auto box = alert(
        QMessageBox::Warning,
        localised(QT_TRANSLATE_NOOP("MoveApplication", "Could not move to Applications folder")));
    const QString stays =
        localised(QT_TRANSLATE_NOOP("MoveApplication", "Dorvane stays in %1 and runs on."))
            .arg(folderOf(offer.source));
    box->setInformativeText(escapedText(reason + QLatin1Char(' ') + stays));
    return box;
}

} // namespace dorvane
