// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "breaks/BreakSheet.h"

#include <functional>
#include <memory>

class QDialog;
class QWidget;

namespace Ui {
class CustomModalWindowController;
}

namespace dorvane {

class RunLoop;

// The sheet that asks for a break: its countdown, and buttons that stop the reminder, end the break
// or open the reminder's preferences. It stays above other windows; closing it by other means ends
// the break as its button does. Main thread only.
class CustomModalWindowController final : public BreakSheet {
public:
    struct Actions {
        std::function<void()> disableRespito; // after the stop button
        std::function<void()> createRespito;  // after the preferences button
    };

    // `sheetParent` is the window to hang from, which it blocks meanwhile; without one the sheet
    // stands in the middle of the screen where the pointer is. Not shown until begin().
    CustomModalWindowController(const RunLoop& runLoop, QWidget* sheetParent, Actions actions);
    ~CustomModalWindowController() override;

    void didTapStopButton();
    void didTapDoneButton();
    void didTapPrefencesButton();

    void setCompletion(Completion completion) override { m_completion = std::move(completion); }
    void setShowBreakTime(const QString& text) override;
    void begin() override;
    [[nodiscard]] bool isVisible() const override;
    void end(SheetCode code) override;
    void clickStopBreak() override;
    void clickSkipBreak() override;

private:
    void connectButtons();
    void guardFromTyping(const RunLoop& runLoop);
    void place();

    QWidget* m_sheetParent;
    Actions m_actions;
    Completion m_completion;
    std::unique_ptr<Ui::CustomModalWindowController> m_form;
    std::unique_ptr<QDialog> m_window;
};

} // namespace dorvane
