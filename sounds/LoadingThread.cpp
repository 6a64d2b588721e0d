// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/LoadingThread.h"

namespace dorvane {

void LoadingThread::run(Job job) {
    if (m_isStopped)
        return;
    const std::lock_guard lock(m_mutex);
    m_jobs.push_back(std::move(job));
    if (m_isWorking)
        return;
    m_isWorking = true;
    // Joins the thread before, which has seen its last job and is gone or about to be.
    m_thread = std::jthread([this](const std::stop_token& stop) { work(stop); });
}

void LoadingThread::stop() {
    m_isStopped = true;
    m_thread = {};
}

void LoadingThread::work(const std::stop_token& stop) {
    while (true) {
        Job job;
        {
            const std::lock_guard lock(m_mutex);
            if (m_jobs.empty() || stop.stop_requested()) {
                m_isWorking = false;
                return;
            }
            job = std::move(m_jobs.front());
            m_jobs.pop_front();
        }
        job(stop);
    }
}

} // namespace dorvane
