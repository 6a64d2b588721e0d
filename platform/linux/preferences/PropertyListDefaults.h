// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/linux/preferences/PreferencesFile.h"
#include "platform/linux/state/WritingThread.h"
#include "platform/RunLoop.h"

#include <vector>

namespace dorvane {

// One domain in one property-list file, read at once and written in the binary format by a thread
// of its own. Other programs may change the file meanwhile: keys that were not changed here keep
// what they wrote, and keys nobody here knows are kept. See PreferencesFile for what becomes of a
// file that is damaged, or cannot be read, or appears after the start.
class PropertyListDefaults final : public UserDefaults {
public:
    // `path` is the full path of the file, which need not exist, nor its folder. The format and the
    // run loop must outlive the object.
    PropertyListDefaults(const QString& path, const PropertyListFormat& format, RunLoop& runLoop);

    [[nodiscard]] QVariant value(const QString& key) const override;
    // An invalid value removes the key.
    void setValue(const QString& key, const QVariant& value) override;
    void removeValue(const QString& key) override;
    void registerDefaults(const QVariantMap& defaults) override;
    void setJoin(const QString& key, Join join) override;
    void synchronize(Written written = {}) override;
    [[nodiscard]] bool finish() override;

    // Looks, by the other thread, whether there is a file by now, and joins what it holds; then
    // calls back.
    void lookAgain(std::function<void()> looked);

    // Called when what changed cannot be written, once until it can be again; with what keeps it
    // from the disk, in words for the user.
    void setFailing(std::function<void(const QString& problem)> failing) {
        m_failing = std::move(failing);
    }

    // Until what could not be written, and did not change since, is tried again.
    static constexpr RunLoop::Milliseconds pause = std::chrono::seconds(30);

private:
    using Problem = std::optional<QString>;
    // What waits, and the last change that it waits for.
    struct Waiting {
        quint64 change = 0;
        Written written;
    };
    struct Failure {
        QString problem;
        quint64 upTo = 0;
    };
    struct Change {
        QVariant value; // invalid for a removed key
        quint64 number = 0;
    };

    struct Writing {
        quint64 number = 0;
        quint64 upTo = 0; // the last change that it takes along
        PreferencesFile::Changes changes;
    };

    void write();
    void startWriting();
    void takeOutcome(quint64 number);
    void takeOver(const Writing& writing);
    void tell(quint64 upTo, const Problem& problem);

    RunLoop& m_runLoop;
    PreferencesFile::Joins m_joins;
    QVariantMap m_stored;            // what the file held when it was last read or written
    QMap<QString, Change> m_changes; // which are not known to be on the disk
    QVariantMap m_registered;
    quint64 m_lastChange = 0;
    std::vector<Waiting> m_waiting;
    RunLoopTimer m_retry;
    std::optional<Failure> m_failed; // the last writing
    std::function<void(const QString& problem)> m_failing;

    // One writing at a time, from write() to takeOutcome(). Between them the file and the outcome
    // are the thread's.
    std::optional<Writing> m_writing;
    quint64 m_writings = 0;
    PreferencesFile m_file;
    Problem m_outcome;
    Lifeline<PropertyListDefaults> m_lifeline{*this};
    WritingThread m_thread; // last: its jobs use the others
};

} // namespace dorvane
