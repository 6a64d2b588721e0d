// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/PendixRespitoWindowsController.h"

#include "breaks/BreakCycle.h"
#include "breaks/BreakNumbers.h"
#include "breaks/BreakSoundChoice.h"
#include "breaks/ClockBreaks.h"
#include "breaks/PendixTakeABreakSettings.h"
#include "core/DateHelpers.h"
#include "platform/Bundle.h"
#include "platform/EscapedText.h"
#include "platform/Log.h"
#include "platform/Presence.h"
#include "platform/UserDefaults.h"
#include "ui_PendixRespitoWindowsController.h"
#include "widgets/FitToScreen.h"

#include <QGraphicsOpacityEffect>
#include <QPropertyAnimation>
#include <QSequentialAnimationGroup>

namespace dorvane {

namespace {

// However it is closed, what is being tried falls silent.
class BreakWindow final : public QWidget {
public:
    explicit BreakWindow(std::function<void()> closed) : m_closed(std::move(closed)) {}

protected:
    void closeEvent(QCloseEvent* event) override {
        QWidget::closeEvent(event);
        m_closed();
    }

private:
    std::function<void()> m_closed;
};

void addFade(QSequentialAnimationGroup& group, QObject* effect, double from, double to,
             QEasingCurve::Type timing) {
    constexpr int second = 1000;
    auto* fade = new QPropertyAnimation(effect, "opacity", &group);
    fade->setDuration(second);
    fade->setStartValue(from);
    fade->setEndValue(to);
    fade->setEasingCurve(timing);
    group.addAnimation(fade);
}

} // namespace

PendixRespitoWindowsController::PendixRespitoWindowsController(BreakWindowServices services)
    : m_services(std::move(services)) {
    m_services.clock.setRespito(this);
    qCInfo(logBreaks, "init OK in TheWindowController");
}

PendixRespitoWindowsController::~PendixRespitoWindowsController() {
    m_services.clock.setRespito(nullptr);
}

void PendixRespitoWindowsController::showWindow() {
    if (!m_window)
        loadWindow();
    showFitted(*m_window);
}

void PendixRespitoWindowsController::loadWindow() {
    m_form = std::make_unique<Ui::PendixRespitoWindowsController>();
    m_window = std::make_unique<BreakWindow>([this] { stopPreview(); });
    m_form->setupUi(m_window.get());
    m_form->playButton->setIcon(
        QIcon(m_services.bundle.resourcePath(QStringLiteral("images/PlayBlueButton.svg"))));
    m_numbers = std::make_unique<BreakNumbers>(m_services, *m_form);
    m_sounds = std::make_unique<BreakSoundChoice>(m_services, *m_form, m_window.get());
    windowDidLoad();
    connectControls();
}

void PendixRespitoWindowsController::windowDidLoad() {
    m_sounds->constructMenu();
    m_services.settings.loadPrefs();
    m_numbers->show();
    m_form->IsBreakEnabled->setChecked(m_services.settings.showRespito() != 0);
    m_services.presence.watch();
    showStatus();
    showOutlook();
    showPausing();
    m_sounds->show();
    m_settingsChanged = m_services.notifications.addObserver(
        breakSettingsDidChangeNotification, [this](NotificationCenter::Sender) { showStatus(); });
    m_breaksChanged = m_services.notifications.addObserver(breaksDidChangeNotification,
                                                           [this](NotificationCenter::Sender) {
                                                               showOutlook();
                                                               showPausing();
                                                           });
}

void PendixRespitoWindowsController::connectControls() {
    // A letter that presses a button leaves the field in which a number is typed, as a click does.
    const auto onClick = [this](QAbstractButton* button,
                                void (PendixRespitoWindowsController::*action)()) {
        QObject::connect(button, &QAbstractButton::clicked, m_window.get(), [this, button, action] {
            button->setFocus();
            (this->*action)();
        });
    };
    onClick(m_form->startRespito, &PendixRespitoWindowsController::startButtonPushed);
    onClick(m_form->stopRespito, &PendixRespitoWindowsController::stopRespito);
    onClick(m_form->skipRespito, &PendixRespitoWindowsController::skipRespito);
    onClick(m_form->IsBreakEnabled, &PendixRespitoWindowsController::changeShowRespito);
    onClick(m_form->pauseWhileAway, &PendixRespitoWindowsController::changePausesWhileAway);
    onClick(m_form->cancelRespito, &PendixRespitoWindowsController::cancelButtonPushed);
}

// Wherever the reminder was started or stopped, the buttons follow. Those that come to life go
// first, so that the keyboard has somewhere to go.
void PendixRespitoWindowsController::showStatus() {
    const bool isOn = m_services.settings.RespitoStatus() != 0;
    m_form->startRespito->setEnabled(!isOn || m_form->startRespito->isEnabled());
    m_form->stopRespito->setEnabled(isOn || m_form->stopRespito->isEnabled());
    m_form->skipRespito->setEnabled(isOn || m_form->skipRespito->isEnabled());
    m_form->startRespito->setEnabled(!isOn);
    m_form->stopRespito->setEnabled(isOn);
    m_form->skipRespito->setEnabled(isOn);
}

void PendixRespitoWindowsController::showOutlook() {
    using Phase = BreakOutlook::Phase;
    const BreakOutlook outlook = m_services.cycle.outlook();
    const QString moment = timeString(outlook.moment);
    switch (outlook.phase) {
    case Phase::Off:
        setNextBreakTimeLabel(tr("Next break at: "));
        setNextBreakTime(tr("Respito is Off"));
        break;
    case Phase::Working:
        setNextBreakTimeLabel(tr("Next break at: "));
        setNextBreakTime(moment);
        break;
    case Phase::Waiting:
        setNextBreakTimeLabel(tr("Next break: "));
        setNextBreakTime(tr("when you are back"));
        break;
    case Phase::Resting:
        setNextBreakTimeLabel(tr("Break until: "));
        setNextBreakTime(moment);
        break;
    }
}

void PendixRespitoWindowsController::showPausing() {
    const bool isKnown = m_services.presence.isKnown();
    m_form->pauseWhileAway->setChecked(m_services.settings.pausesWhileAway(isKnown));
    const QString hint =
        isKnown ? QString()
                : tr("Nothing here tells whether you are away: only the computer's sleep counts.");
    m_form->pauseWhileAway->setToolTip(escapedText(hint));
}

void PendixRespitoWindowsController::enableRespito() {
    PendixTakeABreakSettings& settings = m_services.settings;
    settings.loadPrefs();
    if (m_numbers) {
        m_numbers->enableSliders();
        m_numbers->enableFields();
    }
    settings.setEnableTakeABreak(1);
    settings.setRespitoStatus(1);
    settings.writePrefsAndSync();
    m_services.cycle.startBreakTimer(settings.takeABreakFrequency());
}

// As the menu does: the breaks that follow count from here.
void PendixRespitoWindowsController::startButtonPushed() {
    enableRespito();
    m_services.cycle.enableRespito();
}

void PendixRespitoWindowsController::stopRespito() {
    stopPreview();
    PendixTakeABreakSettings& settings = m_services.settings;
    settings.setEnableTakeABreak(0);
    settings.setRespitoStatus(0);
    settings.writePrefsAndSync();
    setNextBreakTimeLabel(tr("Next break at: "));
    setNextBreakTime(tr("Respito is Off"));
    if (m_form)
        m_form->showBreakTime->hide();
    stopClock();
    m_services.defaults.removeValue(nextDateKey);
    m_services.cycle.disableRespito();
}

void PendixRespitoWindowsController::skipRespito() {
    stopPreview();
    if (m_form)
        m_form->showBreakTime->hide();
    m_services.clock.skippBreak();
    stopClock();
    m_services.defaults.removeValue(nextDateKey);
    enableRespito();
}

void PendixRespitoWindowsController::stopClock() {
    ClockBreaks& clock = m_services.clock;
    clock.stopBreakTimer();
    clock.stopNextBreakTimer();
    clock.stopPlayingSound();
    clock.stopFlashTimer();
    clock.resetRepeatCounter();
}

void PendixRespitoWindowsController::stopPreview() {
    if (m_sounds)
        m_sounds->stopPreview();
}

void PendixRespitoWindowsController::changeShowRespito() {
    m_services.settings.setShowRespito(m_form->IsBreakEnabled->isChecked() ? 1 : 0);
    m_services.settings.writePrefsAndSync();
}

void PendixRespitoWindowsController::changePausesWhileAway() {
    m_services.settings.setPausesWhileAway(m_form->pauseWhileAway->isChecked());
    m_services.settings.writePrefsAndSync();
}

void PendixRespitoWindowsController::cancelButtonPushed() {
    m_window->close();
}

void PendixRespitoWindowsController::testAlert() {
    m_testAlert = std::make_unique<QWidget>(nullptr, Qt::FramelessWindowHint);
    m_testAlert->setGeometry(0, 0, 200, 200);
    m_testAlert->setPalette(QPalette(Qt::blue));
    m_testAlert->show();
    m_testAlert->raise();
    m_testAlert->activateWindow();
}

void PendixRespitoWindowsController::setNextBreakTimeLabel(const QString& text) {
    if (m_form)
        m_form->nextBreakTimeLabel->setText(text);
}

void PendixRespitoWindowsController::setNextBreakTime(const QString& text) {
    if (m_form)
        m_form->nextBreakTime->setText(text);
}

void PendixRespitoWindowsController::fadeNextBreakTime(double alpha) {
    if (!m_form)
        return;
    const auto effect = new QGraphicsOpacityEffect(m_form->nextBreakTime);
    m_form->nextBreakTime->setGraphicsEffect(effect); // ends the one before
    const auto group = new QSequentialAnimationGroup(effect);
    addFade(*group, effect, 1.0, alpha, QEasingCurve::OutQuad);
    addFade(*group, effect, alpha, 1.0, QEasingCurve::InQuad);
    group->start();
}

bool PendixRespitoWindowsController::isBreakEveryEnabled() const {
    return m_form && m_form->breakEvery->isEnabled();
}

bool PendixRespitoWindowsController::isBreakDurationEnabled() const {
    return m_form && m_form->breakDuration->isEnabled();
}

} // namespace dorvane
