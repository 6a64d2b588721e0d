// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>

class QLineEdit;
class QSlider;

namespace Ui {
class PendixRespitoWindowsController;
}

namespace dorvane {

struct BreakWindowServices;

// The three numbers of the break preferences window, each a slider and a field in step. What the
// user changes is stored at once, what is typed when it is finished: with Return, or when the field
// or the window is left. Belongs to the window, whose controls it has.
class BreakNumbers {
    Q_DECLARE_TR_FUNCTIONS(Breaks)

public:
    // Both must outlive this.
    BreakNumbers(const BreakWindowServices& services, Ui::PendixRespitoWindowsController& controls);

    // Shows the settings as they were loaded.
    void show();

    void enableSliders();
    void enableFields();

    // A slider was moved.
    void changeBreakFreq();
    void changeBeakDuration();
    void changeRepeatFreq();

private:
    struct Row;
    void wire(const Row& row);
    void controlTextDidChange(const Row& row);
    void controlTextDidEnd(const Row& row);
    void take(const Row& row, int value);
    void showUnits();

    const BreakWindowServices& m_services;
    Ui::PendixRespitoWindowsController& m_controls;
};

} // namespace dorvane
