// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"

#include <QObject>

class QMenu;

namespace dorvane {

// Closes an open menu that does not hear of clicks elsewhere: when the program loses the keyboard,
// or when nobody has touched the menu for a while. An open menu holds up alarms. Goes with the
// menu, or when the menu closes; main thread only.
class ForgottenMenu final : public QObject {
    Q_OBJECT

public:
    // To be made with `new` when the menu opens. The run loop must outlive the menu.
    ForgottenMenu(RunLoop& runLoop, QMenu& menu);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void wait();

    RunLoop& m_runLoop;
    QMenu& m_menu;
    RunLoopTimer m_timer;
};

} // namespace dorvane
