// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "breaks/BreakSheet.h"
#include "platform/RunLoop.h"

#include <functional>
#include <memory>

class QDialog;
class QWidget;

namespace Ui {
class CustomModalWindowController;
}

namespace dorvane {

// The sheet that asks for a break: its countdown, and buttons that stop the reminder, end the
// break, put it off or open the reminder's preferences. Closing it by other means ends the break as
// its button does. Main thread only.
class CustomModalWindowController final : public BreakSheet {
public:
    struct Actions {
        std::function<void()> disableRespito; // after the stop button
        std::function<void()> createRespito;  // after the preferences button
        // The sheet may be hidden by other windows, or no longer.
        std::function<void(bool isUnseen)> unseen;
    };

    // Whether other windows may hide the sheet. It is asked a second after it came, and then once a
    // second until they do not, or until it was active.
    using IsHidden = std::function<bool(const QWidget& sheet)>;

    // `sheetParent` is the window to hang from, which it blocks meanwhile; without one the sheet
    // stands in the middle of the screen where the pointer is. Not shown until begin().
    CustomModalWindowController(RunLoop& runLoop, QWidget* sheetParent, IsHidden isHidden,
                                Actions actions);
    ~CustomModalWindowController() override;

    void didTapStopButton();
    void didTapDoneButton();
    void didTapPrefencesButton();
    void didTapPutOffButton();

    void setCompletion(Completion completion) override { m_completion = std::move(completion); }
    void setShowBreakTime(const QString& text) override;
    void setCanBePutOff(bool canBePutOff) override;
    void begin() override;
    [[nodiscard]] bool isVisible() const override;
    void end(SheetCode code) override;
    void clickStopBreak() override;
    void clickSkipBreak() override;

private:
    void connectButtons();
    void guardFromTyping();
    void place();
    void look();
    void activated();
    void seen();
    void setIsUnseen(bool isUnseen);

    RunLoop& m_runLoop;
    QWidget* m_sheetParent;
    const IsHidden m_isHidden;
    Actions m_actions;
    Completion m_completion;
    RunLoopTimer m_look;
    bool m_isUnseen = false;
    std::unique_ptr<Ui::CustomModalWindowController> m_form;
    std::unique_ptr<QDialog> m_window;
};

} // namespace dorvane
