// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/AlarmRequest.h"

#include "control/AlarmDraft.h"
#include "core/AlarmBuilding.h"
#include "core/AlarmKeys.h"
#include "core/IntervalRule.h"
#include "core/WrittenDate.h"

#include <algorithm>

namespace dorvane {

namespace {

Outcome missingIn(const AlarmDraft& draft) {
    if (!draft.title)
        return keyRefusal("MissingKey", key::title, QStringLiteral("is needed"));
    if (draft.title->trimmed().isEmpty())
        return invalidKey(key::title, QStringLiteral("must not be empty"));
    if (!draft.seconds && !draft.minutes && !draft.hours && !draft.time)
        return keyRefusal("MissingKey", key::time,
                          QStringLiteral("or \"minutes\" or \"hours\" is needed"));
    return std::nullopt;
}

// An alarm counts whole minutes: it began to before it was set.
Outcome takeSeconds(qint64 seconds, AlarmRequest& request) {
    constexpr qint64 minute = 60;
    if (seconds < 1 || seconds > longestInterval(true) * minute)
        return invalidKey(
            key::seconds,
            QStringLiteral("must be from 1 to %1 (a year)").arg(longestInterval(true) * minute));
    const qint64 minutes = (seconds + minute - 1) / minute;
    request.form.row = Alarm::Relative;
    request.form.isMinuteUnits = true;
    request.form.interval = QString::number(minutes);
    request.counted = std::chrono::seconds(minutes * minute - seconds);
    return std::nullopt;
}

Outcome takeInterval(const AlarmDraft& draft, AlarmForm& form) {
    form.row = Alarm::Relative;
    form.isMinuteUnits = draft.minutes.has_value();
    const qint64 units = draft.minutes ? *draft.minutes : *draft.hours;
    const qint64 longest = longestInterval(form.isMinuteUnits);
    if (units < 1 || units > longest)
        return invalidKey(form.isMinuteUnits ? key::minutes : key::hours,
                          QStringLiteral("must be from 1 to %1 (a year)").arg(longest));
    form.interval = QString::number(units);
    return std::nullopt;
}

// Without a date, when the clock shows the time next.
Outcome takeMoment(const AlarmDraft& draft, const QDateTime& now, AlarmForm& form) {
    form.row = Alarm::Dated;
    form.atTimePicker = *draft.time;
    form.shouldUseEveryDay = draft.everyDay.value_or(false);
    const bool isAhead = fullDateWithTimeFrom(*draft.time, now.date(), now) > now;
    form.atDatePicker = now.date().addDays(isAhead ? 0 : 1);
    if (draft.date) {
        const auto date = dateRead(*draft.date, QLocale::system(), now, *draft.time).date;
        if (!date)
            return invalidKey(key::date, QStringLiteral("must be a date such as 2026-12-01"));
        form.atDatePicker = *date;
    }
    if (fullDateWithTimeFrom(form.atTimePicker, form.atDatePicker, now) <= now)
        return keyRefusal("PastDate", draft.isDateKept ? key::time : key::date,
                          form.atDatePicker.toString(Qt::ISODate) +
                              form.atTimePicker.toString(QStringLiteral(" HH:mm")) +
                              QStringLiteral(" is past"));
    return std::nullopt;
}

void takeWeekdays(const AlarmDraft& draft, AlarmForm& form) {
    form.row = Alarm::Weekly;
    form.atAlarmTimePicker = *draft.time;
    form.weekdays = *draft.weekdays;
    form.shouldUseForever = draft.everyWeek.value_or(false);
}

Outcome takeSnooze(const AlarmDraft& draft, AlarmForm& form) {
    if (!draft.snooze)
        return std::nullopt;
    if (std::find(snoozeLengths.begin(), snoozeLengths.end(), *draft.snooze) ==
        snoozeLengths.end()) {
        auto sorted = snoozeLengths;
        std::sort(sorted.begin(), sorted.end());
        QStringList lengths;
        for (const qint64 length : sorted)
            lengths << QString::number(length);
        return invalidKey(key::snooze, QStringLiteral("must be of these minutes: ") +
                                           lengths.join(QStringLiteral(", ")));
    }
    form.snoozeTime = *draft.snooze;
    return std::nullopt;
}

Outcome takeWhen(const AlarmDraft& draft, const QDateTime& now, AlarmRequest& request) {
    request.form.shouldRepeat = draft.repeat.value_or(false);
    if (draft.seconds)
        return takeSeconds(*draft.seconds, request);
    if (!draft.time)
        return takeInterval(draft, request.form);
    if (!draft.weekdays)
        return takeMoment(draft, now, request.form);
    takeWeekdays(draft, request.form);
    return std::nullopt;
}

// What is not said of the time of an edited alarm is as it was, as far as that goes with what is.
// Nothing of it is in the draft when it says nothing of the time.
void completeWhen(AlarmDraft& draft, const AlarmForm& form) {
    if (draft.seconds || draft.minutes || draft.hours) {
        if (!draft.repeat && form.row == Alarm::Relative && form.shouldRepeat)
            draft.repeat = true;
        return;
    }
    if (!draft.time && !draft.date && !draft.weekdays && form.row == Alarm::Relative) {
        if (draft.repeat)
            (form.isMinuteUnits ? draft.minutes : draft.hours) = intervalValue(form.interval);
        return;
    }
    if (!draft.time && !draft.date && !draft.weekdays && !draft.everyDay && !draft.everyWeek)
        return;
    if (!draft.time && form.row != Alarm::Relative)
        draft.time = form.row == Alarm::Weekly ? form.atAlarmTimePicker : form.atTimePicker;
    if (!draft.date && !draft.weekdays && form.row == Alarm::Weekly)
        draft.weekdays = form.weekdays;
    if (draft.weekdays && !draft.everyWeek && form.row == Alarm::Weekly)
        draft.everyWeek = form.shouldUseForever;
    if (draft.weekdays || form.row != Alarm::Dated)
        return;
    if (!draft.everyDay)
        draft.everyDay = form.shouldUseEveryDay;
    draft.isDateKept = !draft.date && !*draft.everyDay;
    if (draft.isDateKept)
        draft.date = form.atDatePicker.toString(Qt::ISODate);
}

// What is not said stays as the form has it.
void takeSettings(const AlarmDraft& draft, AlarmRequest& request) {
    AlarmForm& form = request.form;
    form.title = draft.title.value_or(form.title);
    form.shouldFadeIn = draft.fade.value_or(form.shouldFadeIn);
    form.ringsUntilAnswered = draft.untilAnswered.value_or(form.ringsUntilAnswered);
    form.startsSoftly = draft.softly.value_or(form.startsSoftly);
    request.sound = draft.sound;
    request.voice = draft.voice.value_or(QString());
    request.isStored = draft.store.value_or(false);
}

bool saysWhen(const AlarmDraft& draft) {
    return draft.seconds || draft.minutes || draft.hours || draft.time || draft.date ||
           draft.weekdays || draft.repeat || draft.everyDay || draft.everyWeek;
}

} // namespace

std::variant<AlarmRequest, Refusal> readRequest(const QVariantMap& description,
                                                const QDateTime& now) {
    AlarmDraft draft;
    AlarmRequest request;
    request.form = newAlarmForm(now, snoozeLengths.front());
    Outcome outcome = readInto(draft, description);
    if (!outcome)
        outcome = conflictIn(draft);
    if (!outcome)
        outcome = missingIn(draft);
    if (!outcome)
        outcome = takeWhen(draft, now, request);
    if (!outcome)
        outcome = takeSnooze(draft, request.form);
    if (outcome)
        return *outcome;
    takeSettings(draft, request);
    return request;
}

std::variant<AlarmRequest, Refusal> readChanges(const QVariantMap& changes, const AlarmForm& form,
                                                const QDateTime& now) {
    AlarmDraft draft;
    AlarmRequest request;
    request.form = form;
    Outcome outcome = readInto(draft, changes);
    request.isTimeSaid = draft.seconds || draft.minutes || draft.hours || draft.date;
    if (!outcome && draft.title && draft.title->trimmed().isEmpty())
        outcome = invalidKey(key::title, QStringLiteral("must not be empty"));
    if (!outcome && saysWhen(draft)) {
        completeWhen(draft, form);
        outcome = conflictIn(draft);
        if (!outcome && !draft.time && !draft.minutes && !draft.hours && !draft.seconds)
            outcome = keyRefusal("MissingKey", key::time, QStringLiteral("is needed"));
        if (!outcome)
            outcome = takeWhen(draft, now, request);
    }
    if (!outcome)
        outcome = takeSnooze(draft, request.form);
    if (outcome)
        return *outcome;
    takeSettings(draft, request);
    if (draft.voice) { // until the other is found
        request.form.isSpeakAlarmName = false;
        request.form.voiceName = QString();
    }
    return request;
}

} // namespace dorvane
