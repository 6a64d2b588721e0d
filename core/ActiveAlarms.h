// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/ArchivedList.h"
#include "core/RestoredAlarms.h"

#include <QStringList>

#include <optional>

namespace dorvane {

class AlarmDelegate;
class Clock;

// The running alarms across a restart: written when the program quits, put back into the clock when
// it starts. Main thread only.
class ActiveAlarms {
public:
    ActiveAlarms(UserDefaults& defaults, const AlarmArchive& archive, RunLoop& runLoop,
                 Clock& clock);

    // What was stored elsewhere since the start, or could not be read by then, is kept in the list.
    void storeActiveAlarms();

    // What ran when the program ended.
    struct Left {
        std::vector<RunningAlarm> running;  // as the clock listed them
        QStringList marks;                  // of lists that were stored by then, or may have been
        std::vector<AlarmPtr> undated = {}; // of which nobody can read when they are due
        bool isStored = false;              // the newest of those lists holds the same
    };

    // See RestoredAlarms.
    void setPausedUntil(const std::optional<Instant>& until) { m_restored.setPausedUntil(until); }

    void putBackPaused() { m_restored.putBackPaused(); }

    // Puts the alarms of the run before back and makes `delegate` theirs: what it left without
    // storing it, as it was, unless a list was stored since, which is then the newer one; else the
    // stored list, see RestoredAlarms, and where that is out of reach what was left stands for it.
    // What was left while no list was in reach comes back beside the stored one. What is stored
    // stays. Once.
    using Decisions = RestoredAlarms::Decisions;
    Decisions restoreActiveAlarms(AlarmDelegate& delegate, const std::optional<Left>& left = {});

    // The same for what came into reach after that: a list, or what was left, beside what runs by
    // now. Nothing where there is no such thing.
    [[nodiscard]] std::optional<Decisions> restoreLate(const std::optional<Left>& left);
    // That it was left is known before the list is: what that holds was there then, or had been
    // deleted by then.
    void expect(const Left& left);

    // Sounds have other paths now. The stored list stays, as its mark does.
    void replaceSounds(const QHash<QString, QString>& moved);

    // False when nothing was ever stored, or it is lost or out of reach.
    [[nodiscard]] bool hadStored() const { return m_hadStored; }
    // What tells the stored list from any other, also while it is out of reach; empty for none.
    [[nodiscard]] QStringList marks() const;
    // Called when what was decided has turned out otherwise, see RestoredAlarms.
    void setCorrected(RestoredAlarms::Corrected corrected) {
        m_restored.setCorrected(std::move(corrected));
    }
    [[nodiscard]] bool areResumed() const { return m_areResumed; }

private:
    // Read at the start, and written at the end: nothing of it is worth remembering between.
    [[nodiscard]] ArchivedList list() const;
    void goBeyond(const QStringList& marks);
    [[nodiscard]] Decisions putBack(const Left& all, bool resumes);
    [[nodiscard]] std::vector<AlarmPtr> endedHere() const;
    [[nodiscard]] std::vector<AlarmPtr> newIn(const std::vector<AlarmPtr>& stored) const;

    UserDefaults& m_defaults;
    const AlarmArchive& m_archive;
    const RunLoop& m_runLoop;
    Clock& m_clock;
    RestoredAlarms m_restored;
    AlarmDelegate* m_delegate = nullptr;
    QStringList m_beyond; // of lists out of reach that what was left goes beyond
    QByteArray m_known;   // the list as it was last read or written here, without what others added
    bool m_hadStored = false;
    bool m_areResumed = false;
};

} // namespace dorvane
