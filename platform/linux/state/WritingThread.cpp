// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/state/WritingThread.h"

#include <utility>

namespace dorvane {

WritingThread::WritingThread() {
    m_thread.setMaxThreadCount(1);
    m_thread.setExpiryTimeout(0);
}

WritingThread::~WritingThread() {
    finish();
}

void WritingThread::run(Job job) {
    const QMutexLocker lock(&m_mutex);
    if (std::exchange(m_next, std::move(job)))
        return;
    m_thread.start([this] {
        const Job next = [this] {
            const QMutexLocker taking(&m_mutex);
            return std::exchange(m_next, {});
        }();
        next();
    });
}

void WritingThread::finish() {
    m_thread.waitForDone();
}

} // namespace dorvane
