// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/JournalFormat.h"

#include "core/AlarmPause.h"
#include "platform/PropertyList.h"

#include <algorithm>
#include <iterator>

namespace dorvane {

namespace {

using What = JournalEvent::What;

const auto lineKey = QStringLiteral("line");
const auto runKey = QStringLiteral("run");
const auto isOrderlyKey = QStringLiteral("isOrderly");
const auto storedMarkKey = QStringLiteral("storedMark");
const auto runningKey = QStringLiteral("running");
const auto undatedKey = QStringLiteral("undated");
const auto pausedKey = QStringLiteral("pausedUntil");
const auto lostKey = QStringLiteral("lost");
const auto passedKey = QStringLiteral("passed");
const auto eventsKey = QStringLiteral("events");
const auto alarmsKey = QStringLiteral("alarms");
const auto dueKey = QStringLiteral("due");

constexpr const char* words[] = {"rang",    "unanswered",     "lost",     "passed",
                                 "crashed", "cameRoundAgain", "announced"};

QVariant dateOf(Instant instant) {
    return localDateTimeOf(instant).toUTC();
}

// A line of text each, which is read and written in no time however many there are: two moments in
// milliseconds since the epoch, what happened, and the text.
QString encoded(const JournalEvent& event) {
    const auto milliseconds = [](Instant moment) {
        return QString::number(moment.time_since_epoch().count());
    };
    return QStringList{milliseconds(event.when), milliseconds(event.due),
                       QLatin1String(words[int(event.what)]), event.text}
        .join(QLatin1Char(' '));
}

std::optional<JournalEvent> eventIn(const QString& line) {
    const QStringList parts = line.split(QLatin1Char(' '));
    const auto what = std::find_if(std::begin(words), std::end(words), [&](const char* word) {
        return parts.value(2) == QLatin1String(word);
    });
    const auto moment = [&](qsizetype part) {
        return Instant(std::chrono::milliseconds(parts.value(part).toLongLong()));
    };
    if (what == std::end(words))
        return std::nullopt;
    return JournalEvent{What(what - std::begin(words)), moment(0), moment(1),
                        parts.mid(3).join(QLatin1Char(' '))};
}

// In milliseconds since the epoch. What lies beyond the calendar is until resumed.
std::optional<Instant> endOfPause(const QVariant& value) {
    const Instant until{std::chrono::milliseconds(value.toLongLong())};
    if (until <= Instant())
        return std::nullopt;
    return until > Instant(std::chrono::years(8000)) ? untilResumed : until;
}

QVariantMap encoded(const std::vector<RunningAlarm>& list, const AlarmArchive& archive) {
    std::vector<AlarmPtr> alarms;
    QVariantList due;
    for (const RunningAlarm& running : list) {
        alarms.push_back(running.alarm);
        due << dateOf(running.due);
    }
    return {{alarmsKey, archive.archivedData(alarms)}, {dueKey, due}};
}

std::vector<RunningAlarm> withReason(const std::vector<MissedAlarm>& all,
                                     MissedAlarm::Reason reason) {
    std::vector<RunningAlarm> found;
    for (const MissedAlarm& missed : all)
        if (missed.reason == reason)
            found.push_back({missed.alarm, missed.due});
    return found;
}

} // namespace

JournalFormat::JournalFormat(const PropertyListFormat& format)
    : m_format(format), m_archive(format) {}

QByteArray JournalFormat::encode(const JournalContents& contents) const {
    QStringList events;
    for (const JournalEvent& event : contents.events)
        events << encoded(event);
    using Reason = MissedAlarm::Reason;
    QVariantMap root{{lineKey, contents.line},
                     {runKey, contents.run},
                     {isOrderlyKey, contents.isOrderly},
                     {storedMarkKey, contents.storedMarks.join(QLatin1Char(' '))},
                     {runningKey, encoded(contents.running, m_archive)},
                     {undatedKey, m_archive.archivedData(contents.undated)},
                     {lostKey, encoded(withReason(contents.missed, Reason::Lost), m_archive)},
                     {passedKey, encoded(withReason(contents.missed, Reason::Passed), m_archive)},
                     {eventsKey, events.join(QLatin1Char('\n'))}};
    if (contents.pausedUntil)
        root.insert(pausedKey, qint64(contents.pausedUntil->time_since_epoch().count()));
    return m_format.binary(root).value_or(QByteArray());
}

// An alarm whose due time is missing is one that cannot be read.
bool JournalFormat::decodeRunning(const QVariantMap& list,
                                  std::vector<RunningAlarm>& running) const {
    const auto read = m_archive.unarchive(list.value(alarmsKey).toByteArray());
    const QVariantList due = list.value(dueKey).toList();
    const auto count = std::min(read.alarms.size(), std::size_t(due.size()));
    for (std::size_t i = 0; i < count; ++i)
        if (const QDateTime date = due.at(qsizetype(i)).toDateTime(); date.isValid())
            running.push_back({read.alarms[i], instantOf(date)});
    return read.isComplete && running.size() == std::size_t(due.size());
}

std::optional<ActiveAlarms::Left> JournalFormat::Decoded::left() const {
    if (!isComplete)
        return std::nullopt;
    return ActiveAlarms::Left{contents.running, contents.storedMarks, contents.undated,
                              contents.isOrderly};
}

JournalFormat::Decoded JournalFormat::decode(const QByteArray& data) const {
    Decoded decoded;
    if (data.isEmpty())
        return decoded;
    JournalContents& contents = decoded.contents;
    const QVariantMap root = m_format.parse(data).value_or(QVariant()).toMap();
    contents.line = root.value(lineKey).toString(); // journals of earlier versions have none
    contents.run = root.value(runKey).toLongLong();
    contents.isOrderly = root.value(isOrderlyKey, true).toBool();
    contents.storedMarks =
        root.value(storedMarkKey).toString().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    decoded.isComplete = decodeRunning(root.value(runningKey).toMap(), contents.running);
    contents.pausedUntil = endOfPause(root.value(pausedKey));
    // Journals of earlier versions have none.
    if (const QByteArray undated = root.value(undatedKey).toByteArray(); !undated.isEmpty())
        contents.undated = m_archive.unarchive(undated).alarms;
    using Reason = MissedAlarm::Reason;
    for (const auto& [key, reason] :
         {std::pair(lostKey, Reason::Lost), {passedKey, Reason::Passed}}) {
        std::vector<RunningAlarm> list;
        decoded.isComplete = decodeRunning(root.value(key).toMap(), list) && decoded.isComplete;
        for (const RunningAlarm& running : list)
            contents.missed.push_back({running.alarm, running.due, reason});
    }
    for (const QString& line : root.value(eventsKey).toString().split(QLatin1Char('\n')))
        if (const auto event = eventIn(line))
            contents.events.push_back(*event);
    return decoded;
}

} // namespace dorvane
