// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/ActiveAlarms.h"
#include "core/RingEvent.h"
#include "journal/AnnouncementPlan.h"
#include "journal/JournalContents.h"
#include "journal/JournalFormat.h"
#include "platform/Lifeline.h"
#include "platform/NotificationCenter.h"
#include "platform/RunLoop.h"
#include "platform/StateFile.h"

#include <functional>
#include <optional>

namespace dorvane {

class Clock;

// The program's memory of what it was doing, for the start after an end that nobody wanted: which
// alarms run, what rang, what went unanswered. Written at most once a second, and only when
// something changed; never read again while the program runs. Main thread only.
class Journal {
public:
    struct Surroundings {
        RunLoop& runLoop;
        NotificationCenter& notifications;
        const Clock& clock;
        const PropertyListFormat& format;
        StateFile& file;
        // The end of the pause, to be written with what runs. May be empty.
        std::function<std::optional<Instant>()> pausedUntil = {};
    };

    // All of the surroundings must outlive the journal, which watches the clock from now on and
    // writes nothing before open().
    explicit Journal(Surroundings surroundings);

    // Reads what earlier runs left, once, and answers what ran at the end of the last one. Waits
    // for the disk. A journal of which something cannot be read is put aside, and answers nothing.
    [[nodiscard]] std::optional<ActiveAlarms::Left> read();

    // Called when the journal of earlier runs comes into reach only now, with what read() would
    // have answered; with nothing where it is a copy of ours from a while ago. Until open() is
    // called again nothing is written.
    void setCame(std::function<void(const std::optional<ActiveAlarms::Left>& left)> came) {
        m_came = std::move(came);
    }
    // Whether read() found one.
    [[nodiscard]] bool hadFile() const { return m_hadFile; }
    // Looks whether it has come; then calls back, later.
    void lookAgain(std::function<void()> looked) {
        m_surroundings.file.lookAgain(std::move(looked));
    }
    // After read(): the end of a pause that the last run left.
    [[nodiscard]] const std::optional<Instant>& pausedUntil() const { return m_before.pausedUntil; }

    // What became of the alarms at this start.
    struct Restored {
        bool areResumed = false; // false: they are those of the stored list,
        bool hadStored = true;   // if there was one that could be read
        RestoredAlarms::Decisions decisions = {};
        QStringList storedMarks = {};
        std::vector<ToldAlarm> announced = {}; // since the last run
    };

    // From now on the journal is written. Adds what is missing now: what has passed meanwhile, but
    // for what the user has seen announced, and after an end that was none in order what ran then,
    // where the stored list was put back. After read(), when the clock has its alarms back, and
    // again when more came into reach.
    void open(const Restored& restored);

    void note(RingEvent event, const AlarmPtr& alarm);
    // An alarm that moved on had been due again before it was answered.
    void noteCameRoundAgain(const AlarmPtr& alarm, const QDateTime& due);
    void noteCrash(const QString& report);

    // What the user has not been told yet, or has not answered.
    [[nodiscard]] const std::vector<MissedAlarm>& missed() const { return m_contents.missed; }
    // Called when missed() became another, but for answered().
    void setMissedChanged(std::function<void()> changed) { m_missedChanged = std::move(changed); }
    // The user has decided on everything that was missed.
    void answered();

    // The clock was wrong at the start: with what has turned out otherwise.
    void correct(const RestoredAlarms::Decisions& changes);

    // Has everything written now, and calls back when it is on the disk; see StateFile. Before
    // open(), which comes soon after a start, both wait for that.
    void save(const StateFile::Written& written);

    enum class Ends { Now, Perhaps }; // perhaps: the session may be kept after all
    // When the program ends, with the marks of the list that is stored by now, or that could not be
    // stored yet. That, an end that is none and whatever happens after it leave the journal the
    // newer one. Waits for the disk.
    void close(const QStringList& marks, bool isStored, Ends ends);

    // How long what was missed is kept: all of it, within reason, but that what goes unanswered day
    // and night displaces itself. Of what rang only the last is kept.
    static constexpr std::chrono::days memory{30};
    static constexpr std::size_t mostEvents = 20'000;
    static constexpr std::size_t mostOfOneTitle = 100;
    static constexpr std::size_t mostRings = 500;

private:
    [[nodiscard]] std::optional<ActiveAlarms::Left> take(const std::optional<QByteArray>& data);
    void miss(const std::vector<RunningAlarm>& missing, MissedAlarm::Reason reason);
    void notePassed(const std::vector<RunningAlarm>& movedOn);
    void unmiss(const Alarm& alarm);
    [[nodiscard]] Instant now() const;
    void add(JournalEvent::What what, Instant due, const QString& text);
    [[nodiscard]] bool hasRung(const RunningAlarm& running) const;
    [[nodiscard]] bool wasAnnounced(const RunningAlarm& running) const;
    void forgetOld();
    void changed(RunLoop::Milliseconds notBefore = {});
    void write(bool isOrderly, const StateFile::Written& written = {});

    Surroundings m_surroundings;
    JournalFormat m_format;
    JournalContents m_contents;
    JournalContents m_before; // what read() found, until open()
    std::vector<ToldAlarm> m_announced;
    const RunLoop::Milliseconds m_start; // of uptime, as m_nextWrite
    bool m_isOpen = false;
    bool m_hadFile = false;
    std::vector<StateFile::Written> m_toSave; // waits for open()
    bool m_mayWrite = true;                   // false: what is there could not be put aside
    RunLoop::Milliseconds m_nextWrite{0};     // not before
    RunLoopTimer m_writeTimer;
    bool m_isRetrying = false; // by that timer
    std::function<void()> m_missedChanged;
    std::function<void(const std::optional<ActiveAlarms::Left>&)> m_came;
    NotificationCenter::Observation m_alarmsDidChange;
    Lifeline<Journal> m_lifeline{*this};
};

} // namespace dorvane
