// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "checks/WillItRing.h"

#include <QDialog>

namespace Ui {
class CheckWindow;
}

namespace dorvane {

class Bundle;

// "Will it ring?": the checks as a list, with a picture for each answer. Main thread only.
class CheckWindow final {
public:
    // Both must outlive the window.
    CheckWindow(WillItRing& checks, const Bundle& bundle);
    ~CheckWindow();
    CheckWindow(const CheckWindow&) = delete;
    CheckWindow& operator=(const CheckWindow&) = delete;

    // Opens the window, or brings it to the front, and checks anew.
    void show();

    [[nodiscard]] QDialog& window() { return m_window; }

private:
    void check(WillItRing::TestSound testSound);
    void list(std::vector<Check> checks);

    WillItRing& m_checks;
    const Bundle& m_bundle;
    QDialog m_window;
    std::unique_ptr<Ui::CheckWindow> m_form;
    Lifeline<CheckWindow> m_lifeline{*this};
};

} // namespace dorvane
