// SPDX-License-Identifier: GPL-3.0-or-later
#include "relocate/MoveToApplications.h"

#include "platform/Log.h"
#include "platform/Relocator.h"
#include "platform/UserDefaults.h"
#include "relocate/MoveAlert.h"

#include <QCheckBox>
#include <QMessageBox>
#include <QPointer>
#include <QThreadPool>

#include <utility>

namespace dorvane {

namespace {

const auto suppressKey = QStringLiteral("moveToApplicationsFolderAlertSuppress");
const auto answeredKey = QStringLiteral("moveToApplicationsFolderAnsweredAt"); // places

bool canBeReplacedAsRoot(const MoveOffer& offer) {
    return offer.destination.endsWith(QStringLiteral(".app")) &&
           !offer.destination.trimmed().isEmpty() && !offer.source.trimmed().isEmpty();
}

// Shows it above other windows; it goes away by itself when it is answered.
void present(std::unique_ptr<QMessageBox> alert) {
    alert->setAttribute(Qt::WA_DeleteOnClose);
    QMessageBox* const shown = alert.release();
    shown->show();
    shown->raise();
    shown->activateWindow();
}

} // namespace

MoveToApplications::MoveToApplications(Surroundings surroundings)
    : m_surroundings(std::move(surroundings)) {}

void MoveToApplications::offer(const QString& bundlePath) {
    const UserDefaults& defaults = m_surroundings.defaults;
    if (defaults.value(suppressKey).toBool() ||
        defaults.value(answeredKey).toList().contains(bundlePath))
        return;
    if (auto offer = offerToMove(bundlePath, m_surroundings.relocator)) {
        m_offer = *std::move(offer);
        ask();
    }
}

void MoveToApplications::ask() {
    auto alert = moveAlert(m_offer);
    QMessageBox* const box = alert.get();
    QObject::connect(box, &QMessageBox::finished, box, [this, box] { answer(*box); });
    present(std::move(alert));
    takeDefaultButton(*box);
    m_default = m_surroundings.runLoop.scheduleOnce(
        noDefault,
        [shown = QPointer(box)] {
            if (shown)
                giveDefaultButton(*shown);
        },
        RunLoopMode::Common);
}

void MoveToApplications::answer(const QMessageBox& alert) {
    remember(answeredKey, m_surroundings.defaults.value(answeredKey).toList()
                              << QVariant(m_offer.source));
    if (alert.buttonRole(alert.clickedButton()) == QMessageBox::AcceptRole)
        move();
    else if (alert.checkBox()->isChecked())
        remember(suppressKey, true);
}

void MoveToApplications::remember(const QString& key, const QVariant& value) {
    m_surroundings.defaults.setValue(key, value);
    m_surroundings.defaults.synchronize();
}

void MoveToApplications::move() {
    qCInfo(logRelocate, "INFO -- Moving myself to the Applications folder");
    QThreadPool::globalInstance()->start([offer = m_offer, weak = m_lifeline.weak(),
                                          &loop = m_surroundings.runLoop,
                                          &relocator = m_surroundings.relocator] {
        const Outcome outcome = copy(relocator, offer);
        loop.post([weak, outcome] {
            if (MoveToApplications* const self = weak.get())
                self->conclude(outcome);
        });
    });
}

MoveToApplications::Outcome MoveToApplications::copy(Relocator& relocator, const MoveOffer& offer) {
    if (!offer.needsAuthorisation)
        return copyHere(relocator, offer);
    const auto done = canBeReplacedAsRoot(offer)
                          ? relocator.copyWithAuthorisation(offer.source, offer.destination)
                          : Relocator::Authorised::Failed;
    if (done == Relocator::Authorised::Done)
        return {Outcome::Copied};
    if (done == Relocator::Authorised::Refused) {
        qCInfo(logRelocate, "INFO -- Not moving because user canceled authorization");
        return {Outcome::Refused};
    }
    qCWarning(logRelocate, "ERROR -- Could not copy myself to /Applications with authorization");
    return {Outcome::Failed,
            QStringLiteral("Copying it there as an administrator did not succeed.")};
}

// What is at the destination goes only when there is a whole copy to take its place.
MoveToApplications::Outcome MoveToApplications::copyHere(Relocator& relocator,
                                                         const MoveOffer& offer) {
    const QString& destination = offer.destination;
    const bool isTaken = relocator.exists(destination);
    if (isTaken && relocator.isRunning(destination))
        return {Outcome::Switched};
    auto error = relocator.copyBeside(offer.source, destination);
    if (!error && isTaken && !relocator.moveToTrash(destination)) {
        relocator.discardCopy(destination);
        return {Outcome::Failed,
                QStringLiteral("What is there now, %1, cannot be put into the trash.")
                    .arg(destination)};
    }
    if (!error)
        error = relocator.putInPlace(destination);
    if (!error)
        return {Outcome::Copied};
    qCWarning(logRelocate).noquote() << QStringLiteral("ERROR -- Could not copy '%1' to '%2' (%3)")
                                            .arg(offer.source, destination, *error);
    qCWarning(logRelocate).noquote() << "ERROR -- Could not copy myself to" << destination;
    return {Outcome::Failed, QStringLiteral("Copying it there did not succeed (%1).").arg(*error)};
}

void MoveToApplications::conclude(const Outcome& outcome) {
    switch (outcome.what) {
    case Outcome::Copied:
        leave();
        break;
    case Outcome::Switched:
        qCInfo(logRelocate, "INFO -- Switching to an already running version");
        m_surroundings.relocator.open(m_offer.destination);
        m_surroundings.end();
        break;
    case Outcome::Failed:
        present(moveFailure(m_offer, outcome.reason));
        break;
    case Outcome::Refused:
        break;
    }
}

// Waits for the disk, as there is nothing else left to do.
void MoveToApplications::leave() {
    Relocator& relocator = m_surroundings.relocator;
    m_surroundings.moved(m_offer.destination);
    if (!m_offer.isNested && !m_offer.diskImageDevice) {
        if (const auto error = relocator.removeCopied(m_offer.source, m_offer.destination)) {
            qCWarning(logRelocate).noquote()
                << QStringLiteral("WARNING -- Could not delete '%1': %2")
                       .arg(m_offer.source, *error);
            if (!relocator.moveToTrash(m_offer.source))
                qCWarning(logRelocate, "WARNING -- Could not delete application after moving it "
                                       "to Applications folder");
        }
    }
    relocator.openAfterTheEnd(m_offer.destination);
    if (m_offer.diskImageDevice && !m_offer.isNested)
        relocator.detachSoon(*m_offer.diskImageDevice);
    m_surroundings.end();
}

} // namespace dorvane
