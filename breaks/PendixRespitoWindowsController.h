// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "breaks/BreakReadOut.h"
#include "breaks/BreakWindowServices.h"
#include "platform/NotificationCenter.h"

#include <QCoreApplication>

#include <memory>

class QWidget;

namespace Ui {
class PendixRespitoWindowsController;
}

namespace dorvane {

class BreakNumbers;
class BreakSoundChoice;

// The window in which the break reminder is set up, started and stopped. What it does without being
// seen, starting and stopping, works before it was ever opened. Main thread only.
class PendixRespitoWindowsController final : public BreakReadOut {
    Q_DECLARE_TR_FUNCTIONS(Breaks)

public:
    // Becomes the read-out of the services' ClockBreaks.
    explicit PendixRespitoWindowsController(BreakWindowServices services);
    ~PendixRespitoWindowsController() override;
    PendixRespitoWindowsController(const PendixRespitoWindowsController&) = delete;
    PendixRespitoWindowsController& operator=(const PendixRespitoWindowsController&) = delete;

    // The one instance of the application.
    static PendixRespitoWindowsController& sharedRespito();

    // Switches the reminder on and sets the timer of the cycle.
    void enableRespito();
    // Switches the reminder off, as the menu does.
    void stopRespito() override;
    // Begins the working time anew; a break that has begun is done.
    void skipRespito();

    void testAlert();
    void cancelButtonPushed();

    // Null until it was first shown.
    [[nodiscard]] QWidget* window() const { return m_window.get(); }

    void showWindow() override;
    void setNextBreakTimeLabel(const QString& text) override;
    void setNextBreakTime(const QString& text) override;
    void fadeNextBreakTime(double alpha) override;
    [[nodiscard]] bool isBreakEveryEnabled() const override;
    [[nodiscard]] bool isBreakDurationEnabled() const override;

private:
    void loadWindow();
    void windowDidLoad();
    void connectControls();
    void startButtonPushed();
    void changeShowRespito();
    void changePausesWhileAway();
    void showStatus();
    void showOutlook();
    void showPausing();
    void stopClock();
    void stopPreview();

    const BreakWindowServices m_services;
    std::unique_ptr<Ui::PendixRespitoWindowsController> m_form;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<BreakNumbers> m_numbers;
    std::unique_ptr<BreakSoundChoice> m_sounds;
    std::unique_ptr<QWidget> m_testAlert;
    NotificationCenter::Observation m_settingsChanged;
    NotificationCenter::Observation m_breaksChanged;
};

} // namespace dorvane
