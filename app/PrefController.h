// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"

#include <QDialog>
#include <QUrl>

#include <functional>
#include <memory>

namespace Ui {
class PrefController;
}

namespace dorvane {

class Bundle;
class LaunchAtLoginController;
struct UpdateResult;

// The preferences window: whether the program starts at login and wakes the computer, how it rings,
// whether there is a newer version, and the way to the manual and the checks. Main thread only.
class PrefController final {
public:
    struct Surroundings {
        const Bundle& bundle;
        LaunchAtLoginController& launchAtLogin;
        QUrl manual;
        std::function<void(const QUrl& url)> openUrl;
        // Looks for a newer version and tells; empty where updates come by other ways.
        std::function<void(std::function<void(const UpdateResult&)> told)> checkForUpdates;
        // Whether the computer is to be woken for alarms, and whether it can be.
        std::function<bool()> wakesComputer;
        std::function<void(bool on)> setWakesComputer;
        std::function<bool()> canWakeComputer;
        // Opens the list of checks.
        std::function<void()> checkRinging;
        // Opens the window of the breaks.
        std::function<void()> openBreaks;
        // Rows of the window, which takes them; null for none.
        QWidget* ringChoices = nullptr;
    };

    // All of the surroundings must outlive the controller.
    explicit PrefController(Surroundings surroundings);
    ~PrefController();
    PrefController(const PrefController&) = delete;
    PrefController& operator=(const PrefController&) = delete;

    // Opens the window, or brings it to the front.
    void show();

    [[nodiscard]] QDialog& prefsWindow() { return m_prefsWindow; }

private:
    void awakeFromNib();
    void setStartup(bool on);
    void mirrorStartup();
    void prepareWaking();
    void prepareUpdates();
    void takeRingChoices();
    void checkForUpdates();
    void showUpdates(const UpdateResult& result);

    Surroundings m_surroundings;
    QDialog m_prefsWindow;
    std::unique_ptr<Ui::PrefController> m_form;
    Lifeline<PrefController> m_lifeline{*this};
};

} // namespace dorvane
