// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/UnixSignals.h"

#include "platform/Log.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/socket.h>
#include <unistd.h>

namespace dorvane {

namespace {

constexpr int quitSignals[] = {SIGTERM, SIGINT, SIGHUP};

// A handler gets nothing but the signal's number, so this cannot live in an object.
std::atomic<int> handlerSocket = -1;
static_assert(std::atomic<int>::is_always_lock_free, "signal handlers may not take locks");

extern "C" void passOn(int /*signal*/) {
    const int savedError = errno;
    const char byte = 0;
    // A full socket holds enough signals already.
    [[maybe_unused]] const auto written = ::write(handlerSocket, &byte, 1);
    errno = savedError;
}

void handle(int signal, void (*handler)(int)) {
    struct sigaction current {};
    ::sigaction(signal, nullptr, &current);
    if (current.sa_handler == SIG_IGN)
        return;
    struct sigaction wanted {};
    wanted.sa_handler = handler;
    wanted.sa_flags = SA_RESTART;
    ::sigaction(signal, &wanted, nullptr);
}

} // namespace

UnixSignals::UnixSignals(std::function<void()> quit) : m_quit(std::move(quit)) {
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, m_sockets) != 0) {
        qCWarning(logPlatform, "Signals end the program without saving: %s", std::strerror(errno));
        return;
    }
    m_notifier.emplace(m_sockets[1], QSocketNotifier::Read);
    QObject::connect(&*m_notifier, &QSocketNotifier::activated, &*m_notifier,
                     [this] { arrived(); });
    handlerSocket = m_sockets[0];
    for (const int signal : quitSignals)
        handle(signal, passOn);
}

UnixSignals::~UnixSignals() {
    if (!m_notifier)
        return;
    for (const int signal : quitSignals)
        handle(signal, SIG_DFL);
    handlerSocket = -1;
    m_notifier.reset();
    for (const int socket : m_sockets)
        ::close(socket);
}

void UnixSignals::arrived() {
    char byte = 0;
    if (::read(m_sockets[1], &byte, 1) == 1)
        m_quit();
}

} // namespace dorvane
