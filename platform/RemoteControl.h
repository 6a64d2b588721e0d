// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <optional>
#include <variant>

namespace dorvane {

// A request that is turned down.
struct Refusal {
    QString name;   // the last part of the error's name on the bus: "PastDate"
    QString reason; // for a person to read, and which key of the request is wrong
    friend bool operator==(const Refusal&, const Refusal&) = default;
};

// The identity of the running alarm that came of a request, or why none did.
using AlarmAnswer = std::variant<QString, Refusal>;

// Nothing when a request was carried out.
using Outcome = std::optional<Refusal>;

// What others see of the program at a glance.
struct RemoteBreaks {
    QString phase = QStringLiteral("off"); // or "working", "waiting" for somebody, "resting"
    qint64 next = 0; // seconds since the epoch, when the next one begins; 0 unless "working"
    qint64 end = 0;  // when the present one ends; 0 unless "resting"
    friend bool operator==(const RemoteBreaks&, const RemoteBreaks&) = default;
};

struct RemoteState {
    qint64 nextDue = 0;  // seconds since the epoch; 0 while nothing is going to ring
    QString nextAlarm;   // its identity
    QStringList ringing; // identities
    bool breaksRun = false;
    RemoteBreaks breaks;
    bool isPaused = false;
    qint64 pausedUntil = 0; // seconds since the epoch; 0 for until it is resumed
    friend bool operator==(const RemoteState&, const RemoteState&) = default;
};

// Alarms as they are listed at one moment, told of one by one, as there may be thousands.
struct AlarmListing {
    std::size_t count = 0;
    std::function<QVariantMap(std::size_t index)> report; // below the count
};

// Who is told of changes, each call some turns of the loop after the change.
struct RemoteListener {
    enum class Event { Rang, Snoozed, Cleared, WentUnanswered };

    std::function<void(Event event, const QString& identity, const QString& title)> befell;
    // However many changes there were in the last tenth of a second.
    std::function<void()> alarmsChanged;
    std::function<void()> storedAlarmsChanged;
    std::function<void(const RemoteState& before, const RemoteState& now)> stateChanged;
};

// What other programs may ask of this one. The desktop's side calls it, by the table in
// platform/RemoteMethods.h; the program implements it. Main thread only.
class RemoteControl {
public:
    virtual ~RemoteControl() = default;

    // Called once, at once or within some eight seconds: sounds are copied and voices asked for on
    // other threads, and who asks does not wait for ever. What is refused is never made later.
    using Made = std::function<void(const AlarmAnswer& answer)>;
    // Calls back, later or at once, with whether whoever asked still waits for an answer.
    using StillAsked = std::function<void(std::function<void(bool isAsked)> then)>;
    // Who has given up is not answered any more, and believes that nothing was made: so it is.
    struct Asker {
        Made made;
        StillAsked stillAsked;
    };

    // A timer of 1 minute or more; without a title it is one of the menu's.
    virtual void addTimer(const Asker& asker, quint32 minutes, const QString& title) = 0;
    // Opens the window that reads a timer or an alarm from one line.
    [[nodiscard]] virtual Outcome quick() = 0;
    // See docs/bus.md for what may stand in a description.
    virtual void addAlarm(const Asker& asker, const QVariantMap& description) = 0;
    // Changes a running or a stored alarm; what the description leaves out stays.
    virtual void editAlarm(const Asker& asker, const QString& identity,
                           const QVariantMap& changes) = 0;
    virtual void editStored(const Asker& asker, const QString& title,
                            const QVariantMap& changes) = 0;
    [[nodiscard]] virtual AlarmAnswer startStored(const QString& title) = 0;

    [[nodiscard]] virtual AlarmListing runningAlarms() = 0;
    [[nodiscard]] virtual AlarmListing storedAlarms() = 0;
    // Running alarms, soonest first and so those that ring before all others.
    [[nodiscard]] virtual AlarmListing nextAlarms(quint32 most) = 0;

    [[nodiscard]] virtual Outcome snooze(const QString& identity) = 0;
    // For other minutes than the alarm's own, this once.
    [[nodiscard]] virtual Outcome snoozeFor(const QString& identity, quint32 minutes) = 0;
    // Answers an alarm that rings; ends any other.
    [[nodiscard]] virtual Outcome clear(const QString& identity) = 0;
    // Ends an alarm for good, whether it rings or repeats.
    [[nodiscard]] virtual Outcome remove(const QString& identity) = 0;
    [[nodiscard]] virtual Outcome removeStored(const QString& title) = 0;
    // Has one that comes again go on, from what it is due for next, in silence.
    [[nodiscard]] virtual Outcome skip(const QString& identity) = 0;
    // Holds what comes again back: until so many seconds since the epoch, or with 0 until resumed.
    [[nodiscard]] virtual Outcome pause(qint64 until) = 0;
    [[nodiscard]] virtual Outcome resume() = 0;
    // Brings back what was deleted last: its title.
    [[nodiscard]] virtual AlarmAnswer undo() = 0;
    // Opens the window of all alarms.
    [[nodiscard]] virtual Outcome showAlarms() = 0;

    [[nodiscard]] virtual Outcome startBreaks() = 0;
    [[nodiscard]] virtual Outcome stopBreaks() = 0;
    [[nodiscard]] virtual Outcome skipBreak() = 0;

    [[nodiscard]] virtual RemoteState state() const = 0;

    // What keeps what was asked for from the disk, in words for the user; nothing when it is there.
    using Saved = std::function<void(const std::optional<QString>& problem)>;
    // Calls back, later and once, when all that was asked for so far would outlive the program.
    virtual void whenSaved(const Saved& saved) = 0;

    virtual void setListener(RemoteListener listener) = 0;
};

} // namespace dorvane
