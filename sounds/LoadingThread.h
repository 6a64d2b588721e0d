// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

namespace dorvane {

// Runs jobs one after another on one thread of its own, which exists only while there is something
// to do. Its members belong to the thread that made it.
class LoadingThread {
public:
    // Should return soon once `stop` is requested.
    using Job = std::function<void(const std::stop_token& stop)>;

    LoadingThread() = default;
    LoadingThread(const LoadingThread&) = delete;
    LoadingThread& operator=(const LoadingThread&) = delete;
    ~LoadingThread() { stop(); }

    void run(Job job);

    // Asks the job that is running to stop, waits for it, and drops all others, now and from now
    // on.
    void stop();

private:
    void work(const std::stop_token& stop);

    std::mutex m_mutex;
    std::deque<Job> m_jobs;
    bool m_isWorking = false;
    bool m_isStopped = false;
    std::jthread m_thread;
};

} // namespace dorvane
