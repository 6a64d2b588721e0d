// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/StateFile.h"

#include <QMutex>
#include <QString>
#include <QThreadPool>

namespace dorvane {

class RunLoop;

// A file of the user's alone that is written by a thread of its own, which ends as soon as it has
// nothing to write.
class BackgroundFile final : public StateFile {
public:
    // `path` is the full path; its folder is made when it is missing. The run loop, which dates the
    // names of files that are put aside, must outlive the object.
    BackgroundFile(QString path, const RunLoop& runLoop);
    // Waits for the disk as flush() does.
    ~BackgroundFile() override;

    [[nodiscard]] std::optional<QByteArray> read() override;
    void write(Contents contents) override;
    void flush() override;
    [[nodiscard]] bool putAside() override;

private:
    void writeNext();

    const QString m_path;
    const RunLoop& m_runLoop;
    QMutex m_mutex;
    Contents m_next;      // guarded by the mutex
    QByteArray m_written; // the writing thread's, as the next
    bool m_isFailing = false;
    QThreadPool m_thread;
};

} // namespace dorvane
