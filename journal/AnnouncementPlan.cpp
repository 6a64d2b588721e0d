// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/AnnouncementPlan.h"

#include "core/AlarmPause.h"
#include "core/DateHelpers.h"
#include "core/Isolated.h"
#include "core/Rearm.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

// What is announced later than that did not come at its time.
constexpr auto punctual = 1min;
// A list that is longer would not fit a screen.
constexpr std::size_t mostLines = 10;
// Before a line that tells of what nobody saw.
constexpr char notShown = '!';

using Told = std::pair<Instant, QString>;

Told keyOf(const RunningAlarm& running) {
    return {running.due, eventText(running.alarm->title())};
}

struct Occurrences {
    std::optional<Instant> last; // by now
    std::optional<Instant> next;
};

Occurrences occurrencesOf(const RunningAlarm& running, Instant now) {
    Occurrences found;
    if (running.due > now) {
        found.next = running.due;
        return found;
    }
    const AlarmPtr alarm = running.alarm->storedCopy();
    snoozeUntil(*alarm, running.due);
    const QDateTime moment = localDateTimeOf(now);
    const RearmDecision decision = rearmAfterRinging(*alarm, moment, weekdayName(moment.date()));
    found.last = decision.missed.isValid() ? instantOf(decision.missed) : running.due;
    if (decision.outcome != RearmDecision::Outcome::Remove) {
        applyRearm(decision, *alarm);
        found.next = alarm->due(now);
    }
    return found;
}

UserNotification notificationOf(const RunningAlarm& due) {
    return {.title = QStringLiteral("Dorvane"),
            .subtitle = shortDayTimeString(localDateTimeOf(due.due)),
            .informativeText = due.alarm->title()};
}

UserNotification notificationOf(const std::vector<RunningAlarm>& passed, Instant now) {
    if (passed.size() == 1)
        return {.title = QStringLiteral("Dorvane"),
                .subtitle = dayTimeString(localDateTimeOf(passed[0].due), localDateTimeOf(now)),
                .informativeText = passed[0].alarm->title()};
    QStringList lines;
    for (std::size_t i = 0; i < std::min(passed.size(), mostLines); ++i)
        lines << dayTimeString(localDateTimeOf(passed[i].due), localDateTimeOf(now)) +
                     QStringLiteral("  ") + isolated(eventText(passed[i].alarm->title()));
    if (passed.size() > mostLines)
        lines << QStringLiteral("and %1 more").arg(passed.size() - mostLines);
    return {.title = QStringLiteral("Dorvane"),
            .subtitle = QStringLiteral("Passed while Dorvane was not running:"),
            .informativeText = lines.join(QLatin1Char('\n'))};
}

} // namespace

AnnouncementPlan planAnnouncements(const JournalContents& journal,
                                   const std::vector<ToldAlarm>& told, Instant now) {
    std::set<Told> rang;
    for (const JournalEvent& event : journal.events)
        if (event.what == JournalEvent::What::Rang)
            rang.emplace(event.due, eventText(event.text));
    std::map<Told, bool> known;
    for (const ToldAlarm& each : told)
        known.emplace(Told(each.due, each.title), each.wasShown);

    AnnouncementPlan plan;
    plan.hasAlarms = !journal.running.empty();
    std::vector<RunningAlarm> due;
    std::set<Told> kept;
    for (const RunningAlarm& written : journal.running) {
        const auto unheld = afterPause(written, journal.pausedUntil);
        if (!unheld)
            continue;
        const RunningAlarm& running = *unheld;
        const Occurrences found = occurrencesOf(running, now);
        if (found.next)
            plan.next = std::min(plan.next.value_or(*found.next), *found.next);
        const RunningAlarm last{running.alarm, found.last.value_or(now)};
        if (!found.last || rang.contains(keyOf(last)))
            continue;
        if (kept.insert(keyOf(last)).second && !known.contains(keyOf(last)))
            due.push_back(last);
    }
    for (const Told& each : kept) {
        const auto before = known.find(each);
        plan.told.push_back({each.first, each.second, before == known.end() || before->second});
    }

    std::stable_sort(due.begin(), due.end(), [](const RunningAlarm& one, const RunningAlarm& two) {
        return one.due < two.due;
    });
    const auto punctualOnes = std::find_if(due.begin(), due.end(), [&](const RunningAlarm& each) {
        return now - each.due <= punctual;
    });
    if (const std::vector<RunningAlarm> passed(due.begin(), punctualOnes); !passed.empty())
        plan.notifications.push_back(notificationOf(passed, now));
    for (auto each = punctualOnes; each != due.end(); ++each)
        plan.notifications.push_back(notificationOf(*each));
    return plan;
}

bool wasShown(const std::vector<ToldAlarm>& told, Instant due, const QString& title) {
    return std::find(told.begin(), told.end(), ToldAlarm{due, eventText(title)}) != told.end();
}

// A line each, as the journal's events are: the moment in milliseconds since the epoch, the title.
QByteArray encoded(const std::vector<ToldAlarm>& told) {
    QByteArray data;
    for (const ToldAlarm& each : told)
        data += QByteArray(each.wasShown ? 0 : 1, notShown) +
                QByteArray::number(qint64(each.due.time_since_epoch().count())) + ' ' +
                each.title.toUtf8() + '\n';
    return data;
}

std::vector<ToldAlarm> toldIn(const QByteArray& data) {
    std::vector<ToldAlarm> told;
    for (const QByteArray& line : data.split('\n')) {
        bool isNumber = false;
        const bool wasShown = !line.startsWith(notShown);
        const auto space = line.indexOf(' ');
        const qint64 due =
            line.left(std::max<qsizetype>(space, 0)).mid(wasShown ? 0 : 1).toLongLong(&isNumber);
        if (isNumber)
            told.push_back({Instant(std::chrono::milliseconds(due)),
                            QString::fromUtf8(line.mid(space + 1)), wasShown});
    }
    return told;
}

} // namespace dorvane
