// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSocketNotifier>

#include <functional>
#include <optional>

namespace dorvane {

// SIGTERM, SIGINT and SIGHUP as calls on the main thread, so that the program can quit in order.
// One object a process, while the application object lives. A signal that the process was started
// to ignore (nohup) stays ignored.
class UnixSignals {
public:
    // `quit` is called for each signal, from the main loop. Where no socket pair can be had, the
    // signals keep ending the process at once, and the log says so.
    explicit UnixSignals(std::function<void()> quit);
    ~UnixSignals();
    UnixSignals(const UnixSignals&) = delete;
    UnixSignals& operator=(const UnixSignals&) = delete;

private:
    void arrived();

    std::function<void()> m_quit;
    int m_sockets[2] = {-1, -1}; // the handler writes to the first
    std::optional<QSocketNotifier> m_notifier;
};

} // namespace dorvane
