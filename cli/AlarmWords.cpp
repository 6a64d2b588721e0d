// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/AlarmWords.h"

#include "core/AlarmKeys.h"
#include "core/AlarmPause.h"
#include "core/DateHelpers.h"
#include "core/Isolated.h"
#include "core/ShownTitle.h"

#include <algorithm>
#include <optional>

namespace dorvane {

namespace {

QDateTime dueOf(const QVariantMap& alarm) {
    return QDateTime::fromSecsSinceEpoch(alarm.value(key::due).toLongLong());
}

bool rings(const QVariantMap& alarm) {
    return alarm.value(key::ringing).toBool();
}

// In a bar, which nobody types from.
QString titleInBar(const QVariantMap& alarm) {
    return shownTitle(alarm.value(key::title).toString(), alarm.value(key::minutes).toLongLong());
}

QString interval(const QVariantMap& alarm) {
    return alarm.contains(key::minutes)
               ? alarm.value(key::minutes).toString() + QStringLiteral(" min")
               : alarm.value(key::hours).toString() + QStringLiteral(" h");
}

QString days(const QVariantMap& alarm) {
    QStringList names = alarm.value(key::weekdays).toStringList();
    for (QString& name : names)
        name[0] = name[0].toUpper();
    return names.join(u' ');
}

QString repetition(const QVariantMap& alarm) {
    if (alarm.value(key::repeat).toBool())
        return QStringLiteral("every ") + interval(alarm);
    if (alarm.value(key::everyDay).toBool())
        return QStringLiteral("every day");
    if (alarm.contains(key::weekdays))
        return days(alarm) +
               (alarm.value(key::everyWeek).toBool() ? QStringLiteral(", every week") : QString());
    return {};
}

QString plannedMoment(const QVariantMap& alarm, const QDateTime& now) {
    if (!alarm.contains(key::time))
        return QStringLiteral("in ") + interval(alarm);
    const QDate date = QDate::fromString(alarm.value(key::date).toString(), Qt::ISODate);
    const QTime time =
        QTime::fromString(alarm.value(key::time).toString(), QStringLiteral("HH:mm"));
    return date.isValid() ? dateTimeString(QDateTime(date, time), now)
                          : timeString(QDateTime(now.date(), time));
}

std::optional<QVariantMap> nextOf(const QVariantList& alarms) {
    std::optional<QVariantMap> next;
    for (const QVariant& entry : alarms) {
        const QVariantMap alarm = entry.toMap();
        if (!rings(alarm) && alarm.contains(key::due) && (!next || dueOf(alarm) < dueOf(*next)))
            next = alarm;
    }
    return next;
}

QString ringingText(const QStringList& titles) {
    return titles.size() == 1
               ? isolated(titles.first()) + QStringLiteral(" rings")
               : QStringLiteral("%1 and %2 more ring")
                     .arg(isolated(titles.first()), QString::number(titles.size() - 1));
}

// Soonest first.
QString toolTip(const QVariantList& alarms, const QDateTime& now) {
    constexpr qsizetype most = 10;
    std::vector<QVariantMap> sorted;
    for (const QVariant& alarm : alarms)
        sorted.push_back(alarm.toMap());
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto& a, const auto& b) { return dueOf(a) < dueOf(b); });
    QStringList lines;
    for (const QVariantMap& alarm : sorted) {
        if (lines.size() == most)
            break;
        if (!rings(alarm) && !alarm.contains(key::due))
            continue;
        lines << (rings(alarm) ? QStringLiteral("now") : shortMoment(dueOf(alarm), now)) +
                     QStringLiteral("  ") + isolated(titleInBar(alarm));
    }
    return lines.isEmpty() ? QStringLiteral("No alarms") : lines.join(u'\n');
}

QVariantMap json(const QString& state, const QString& text, const QString& toolTip) {
    return {{QStringLiteral("class"), state},
            {QStringLiteral("alt"), state},
            {QStringLiteral("text"), text},
            {QStringLiteral("tooltip"), toolTip}};
}

std::optional<Instant> pauseIn(const QVariantMap& properties) {
    if (!properties.value(QStringLiteral("Paused")).toBool())
        return std::nullopt;
    const qint64 until = properties.value(QStringLiteral("PausedUntil")).toLongLong();
    return until == 0 ? untilResumed : Instant(std::chrono::seconds(until));
}

void addPart(StatusReport& report, const QString& part) {
    const QString toolTip = QStringLiteral("tooltip");
    report.line += QStringLiteral(" \u00b7 ") + part;
    report.json[toolTip] = report.json.value(toolTip).toString() + u'\n' + part;
}

} // namespace

QString timeLeft(qint64 seconds) {
    if (seconds < 60)
        return QStringLiteral("in %1 s").arg(std::max<qint64>(seconds, 0));
    const qint64 minutes = (seconds + 59) / 60;
    if (minutes < 100)
        return QStringLiteral("in %1 min").arg(minutes);
    const qint64 hours = minutes / 60;
    if (hours >= 48)
        return QStringLiteral("in %1 days").arg(hours / 24);
    return minutes % 60 == 0 ? QStringLiteral("in %1 h").arg(hours)
                             : QStringLiteral("in %1 h %2 min").arg(hours).arg(minutes % 60);
}

QString shortMoment(const QDateTime& moment, const QDateTime& now) {
    return isSameDay(moment, now) ? timeString(moment) : dayTimeString(moment, now);
}

QStringList runningCells(const QVariantMap& alarm, const QDateTime& now) {
    const QDateTime due = dueOf(alarm);
    if (!alarm.contains(key::due)) // paused until resumed, or of a damaged list
        return {alarm.value(key::identity).toString(),
                alarm.value(key::paused).toBool() ? QStringLiteral("paused") : QStringLiteral("?"),
                QString(), isolated(alarm.value(key::title).toString()), repetition(alarm)};
    QString left = timeLeft(now.secsTo(due));
    if (rings(alarm))
        left = QStringLiteral("rings");
    else if (alarm.value(key::snoozed).toLongLong() > 0)
        left += QStringLiteral(", snoozed");
    return {alarm.value(key::identity).toString(), dayTimeString(due, now), left,
            isolated(alarm.value(key::title).toString()), repetition(alarm)};
}

QStringList storedCells(const QVariantMap& alarm, const QDateTime& now) {
    return {isolated(alarm.value(key::title).toString()), plannedMoment(alarm, now),
            repetition(alarm)};
}

QStringList aligned(const std::vector<QStringList>& rows) {
    std::vector<qsizetype> widths;
    for (const QStringList& row : rows)
        for (qsizetype i = 0; i < row.size(); ++i) {
            widths.resize(std::max(widths.size(), std::size_t(row.size())));
            widths[std::size_t(i)] = std::max(widths[std::size_t(i)], row[i].size());
        }
    QStringList lines;
    for (const QStringList& row : rows) {
        QString line;
        for (qsizetype i = 0; i < row.size(); ++i)
            line += row[i].leftJustified(widths[std::size_t(i)] + 2);
        while (line.endsWith(u' '))
            line.chop(1);
        lines << line;
    }
    return lines;
}

QString breakText(const QVariantMap& properties) {
    const auto at = [&](const char* property) {
        return timeString(
            QDateTime::fromSecsSinceEpoch(properties.value(QLatin1String(property)).toLongLong()));
    };
    const QString phase = properties.value(QStringLiteral("BreakPhase")).toString();
    if (phase == QStringLiteral("working"))
        return QStringLiteral("break at ") + at("NextBreak");
    if (phase == QStringLiteral("waiting"))
        return QStringLiteral("break when you are back");
    if (phase == QStringLiteral("resting"))
        return QStringLiteral("break until ") + at("BreakEnd");
    return {};
}

QString nextBreak(const QVariantMap& properties, const QDateTime& now) {
    const qint64 seconds = properties.value(QStringLiteral("NextBreak")).toLongLong();
    const QString left = seconds == 0
                             ? QString()
                             : QStringLiteral(", ") + timeLeft(seconds - now.toSecsSinceEpoch());
    return breakText(properties) + left;
}

StatusReport statusReport(const QVariantList& alarms, const QVariantMap& properties,
                          const QDateTime& now) {
    QStringList ringing;
    for (const QVariant& alarm : alarms)
        if (rings(alarm.toMap()))
            ringing << titleInBar(alarm.toMap());
    const std::optional<QVariantMap> next = nextOf(alarms);

    StatusReport report{.line = QStringLiteral("No alarms"), .json = {}};
    if (!ringing.isEmpty()) {
        report.line = ringingText(ringing);
        report.json = json(QStringLiteral("ringing"), report.line, toolTip(alarms, now));
    } else if (next) {
        report.line = shortMoment(dueOf(*next), now) + u' ' + isolated(titleInBar(*next));
        report.json = json(QStringLiteral("set"), report.line, toolTip(alarms, now));
    } else {
        report.json = json(QStringLiteral("idle"), {}, toolTip(alarms, now));
    }
    if (next) {
        report.json.insert(key::identity, next->value(key::identity));
        report.json.insert(key::title, next->value(key::title));
        report.json.insert(key::due, next->value(key::due));
        report.json.insert(QStringLiteral("seconds"), now.secsTo(dueOf(*next)));
    }
    report.json.insert(key::ringing, ringing);
    report.json.insert(QStringLiteral("breaks"),
                       properties.value(QStringLiteral("BreaksRunning")).toBool());
    if (const qint64 moment = properties.value(QStringLiteral("NextBreak")).toLongLong())
        report.json.insert(QStringLiteral("break"), moment);
    if (const QString text = breakText(properties); !text.isEmpty())
        addPart(report, text);
    const QString pause = pauseText(pauseIn(properties), now);
    report.json.insert(key::paused, !pause.isEmpty());
    if (!pause.isEmpty())
        addPart(report, pause);
    return report;
}

StatusReport stoppedReport(const QString& reason) {
    return {.line = reason, .json = json(QStringLiteral("stopped"), {}, reason)};
}

} // namespace dorvane
