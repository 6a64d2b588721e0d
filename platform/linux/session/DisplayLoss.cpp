// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/DisplayLoss.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QThread>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

namespace dorvane {

namespace {

// A handler of messages gets nothing but the message.
DisplayLoss* instance = nullptr;

// The words of Qt's platform plugins before they end the process.
constexpr QLatin1String lastWords[] = {QLatin1String("The X11 connection broke"),
                                       QLatin1String("The Wayland connection")};

// And before it aborts, which is a crash to everybody else.
constexpr QLatin1String noDisplay("This application failed to start because no Qt platform");

constexpr int longestEnd = 20'000; // milliseconds, of an end that waits for the disk

bool isLastWord(const QString& message) {
    for (const QLatin1String word : lastWords)
        if (message.startsWith(word))
            return true;
    return false;
}

bool isMainThread() {
    const auto* const application = QCoreApplication::instance();
    return application && QThread::currentThread() == application->thread();
}

QByteArray valueOf(const char* variable) {
    const QByteArray value = qgetenv(variable);
    return variable + (value.isEmpty() ? QByteArray(" is not set") : " is " + value);
}

[[noreturn]] void end() {
    std::fflush(nullptr);
    std::_Exit(EXIT_FAILURE);
}

} // namespace

DisplayLoss::DisplayLoss() : m_next(qInstallMessageHandler(handle)) {
    instance = this;
}

DisplayLoss::~DisplayLoss() {
    instance = nullptr;
    qInstallMessageHandler(m_next);
}

void DisplayLoss::setLost(std::function<void()> lost) {
    m_lost = std::move(lost);
}

void DisplayLoss::handle(QtMsgType type, const QMessageLogContext& context,
                         const QString& message) {
    if (type == QtFatalMsg && message.startsWith(noDisplay)) {
        std::fprintf(stderr, "dorvane: there is no display to be shown on: %s, %s\n",
                     valueOf("DISPLAY").constData(), valueOf("WAYLAND_DISPLAY").constData());
        end();
    }
    instance->m_next(type, context, message);
    if (!isLastWord(message))
        return;
    if (isMainThread())
        instance->lose();
    else
        instance->loseOnMainThread();
}

void DisplayLoss::lose() {
    if (!m_lost)
        return;
    std::exchange(m_lost, {})();
    end();
}

// A thread of Qt's reads what the compositor says, and would end the process at once.
void DisplayLoss::loseOnMainThread() {
    auto* const application = QCoreApplication::instance();
    if (!application)
        return;
    const auto isAsked = std::make_shared<QSemaphore>();
    QMetaObject::invokeMethod(
        application,
        [this, isAsked] {
            lose();
            isAsked->release();
        },
        Qt::QueuedConnection);
    (void)isAsked->tryAcquire(1, longestEnd);
}

} // namespace dorvane
