// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMutex>
#include <QThreadPool>

#include <functional>

namespace dorvane {

// A thread for what waits for a disk. It does one job after the other, of those that wait the
// newest only, and ends as soon as it has nothing to do.
class WritingThread {
public:
    using Job = std::function<void()>;

    WritingThread();
    // Waits as finish() does.
    ~WritingThread();

    // Takes the place of a job that has not begun, which is then never done.
    void run(Job job);

    // Waits until there is nothing left to do.
    void finish();

private:
    QMutex m_mutex;
    Job m_next; // guarded by the mutex
    QThreadPool m_thread;
};

} // namespace dorvane
