// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <functional>

namespace dorvane {

// What Qt does where there is no display: without one at the start it aborts, and when the X server
// or the compositor goes it ends the process on the spot. This lets the first end with a message,
// and the second not before what has to be done is done; both with status 1. The only word that Qt
// gives before is a line for the log. One object a process, made before the application object.
class DisplayLoss {
public:
    DisplayLoss();
    ~DisplayLoss();
    DisplayLoss(const DisplayLoss&) = delete;
    DisplayLoss& operator=(const DisplayLoss&) = delete;

    // Once there is an application object: `lost` is called on the main thread, in the middle of
    // whatever it was doing, when the display has gone. It must not show anything.
    void setLost(std::function<void()> lost);

private:
    void lose();
    void loseOnMainThread();

    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& message);

    std::function<void()> m_lost;
    QtMessageHandler m_next;
};

} // namespace dorvane
