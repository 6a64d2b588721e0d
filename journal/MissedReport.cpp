// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/MissedReport.h"

#include "core/AlarmPause.h"
#include "core/DateHelpers.h"
#include "core/Isolated.h"

#include <algorithm>

namespace dorvane {

namespace {

using What = JournalEvent::What;
using Reason = MissedAlarm::Reason;

QString textOf(Instant moment, const QDateTime& now) {
    return dayTimeString(localDateTimeOf(moment), now);
}

// It stands beside other text.
QString titleOrDefault(const QString& title) {
    return title.isEmpty() ? QStringLiteral("(no title)") : isolated(title);
}

QString lineOf(const JournalEvent& event) {
    switch (event.what) {
    case What::Rang:
        break;
    case What::Unanswered:
        return titleOrDefault(event.text) + QStringLiteral(": rang and was not answered");
    case What::Lost:
        return titleOrDefault(event.text) +
               QStringLiteral(": was running when Dorvane ended, and not any more");
    case What::Passed:
        return titleOrDefault(event.text) +
               QStringLiteral(": passed while Dorvane was not running");
    case What::Announced:
        return titleOrDefault(event.text) +
               QStringLiteral(": was announced while Dorvane was not running");
    case What::CameRoundAgain:
        return titleOrDefault(event.text) +
               QStringLiteral(": was due again before it was answered");
    case What::Crashed:
        return QStringLiteral("Dorvane had crashed; the report is in ") + event.text;
    }
    return {};
}

bool isCountedAnew(const MissedAlarm& missed, const QDateTime& now) {
    return missed.due < instantOf(now) && !missed.alarm->isTimeWithDate() &&
           missed.alarm->selRowNo() < Alarm::Weekly;
}

QString inText(qint64 seconds) {
    const qint64 minutes = (seconds + 59) / 60;
    const auto counted = [](qint64 count, const char* unit) {
        return QStringLiteral("in %1 %2%3")
            .arg(count)
            .arg(QLatin1String(unit), QLatin1String(count == 1 ? "" : "s"));
    };
    return minutes % 60 == 0 && minutes > 0 ? counted(minutes / 60, "hour")
                                            : counted(minutes, "minute");
}

} // namespace

QStringList missedReport(const JournalContents& journal, bool isRunning,
                         const std::vector<ToldAlarm>& announced, const QDateTime& now) {
    std::vector<JournalEvent> events = journal.events;
    std::erase_if(events, [](const JournalEvent& event) { return event.what == What::Rang; });
    if (!isRunning)
        for (const RunningAlarm& running : journal.running)
            if (const auto unheld = afterPause(running, journal.pausedUntil);
                unheld && unheld->due < instantOf(now))
                events.push_back({wasShown(announced, unheld->due, running.alarm->title())
                                      ? What::Announced
                                      : What::Passed,
                                  unheld->due, unheld->due, running.alarm->title()});
    std::stable_sort(events.begin(), events.end(),
                     [](const auto& a, const auto& b) { return a.due < b.due; });
    QStringList lines;
    for (const JournalEvent& event : events)
        lines << textOf(event.due, now) + QStringLiteral("  ") + lineOf(event);
    return lines;
}

QString titleOf(const Alarm& alarm) {
    return titleOrDefault(alarm.title());
}

QString dueText(const MissedAlarm& missed, const QDateTime& now) {
    return textOf(missed.due, now);
}

QString dueAgainText(const MissedAlarm& missed, const QDateTime& now) {
    const auto due = dueAgain(missed, now);
    if (!due)
        return QStringLiteral("has had its day");
    return isCountedAnew(missed, now) ? inText(now.secsTo(*due)) : dayTimeString(*due, now);
}

QString reasonText(const std::vector<MissedAlarm>& missed) {
    const auto has = [&](Reason reason) {
        return std::any_of(missed.begin(), missed.end(),
                           [=](const MissedAlarm& each) { return each.reason == reason; });
    };
    if (!has(Reason::Passed))
        return QStringLiteral("These alarms were running when Dorvane last ended, and are not "
                              "running now.");
    if (!has(Reason::Lost))
        return QStringLiteral("These alarms passed while Dorvane was not running.");
    return QStringLiteral("These alarms were running when Dorvane last ended, or passed while it "
                          "was not running.");
}

} // namespace dorvane
