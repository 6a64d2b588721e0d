// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

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

// The preferences window: whether the program starts at login, and where the manual is. Main thread
// only.
class PrefController final {
public:
    struct Surroundings {
        const Bundle& bundle;
        LaunchAtLoginController& launchAtLogin;
        QUrl manual;
        std::function<void(const QUrl& url)> openUrl;
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

    Surroundings m_surroundings;
    QDialog m_prefsWindow;
    std::unique_ptr<Ui::PrefController> m_form;
};

} // namespace dorvane
