// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "control/AlarmRequest.h"
#include "core/Coalescer.h"
#include "core/RingEvent.h"
#include "platform/Lifeline.h"
#include "platform/NotificationCenter.h"
#include "platform/RemoteControl.h"

#include <functional>
#include <vector>

namespace dorvane {

class AlarmPause;
class Clock;
class LastDeletion;
class StoredAlarms;

// Carries out what other programs ask, by the functions that the editor and the menu use: an alarm
// made here differs in nothing from one made there. Main thread only.
class AlarmControl final : public RemoteControl {
public:
    using Command = std::function<void(const AlarmPtr& alarm)>;
    using Found = std::function<void(const std::variant<QString, Refusal>& found)>;

    // What it works with; all of it must outlive it.
    struct Surroundings {
        RunLoop& runLoop;
        NotificationCenter& notifications;
        Clock& clock;
        StoredAlarms& storedAlarms;
        AlarmPause& pause;
        LastDeletion& lastDeletion;

        // What the menu and the snooze window do with an alarm: start it, answer it while it rings,
        // end it, end it with its window.
        Command schedule;
        // Starts one of the library: the alarm that runs then, or null when its moment has passed.
        std::function<AlarmPtr(const Alarm& stored)> start;
        std::function<void(const AlarmPtr& alarm, qint64 minutes)> snooze;
        std::function<void()> quick = {}; // opens the field for an alarm in one line
        Command clear;
        Command end;
        Command remove;
        // Puts what a running alarm was edited to in its place.
        std::function<void(const AlarmPtr& old, const AlarmPtr& alarm)> replace;
        // Opens the window of all alarms.
        std::function<void()> showAlarms;
        // Whether there was something to skip.
        std::function<bool(const AlarmPtr& alarm)> skip;

        // What is not said of an alarm.
        std::function<RingDefaults()> ringDefaults;
        // The full path of the sound of a name, or of a file, which may have to be copied first.
        std::function<void(const QString& nameOrPath, Found found)> findSound;
        std::function<void(const QString& name, Found found)> findVoice;

        // Calls back, later and once, when all that runs and is stored is on the disk.
        std::function<void(const Saved& saved)> save;

        // The break reminder.
        std::function<bool()> breaksRun;
        std::function<void()> startBreaks;
        std::function<void()> stopBreaks;
        std::function<void()> skipBreak;
        // When the next break begins, in seconds since the epoch; 0 while none is timed.
        std::function<RemoteBreaks()> breaks = {};
    };

    explicit AlarmControl(Surroundings surroundings);

    void addTimer(const Asker& asker, quint32 minutes, const QString& title) override;
    void addAlarm(const Asker& asker, const QVariantMap& description) override;
    [[nodiscard]] Outcome quick() override;
    void editAlarm(const Asker& asker, const QString& identity,
                   const QVariantMap& changes) override;
    void editStored(const Asker& asker, const QString& title, const QVariantMap& changes) override;
    [[nodiscard]] AlarmAnswer startStored(const QString& title) override;
    [[nodiscard]] AlarmListing runningAlarms() override;
    [[nodiscard]] AlarmListing storedAlarms() override;
    [[nodiscard]] AlarmListing nextAlarms(quint32 most) override;
    [[nodiscard]] Outcome snooze(const QString& identity) override;
    [[nodiscard]] Outcome snoozeFor(const QString& identity, quint32 minutes) override;
    [[nodiscard]] Outcome clear(const QString& identity) override;
    [[nodiscard]] Outcome remove(const QString& identity) override;
    [[nodiscard]] Outcome removeStored(const QString& title) override;
    [[nodiscard]] Outcome skip(const QString& identity) override;
    [[nodiscard]] Outcome pause(qint64 until) override;
    [[nodiscard]] Outcome resume() override;
    [[nodiscard]] AlarmAnswer undo() override;
    [[nodiscard]] Outcome showAlarms() override;
    [[nodiscard]] Outcome startBreaks() override;
    [[nodiscard]] Outcome stopBreaks() override;
    [[nodiscard]] Outcome skipBreak() override;
    [[nodiscard]] RemoteState state() const override;
    void whenSaved(const Saved& saved) override;
    void setListener(RemoteListener listener) override { m_listener = std::move(listener); }

    // To be told what befalls an alarm that rings, and that the breaks are others.
    void befell(RingEvent event, const AlarmPtr& alarm);
    void breaksChanged() { changed(); }

    // Whether one more alarm may run.
    [[nodiscard]] bool hasRoom() const;

    // Writes down what waits to be written.
    void finish() { m_store.finish(); }

private:
    struct Making;
    using MakingPtr = std::shared_ptr<Making>;

    [[nodiscard]] std::variant<AlarmRequest, Refusal> read(const QVariantMap& description) const;
    void edit(const Asker& asker, const AlarmPtr& alarm, const QVariantMap& changes);
    void make(const AlarmRequest& request, const Asker& asker, const AlarmPtr& edited = nullptr);
    void findSound(const MakingPtr& making);
    void findVoice(const MakingPtr& making);
    void build(const MakingPtr& making);
    void finishMaking(Making& making, const AlarmPtr& alarm);
    void finishEditing(Making& making, const AlarmPtr& alarm);
    [[nodiscard]] AlarmPtr running(const QString& identity) const;
    [[nodiscard]] AlarmPtr stored(const QString& title);
    [[nodiscard]] AlarmAnswer take(const AlarmPtr& alarm);
    [[nodiscard]] RemoteState lookedUpState() const;
    void changed();
    [[nodiscard]] Outcome
    onRunning(const QString& identity,
              const std::function<Outcome(const AlarmPtr& alarm)>& action) const;
    [[nodiscard]] Outcome snoozeRinging(const QString& identity,
                                        std::optional<quint32> minutes) const;
    [[nodiscard]] Outcome onBreaks(const std::function<void()>& action) const;
    void store();
    void tellState();

    const Surroundings m_surroundings;
    RemoteListener m_listener;
    std::vector<std::weak_ptr<Making>> m_makings; // also those that were given up meanwhile
    RemoteState m_told;
    // Many may ask for it, and thousands of alarms may run.
    mutable std::optional<RemoteState> m_state;
    mutable std::chrono::milliseconds m_stateLookedUp{0}; // uptime
    std::vector<AlarmPtr> m_toStore;
    std::vector<Saved> m_toldWhenSaved;
    Coalescer m_store;
    Coalescer m_stateChanged;
    Coalescer m_alarmsChanged;
    Coalescer m_storedChanged;
    NotificationCenter::Observation m_alarmsObservation;
    NotificationCenter::Observation m_storedObservation;
    Lifeline<AlarmControl> m_lifeline{*this};
};

} // namespace dorvane
