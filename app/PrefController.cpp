// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PrefController.h"

#include "app/LaunchAtLoginController.h"
#include "app/UpdateChecker.h"
#include "platform/Bundle.h"
#include "ui_PrefController.h"
#include "widgets/FitToScreen.h"

#include <QSignalBlocker>

#include <utility>

namespace dorvane {

PrefController::PrefController(Surroundings surroundings)
    : m_surroundings(std::move(surroundings)), m_form(std::make_unique<Ui::PrefController>()) {
    m_form->setupUi(&m_prefsWindow);
    awakeFromNib();
}

PrefController::~PrefController() {
    m_surroundings.launchAtLogin.setChanged({});
}

void PrefController::awakeFromNib() {
    m_prefsWindow.setWindowTitle(
        m_surroundings.bundle.infoString(QStringLiteral("CFBundleExecutable")) + QLatin1Char(' ') +
        m_surroundings.bundle.infoString(QStringLiteral("CFBundleShortVersionString")));
    QFont small = m_form->startupNote->font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    for (QLabel* note : {m_form->startupNote, m_form->wakeNote})
        note->setFont(small);

    QObject::connect(m_form->manualButton, &QPushButton::clicked, &m_prefsWindow,
                     [this] { m_surroundings.openUrl(m_surroundings.manual); });
    takeRingChoices();
    prepareWaking();
    prepareUpdates();
    QObject::connect(m_form->checkButton, &QPushButton::clicked, &m_prefsWindow,
                     [this] { m_surroundings.checkRinging(); });
    QObject::connect(m_form->breaksButton, &QPushButton::clicked, &m_prefsWindow,
                     [this] { m_surroundings.openBreaks(); });
    mirrorStartup();
    m_surroundings.launchAtLogin.setChanged([this] { mirrorStartup(); });
    QObject::connect(m_form->startupCheckBox, &QCheckBox::toggled, &m_prefsWindow,
                     [this](bool on) { setStartup(on); });
}

// Where they stand is where Tab comes to them.
void PrefController::takeRingChoices() {
    if (!m_surroundings.ringChoices)
        return;
    m_form->ringRow->addWidget(m_surroundings.ringChoices);
    QWidget* last = m_form->wakeCheckBox;
    for (QWidget* each :
         m_surroundings.ringChoices->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        if (each->focusPolicy() & Qt::TabFocus) {
            QWidget::setTabOrder(last, each);
            last = each;
        }
}

// The wish can be told all the same: the next login may grant what is missing today.
void PrefController::prepareWaking() {
    if (!m_surroundings.canWakeComputer())
        m_form->wakeNote->setText(
            m_form->wakeNote->text() +
            QStringLiteral(
                " At present this computer does not let Dorvane do so; see the checks."));
    m_form->wakeCheckBox->setChecked(m_surroundings.wakesComputer());
    m_form->wakeCheckBox->setAccessibleDescription(m_form->wakeNote->text());
    QObject::connect(m_form->wakeCheckBox, &QCheckBox::toggled, &m_prefsWindow,
                     [this](bool on) { m_surroundings.setWakesComputer(on); });
}

void PrefController::prepareUpdates() {
    m_form->updateField->hide();
    m_form->updateField->setOpener(m_surroundings.openUrl);
    m_form->updateButton->setVisible(m_surroundings.checkForUpdates != nullptr);
    if (!m_surroundings.checkForUpdates)
        m_form->updateStatus->setText(QStringLiteral("left to the package manager"));
    QObject::connect(m_form->updateButton, &QPushButton::clicked, &m_prefsWindow,
                     [this] { checkForUpdates(); });
}

void PrefController::checkForUpdates() {
    m_form->updateButton->setEnabled(false);
    m_form->updateStatus->setText(QStringLiteral("looking..."));
    m_surroundings.checkForUpdates([weak = m_lifeline.weak()](const UpdateResult& result) {
        if (PrefController* const self = weak.get())
            self->showUpdates(result);
    });
}

void PrefController::showUpdates(const UpdateResult& result) {
    QString status = QStringLiteral("this is the newest version");
    if (result.newer)
        status = QStringLiteral("version %1 is available").arg(result.newer->version);
    else if (!result.fault.isEmpty())
        status = result.fault;
    m_form->updateButton->setEnabled(true);
    m_form->updateStatus->setText(status);
    m_form->updateField->setVisible(result.newer.has_value());
    if (result.newer)
        m_form->updateField->setURL(result.newer->link);
    fitToScreen(m_prefsWindow, m_prefsWindow.sizeHint());
}

void PrefController::setStartup(bool on) {
    m_surroundings.launchAtLogin.setLaunchAtLogin(on);
}

// Also after a change that could not be made: the box never says what is not so.
void PrefController::mirrorStartup() {
    const QSignalBlocker quietly(m_form->startupCheckBox);
    m_form->startupCheckBox->setChecked(m_surroundings.launchAtLogin.launchAtLogin());
}

void PrefController::show() {
    mirrorStartup();
    showFitted(m_prefsWindow);
}

} // namespace dorvane
