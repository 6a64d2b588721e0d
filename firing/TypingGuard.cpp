// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/TypingGuard.h"

#include <QKeyEvent>

namespace dorvane {

using namespace std::chrono_literals;

TypingGuard::TypingGuard(const RunLoop& runLoop, QObject* parent)
    : QObject(parent), m_runLoop(runLoop), m_quietSince(runLoop.uptime()) {}

void TypingGuard::restart() {
    m_quietSince = m_runLoop.uptime();
    m_open = m_expectsAnswer = false;
}

void TypingGuard::expectAnswer() {
    restart();
    m_expectsAnswer = true;
}

bool TypingGuard::eventFilter(QObject* watched, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease ||
                       event->type() == QEvent::ShortcutOverride ||
                       event->type() == QEvent::Shortcut;
    if (!isKey || m_open)
        return QObject::eventFilter(watched, event);
    const bool isPress =
        event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    const bool isFresh = isPress && !static_cast<QKeyEvent*>(event)->isAutoRepeat();
    const bool isQuiet = m_runLoop.uptime() - m_quietSince >= 500ms;
    m_open = event->type() != QEvent::KeyRelease && (m_expectsAnswer ? isFresh : isQuiet);
    m_quietSince = m_runLoop.uptime();
    return !m_open;
}

} // namespace dorvane
