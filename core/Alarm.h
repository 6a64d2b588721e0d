// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Instant.h"
#include "core/Weekday.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <optional>
#include <type_traits>

namespace dorvane {

class AlarmContext;
class AlarmDelegate;

// What to do and when: the one record that is passed around, with an identity of its own (two
// alarms with the same values are two alarms). Held by std::shared_ptr. Main thread only.
class Alarm : public std::enable_shared_from_this<Alarm> {
public:
    // The kinds, as the rows of the editor: rings in N minutes or hours, at a time on a date, on
    // ticked weekdays. Higher numbers count as weekday alarms when the due time is computed.
    enum Kind : qint64 { Relative = 0, Dated = 1, Weekly = 2 };

    // An alarm with every flag off, every number 0 and no texts or dates.
    [[nodiscard]] static std::shared_ptr<Alarm> create();
    // The same with a title and a time, which may be invalid for none.
    [[nodiscard]] static std::shared_ptr<Alarm> initWithTime(const QDateTime& time,
                                                             const QString& title);

    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;
    ~Alarm();

    // A new alarm with the same settings, and the due time as its stored time. Not copied: the
    // start it counts from, snoozes, and everything that belongs to ringing or to the menu.
    [[nodiscard]] std::shared_ptr<Alarm> copy(Instant now) const;

    // A new alarm with all that is stored of this one, its dates included, and nothing else.
    [[nodiscard]] std::shared_ptr<Alarm> storedCopy() const;
    // Whether the same is stored of both.
    [[nodiscard]] bool isStoredLike(const Alarm& other) const { return m_stored == other.m_stored; }

    // -- The due time ---------------------------------------------------------------------------

    // When the alarm is due, snoozes included, on a whole second; invalid for a dated or weekday
    // alarm that has no stored time. `now`, here and below, is what a relative alarm without a
    // start counts from.
    [[nodiscard]] QDateTime time(Instant now) const;
    // The stored time, which is not the due time: see time().
    [[nodiscard]] QDateTime storedTime() const;
    void setTime(const QDateTime& time);

    // The time of day that was asked for, while the stored time has another one: that of a night in
    // which clocks are set forward over it. Invalid otherwise.
    [[nodiscard]] QTime wishedTime() const { return m_stored.wishedTime; }
    void setWishedTime(QTime time) { m_stored.wishedTime = time; }
    // Sets the stored time, and what was asked for where that is another time of day.
    void setTimeWishedAt(const QDateTime& time, QTime wished);
    // The time of day of the alarm itself: what was asked for, and no snooze counts.
    [[nodiscard]] QTime timeOfDay(Instant now) const;

    // The moment a relative alarm counts from; now while none is stored.
    [[nodiscard]] QDateTime runTime(Instant now) const;
    [[nodiscard]] QDateTime storedRunTime() const;
    // Sets the moment, or none when invalid, and forgets all snoozes.
    void setRunTime(const QDateTime& runTime);

    // Moves the due time; snoozes add up until the next setRunTime().
    void snooze(qint32 minutes);
    [[nodiscard]] quint64 snoozedMinutes() const { return m_snoozedMinutes; }
    void setSnoozedMinutes(quint64 minutes) { setDue(m_snoozedMinutes, minutes); }

    // time() as an instant.
    [[nodiscard]] std::optional<Instant> due(Instant now) const;
    // Whether the due time moves on with the present: that of a relative alarm without a start.
    [[nodiscard]] bool countsFromNow() const;

    // Takes away all that says when the alarm is due, so that it never rings by itself: it stands
    // among the others as one that somebody has to look at.
    void forgetDue();

    // The whole seconds until the due time, truncated toward zero; 0 when there is no due time.
    [[nodiscard]] qint64 secondsFromNow(Instant now) const;
    // The same, split into whole minutes and the rest, both negative once the alarm is past.
    struct MinutesAndSeconds {
        qint64 minutes = 0;
        qint64 seconds = 0;
    };
    [[nodiscard]] MinutesAndSeconds minutesFromNow(Instant now) const;
    // The minute of the hour of the due time, 0 to 59.
    [[nodiscard]] int minute(Instant now) const;

    // Reports the alarm to its delegate when less than one whole second is left and it is not
    // triggered yet; never without a due time. Tells the delegate of each due time once when it
    // comes near, see nearness.
    void tick(Instant now);

    // The next whole second after `now` at which tick() has something to report; none while the
    // alarm is triggered, or has no due time.
    [[nodiscard]] std::optional<Instant> nextTick(Instant now) const;

    // How long before an alarm reports its delegate hears that it is going to.
    static constexpr std::chrono::seconds nearness{10};

    // Holds back what the alarm is due for before a moment; with none, nothing. While it is held it
    // reports nothing. Never stored.
    void setHeldUntil(const std::optional<Instant>& moment) { setDue(m_heldUntil, moment); }
    [[nodiscard]] const std::optional<Instant>& heldUntil() const { return m_heldUntil; }
    // Whether its due time is held back; never that of an alarm that rings.
    [[nodiscard]] bool isHeld(Instant now) const;

    // The clock's: called whenever the answer of nextTick() may have become another.
    void setDueChanged(std::function<void()> changed) { m_dueChanged = std::move(changed); }

    // Orders by the stored time of this alarm against the due time of the other; equal when either
    // is missing. Not symmetric, on purpose.
    [[nodiscard]] std::weak_ordering compare(const Alarm& other, Instant now) const;

    // For the log.
    [[nodiscard]] QString description() const;

    // -- Settings -------------------------------------------------------------------------------

    [[nodiscard]] const QString& title() const { return m_stored.title; }
    void setTitle(const QString& title) { m_stored.title = title; }
    [[nodiscard]] const QString& soundPath() const { return m_stored.soundPath; }
    void setSoundPath(const QString& path) { m_stored.soundPath = path; }
    // Takes what stands for the path there, if anything does. Whether it did.
    bool replaceSound(const QHash<QString, QString>& moved);
    [[nodiscard]] const QString& voiceName() const { return m_stored.voiceName; }
    void setVoiceName(const QString& name) { m_stored.voiceName = name; }

    [[nodiscard]] qint64 selRowNo() const { return m_stored.selRowNo; }
    // Counts minutes or hours; else it is due at a time of day.
    [[nodiscard]] bool isRelative() const { return !isTimeWithDate() && selRowNo() < Weekly; }
    void setSelRowNo(qint64 kind) { setDue(m_stored.selRowNo, kind); }
    // Minutes or hours of a relative alarm, see isMinuteUnits().
    [[nodiscard]] qint64 ringWithinUnits() const { return m_stored.ringWithinUnits; }
    void setRingWithinUnits(qint64 units);
    // Minutes.
    [[nodiscard]] qint64 snoozeTime() const { return m_stored.snoozeTime; }
    void setSnoozeTime(qint64 minutes) { m_stored.snoozeTime = minutes; }

    [[nodiscard]] bool isPlaySound() const { return m_stored.isPlaySound; }
    void setIsPlaySound(bool on) { m_stored.isPlaySound = on; }
    [[nodiscard]] bool isTimeWithDate() const { return m_stored.isTimeWithDate; }
    void setIsTimeWithDate(bool on) { setDue(m_stored.isTimeWithDate, on); }
    [[nodiscard]] bool isMinuteUnits() const { return m_stored.isMinuteUnits; }
    void setIsMinuteUnits(bool on);
    [[nodiscard]] bool isSpeakAlarmName() const { return m_stored.isSpeakAlarmName; }
    void setIsSpeakAlarmName(bool on) { m_stored.isSpeakAlarmName = on; }
    // Despite the name, plays for a limited time and fades out at its end.
    [[nodiscard]] bool shouldFadeIn() const { return m_stored.shouldFadeIn; }
    void setShouldFadeIn(bool on) { m_stored.shouldFadeIn = on; }
    // The sound goes on, for as long as the alarm rings.
    [[nodiscard]] bool ringsUntilAnswered() const { return m_stored.ringsUntilAnswered; }
    void setRingsUntilAnswered(bool on) { m_stored.ringsUntilAnswered = on; }
    // The sound begins quietly and is at its volume after ten seconds.
    [[nodiscard]] bool startsSoftly() const { return m_stored.startsSoftly; }
    void setStartsSoftly(bool on) { m_stored.startsSoftly = on; }
    [[nodiscard]] bool shouldRepeat() const { return m_stored.shouldRepeat; }
    void setShouldRepeat(bool on) { m_stored.shouldRepeat = on; }
    [[nodiscard]] bool shouldUseEveryDay() const { return m_stored.shouldUseEveryDay; }
    void setShouldUseEveryDay(bool on) { m_stored.shouldUseEveryDay = on; }
    // Whether a weekday alarm keeps its days after it rang.
    [[nodiscard]] bool shouldUseForever() const { return m_stored.shouldUseForever; }
    void setShouldUseForever(bool on) { m_stored.shouldUseForever = on; }
    [[nodiscard]] bool isExisInActiveAlarmList() const { return m_stored.isExisInActiveAlarmList; }
    void setIsExisInActiveAlarmList(bool on) { m_stored.isExisInActiveAlarmList = on; }
    [[nodiscard]] bool isDefaultAlarm() const { return m_stored.isDefaultAlarm; }
    void setIsDefaultAlarm(bool on) { m_stored.isDefaultAlarm = on; }

    // The days of a weekday alarm, all at once and one by one.
    [[nodiscard]] WeekdaySet weekdays() const { return m_stored.weekdays; }
    void setWeekdays(WeekdaySet days) { m_stored.weekdays = days; }
    [[nodiscard]] bool isRunOnMon() const { return m_stored.weekdays.contains(Weekday::Monday); }
    void setIsRunOnMon(bool on) { m_stored.weekdays.set(Weekday::Monday, on); }
    [[nodiscard]] bool isRunOnTue() const { return m_stored.weekdays.contains(Weekday::Tuesday); }
    void setIsRunOnTue(bool on) { m_stored.weekdays.set(Weekday::Tuesday, on); }
    [[nodiscard]] bool isRunOnWed() const { return m_stored.weekdays.contains(Weekday::Wednesday); }
    void setIsRunOnWed(bool on) { m_stored.weekdays.set(Weekday::Wednesday, on); }
    [[nodiscard]] bool isRunOnThu() const { return m_stored.weekdays.contains(Weekday::Thursday); }
    void setIsRunOnThu(bool on) { m_stored.weekdays.set(Weekday::Thursday, on); }
    [[nodiscard]] bool isRunOnFri() const { return m_stored.weekdays.contains(Weekday::Friday); }
    void setIsRunOnFri(bool on) { m_stored.weekdays.set(Weekday::Friday, on); }
    [[nodiscard]] bool isRunOnSat() const { return m_stored.weekdays.contains(Weekday::Saturday); }
    void setIsRunOnSat(bool on) { m_stored.weekdays.set(Weekday::Saturday, on); }
    [[nodiscard]] bool isRunOnSun() const { return m_stored.weekdays.contains(Weekday::Sunday); }
    void setIsRunOnSun(bool on) { m_stored.weekdays.set(Weekday::Sunday, on); }

    // What else was stored with the alarm, by versions that know more: see ArchivedObject.
    [[nodiscard]] const QVariantMap& otherValues() const { return m_stored.otherValues; }
    void setOtherValues(const QVariantMap& values) { m_stored.otherValues = values; }

    // -- While running, never stored ------------------------------------------------------------

    // The alarm rings.
    [[nodiscard]] bool isTriggered() const { return m_isTriggered; }
    void setIsTriggered(bool on) { setDue(m_isTriggered, on); }
    // What the clock knows the alarm by while it runs, and the one that takes its place when it is
    // edited; empty before.
    [[nodiscard]] const QString& identity() const { return m_identity; }
    void setIdentity(const QString& identity) { m_identity = identity; }
    // The alarm is, or was, among the clock's running alarms.
    [[nodiscard]] bool isActive() const { return m_isActive; }
    void setIsActive(bool on) { m_isActive = on; }

    [[nodiscard]] const std::shared_ptr<AlarmContext>& context() const { return m_context; }
    void setContext(std::shared_ptr<AlarmContext> context);

    // Not owned; set to null before the delegate goes.
    [[nodiscard]] AlarmDelegate* delegate() const { return m_delegate; }
    void setDelegate(AlarmDelegate* delegate) { m_delegate = delegate; }

    // The menu entry that shows the alarm; not owned.
    [[nodiscard]] QObject* menuItem() const { return m_menuItem; }
    void setMenuItem(QObject* item) { m_menuItem = item; }

private:
    Alarm();

    void countHours();

    // Sets what decides when the alarm reports.
    template<typename Field>
    void setDue(Field& field, const std::type_identity_t<Field>& value) {
        field = value;
        if (m_dueChanged)
            m_dueChanged();
    }

    // What preferences keep of an alarm.
    struct Stored {
        QString title;
        QString soundPath;
        QString voiceName;
        QVariantMap otherValues;
        std::optional<Instant> time;
        std::optional<Instant> runTime;
        QTime wishedTime;
        qint64 snoozeTime = 0;
        qint64 ringWithinUnits = 0;
        qint64 selRowNo = Relative;
        WeekdaySet weekdays;
        bool isPlaySound = false;
        bool isTimeWithDate = false;
        bool isMinuteUnits = false;
        bool isSpeakAlarmName = false;
        bool shouldFadeIn = false;
        bool ringsUntilAnswered = false;
        bool startsSoftly = false;
        bool shouldRepeat = false;
        bool shouldUseEveryDay = false;
        bool shouldUseForever = false;
        bool isExisInActiveAlarmList = false;
        bool isDefaultAlarm = false;
        friend bool operator==(const Stored&, const Stored&) = default;
    };

    Stored m_stored;
    QString m_identity;
    // The end of the hours from the moment it counts from, where it counts such.
    std::optional<Instant> m_hoursLater;
    std::optional<Instant> m_heldUntil;
    quint64 m_snoozedMinutes = 0;
    bool m_isTriggered = false;
    bool m_isActive = false;

    std::function<void()> m_dueChanged;
    std::optional<Instant> m_announcedDue; // the due time that the delegate has heard of
    std::shared_ptr<AlarmContext> m_context;
    AlarmDelegate* m_delegate = nullptr;
    QPointer<QObject> m_menuItem;
};

using AlarmPtr = std::shared_ptr<Alarm>;

} // namespace dorvane
