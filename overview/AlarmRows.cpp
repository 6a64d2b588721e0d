// SPDX-License-Identifier: GPL-3.0-or-later
#include "overview/AlarmRows.h"

#include "core/AlarmText.h"
#include "core/Rearm.h"
#include "core/SameAlarm.h"

#include <QFileInfo>
#include <QMultiHash>

#include <algorithm>
#include <tuple>

namespace dorvane {

namespace {

QString titleOf(const Alarm& alarm) {
    if (alarm.isDefaultAlarm())
        return lengthText(alarm);
    return alarm.title().simplified();
}

QString soundOf(const Alarm& alarm) {
    QStringList heard;
    if (alarm.isSpeakAlarmName())
        heard << QStringLiteral("spoken");
    if (alarm.isPlaySound() && !alarm.soundPath().isEmpty())
        heard << QFileInfo(alarm.soundPath()).completeBaseName();
    return heard.isEmpty() ? QStringLiteral("silent") : heard.join(QStringLiteral(", "));
}

AlarmRow rowOf(const AlarmPtr& alarm) {
    AlarmRow row;
    row.alarm = alarm;
    row.title = titleOf(*alarm);
    row.repeats = repetitionText(*alarm);
    row.sound = soundOf(*alarm);
    return row;
}

AlarmRow runningRow(const AlarmPtr& alarm, Instant now, const QLocale& territory) {
    AlarmRow row = rowOf(alarm);
    row.isOn = true;
    row.canSkip = canSkip(*alarm, now);
    row.moment = nextRing(*alarm, now);
    row.next = alarm->isTriggered() ? QStringLiteral("rings") : dueText(*alarm, now, territory);
    return row;
}

AlarmRow storedRow(const AlarmPtr& alarm, Instant now, const QLocale& territory) {
    AlarmRow row = rowOf(alarm);
    row.stored = alarm;
    const QDateTime moment = localDateTimeOf(now);
    const AlarmPtr started = alarm->storedCopy();
    applyRearm(rearmAtStart(*alarm, moment, weekdayName(moment.date())), *started);
    if (started->isRelative())
        started->setRunTime({});
    row.moment = started->due(now);
    row.next = storedText(*alarm, now, territory);
    return row;
}

} // namespace

QString AlarmRow::key() const {
    return isOn ? alarm->identity() : u'=' + alarm->title();
}

std::vector<AlarmRow> alarmRows(const std::vector<AlarmPtr>& running,
                                const std::vector<AlarmPtr>& stored, Instant now,
                                const QLocale& territory) {
    std::vector<AlarmRow> rows;
    rows.reserve(running.size() + stored.size());
    QMultiHash<QString, std::size_t> byTitle;
    for (const AlarmPtr& alarm : running) {
        byTitle.insert(alarm->title(), rows.size());
        rows.push_back(runningRow(alarm, now, territory));
    }
    for (const AlarmPtr& alarm : stored) {
        if (alarm->isDefaultAlarm())
            continue;
        const auto [first, last] = byTitle.equal_range(alarm->title());
        const auto runs = std::find_if(first, last, [&](std::size_t index) {
            return !rows[index].alarm->isDefaultAlarm() && isSameAlarm(*rows[index].alarm, *alarm);
        });
        if (runs == last)
            rows.push_back(storedRow(alarm, now, territory));
        else
            rows[*runs].stored = alarm;
    }
    std::stable_sort(rows.begin(), rows.end(), [](const AlarmRow& a, const AlarmRow& b) {
        const auto place = [](const AlarmRow& row) {
            return std::tuple(!row.isOn, row.moment.value_or(Instant::max()), row.title);
        };
        return place(a) < place(b);
    });
    return rows;
}

bool matches(const AlarmRow& row, const QString& words) {
    const QString all = QStringList{row.title, row.next, row.repeats, row.sound}.join(u' ');
    const QStringList wanted = words.split(u' ', Qt::SkipEmptyParts);
    return std::all_of(wanted.begin(), wanted.end(), [&](const QString& word) {
        return all.contains(word, Qt::CaseInsensitive);
    });
}

} // namespace dorvane
