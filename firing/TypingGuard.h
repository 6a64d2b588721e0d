// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"

#include <QObject>

namespace dorvane {

// Keeps what somebody is typing elsewhere from pressing the buttons of a window that has just
// popped up, or got the keyboard from another: it swallows keys until half a second has passed
// without one. After an answer to another window keys count as soon as they are pressed.
class TypingGuard final : public QObject {
    Q_OBJECT

public:
    TypingGuard(const RunLoop& runLoop, QObject* parent);

    // As if the window had just popped up.
    void restart();
    // Somebody has just answered another window: a key counts unless it is still held from then.
    void expectAnswer();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    const RunLoop& m_runLoop;
    RunLoop::Milliseconds m_quietSince;
    bool m_open = false;
    bool m_expectsAnswer = false;
};

} // namespace dorvane
