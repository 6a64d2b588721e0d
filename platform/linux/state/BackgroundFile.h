// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/linux/preferences/PlainFile.h"
#include "platform/linux/state/WritingThread.h"
#include "platform/StateFile.h"

#include <QMutex>
#include <QString>

#include <vector>

namespace dorvane {

class RunLoop;

// A file of the user's alone that is written by a thread of its own.
class BackgroundFile final : public StateFile {
public:
    // `path` is the full path; its folder is made when it is missing. The run loop, which dates the
    // names of files that are put aside and brings word of what was written, must outlive the
    // object.
    BackgroundFile(QString path, RunLoop& runLoop);

    [[nodiscard]] std::optional<QByteArray> read() override;
    void write(Contents contents, Written written = {}) override;
    void flush() override;
    void setFound(Found found) override { m_found = std::move(found); }
    void lookAgain(std::function<void()> looked) override;
    [[nodiscard]] bool putAside() override;

private:
    void writeNow(const Contents& make);
    [[nodiscard]] std::optional<QString> replace(const QByteArray& contents);
    [[nodiscard]] bool isKnown(const PlainFile::Stamp& stamp);
    [[nodiscard]] bool holdsBack();
    void tellOfFound(const PlainFile& file);

    const QString m_path;
    RunLoop& m_runLoop;
    QMutex m_mutex;
    Contents m_last;
    std::vector<Written> m_waiting;          // guarded by the mutex, as the next two
    std::optional<PlainFile::Stamp> m_known; // of what was read or written here
    bool m_isFound = false;                  // another, of which nobody has been told yet
    QByteArray m_written;                    // the writing thread's, as the next; or read here
    bool m_isFailing = false;
    Found m_found;
    Lifeline<BackgroundFile> m_lifeline{*this};
    WritingThread m_thread; // last: its jobs use the others
};

} // namespace dorvane
