// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ActiveAlarms.h"

#include "core/Clock.h"
#include "core/JoinedAlarms.h"
#include "core/SameAlarm.h"
#include "platform/UserDefaults.h"

#include <QCryptographicHash>

#include <algorithm>
#include <iterator>
#include <utility>

namespace dorvane {

namespace {

const auto key = QStringLiteral("AcitveAlarmsStoredKey"); // as preferences of earlier versions

QString markOf(const QByteArray& data) {
    return data.isEmpty() ? QString()
                          : QString::fromLatin1(
                                QCryptographicHash::hash(data, QCryptographicHash::Sha1).toHex());
}

std::vector<AlarmPtr> alarmsOf(const ActiveAlarms::Left& left) {
    std::vector<AlarmPtr> all;
    for (const RunningAlarm& running : left.running)
        all.push_back(running.alarm);
    all.insert(all.end(), left.undated.begin(), left.undated.end());
    return all;
}

// What was stored, and did not run when the rest was left.
void addStored(ActiveAlarms::Left& left, const std::vector<AlarmPtr>& stored, Instant now) {
    std::vector<RunningAlarm> all;
    for (const AlarmPtr& alarm : stored)
        all.push_back({alarm, alarm->due(now).value_or(now)});
    for (const RunningAlarm& missing : missingFrom(alarmsOf(left), std::move(all)))
        if (missing.alarm->due(now))
            left.running.push_back(missing);
        else
            left.undated.push_back(missing.alarm);
}

} // namespace

ActiveAlarms::ActiveAlarms(UserDefaults& defaults, const AlarmArchive& archive, RunLoop& runLoop,
                           Clock& clock)
    : m_defaults(defaults)
    , m_archive(archive)
    , m_runLoop(runLoop)
    , m_clock(clock)
    , m_restored(runLoop, clock) {
    defaults.setJoin(key, joinOfAlarms(archive, haveSameValues));
}

ArchivedList ActiveAlarms::list() const {
    return {key, m_defaults, m_archive};
}

QStringList ActiveAlarms::marks() const {
    const QString mark = markOf(m_defaults.value(key).toByteArray());
    return mark.isEmpty() ? m_beyond : QStringList(mark);
}

// The preferences may have come into reach, and been read for another key, since the start.
void ActiveAlarms::storeActiveAlarms() {
    const QByteArray stored = m_defaults.value(key).toByteArray();
    const std::vector<AlarmPtr>& ours = m_clock.allAlarms();
    list().save(stored == m_known || m_beyond.contains(markOf(stored))
                    ? ours
                    : joinedAlarms(m_archive.unarchive(m_known).alarms, ours,
                                   m_archive.unarchive(stored).alarms, haveSameValues));
    m_known = m_archive.archivedData(ours);
}

ActiveAlarms::Decisions ActiveAlarms::restoreActiveAlarms(AlarmDelegate& delegate,
                                                          const std::optional<Left>& left) {
    m_delegate = &delegate;
    const auto stored = list().load();
    m_hadStored = stored.has_value();
    m_known = m_defaults.value(key).toByteArray();
    // Clocks cannot tell which is newer: they may have been set between.
    const bool isBeyond = left && !left->isStored && m_hadStored &&
                          (left->marks.isEmpty() || left->marks.contains(marks().value(0)));
    m_areResumed = left && (!m_hadStored || isBeyond);
    if (!m_areResumed)
        return m_restored.restore(stored.value_or(std::vector<AlarmPtr>()), delegate);
    Left all = *left;
    if (!m_hadStored)
        goBeyond(left->marks);
    else if (left->marks.isEmpty())
        addStored(all, *stored, instantNow(m_runLoop));
    return putBack(all, !left->isStored);
}

ActiveAlarms::Decisions ActiveAlarms::putBack(const Left& all, bool resumes) {
    return resumes ? m_restored.resume(all.running, all.undated, *m_delegate)
                   : m_restored.restore(alarmsOf(all), *m_delegate);
}

std::optional<ActiveAlarms::Decisions> ActiveAlarms::restoreLate(const std::optional<Left>& left) {
    const std::vector<AlarmPtr> stored = list().load().value_or(std::vector<AlarmPtr>());
    // None, or that of a log-out that was called off.
    const bool isOurs = !m_hadStored && m_defaults.value(key).toByteArray() == m_known;
    const bool isListLate = !std::exchange(m_hadStored, !isOurs) && !isOurs;
    if (!isListLate && !left)
        return std::nullopt;
    const QString mark = marks().value(0);
    const bool isKnown = m_beyond.contains(mark) && !(left && left->isStored);
    const auto listed = isListLate && !isKnown ? newIn(stored) : std::vector<AlarmPtr>();
    const bool isOursAlone = isListLate && !isKnown && !stored.empty() && listed.empty();
    const bool isBeyond =
        left && !left->isStored && (left->marks.isEmpty() || left->marks.contains(mark));
    if (isListLate)
        m_known = m_defaults.value(key).toByteArray();
    m_areResumed = left && (isOurs || isOursAlone || isBeyond);
    if (m_areResumed && isOurs)
        goBeyond(left->marks);
    Left all = m_areResumed ? *left : Left();
    if (m_areResumed && !isListLate) {
        const std::vector<AlarmPtr> ended = endedHere();
        m_restored.takeBack();
        if (left->marks.isEmpty())
            addStored(all, stored, instantNow(m_runLoop));
        all.running = missingFrom(m_clock.allAlarms(), missingFrom(ended, std::move(all.running)));
    } else if (!m_areResumed || left->marks.isEmpty()) {
        addStored(all, listed, instantNow(m_runLoop));
    }
    return putBack(all, m_areResumed && !left->isStored);
}

// Of what was put back from the list by now.
std::vector<AlarmPtr> ActiveAlarms::endedHere() const {
    const Instant now = instantNow(m_runLoop);
    std::vector<RunningAlarm> known;
    for (const AlarmPtr& alarm : m_archive.unarchive(m_known).alarms)
        known.push_back({alarm, now});
    std::vector<AlarmPtr> dropped;
    for (const RunningAlarm& each : m_restored.dropped())
        dropped.push_back(each.alarm);
    return alarmsOf({missingFrom(dropped, missingFrom(m_clock.allAlarms(), known)), {}});
}

// Ours may have been stored among them, at a log-out that was called off.
std::vector<AlarmPtr> ActiveAlarms::newIn(const std::vector<AlarmPtr>& stored) const {
    std::vector<AlarmPtr> found;
    std::copy_if(stored.begin(), stored.end(), std::back_inserter(found), [this](const auto& each) {
        const auto& ours = m_clock.allAlarms();
        return std::none_of(ours.begin(), ours.end(), [&](const AlarmPtr& own) {
            return own->isStoredLike(*each) || (!own->isRelative() && isSameAlarm(*own, *each));
        });
    });
    return found;
}

void ActiveAlarms::expect(const Left& left) {
    if (!m_hadStored && !left.isStored)
        goBeyond(left.marks);
}

// What a list of these marks holds was there when the rest was left, or had been deleted by then.
void ActiveAlarms::goBeyond(const QStringList& marks) {
    m_beyond = marks;
    m_defaults.setJoin(key,
                       [marks, join = joinOfAlarms(m_archive, haveSameValues)](
                           const QVariant& base, const QVariant& ours, const QVariant& theirs) {
                           return ours.isValid() && marks.contains(markOf(theirs.toByteArray()))
                                      ? ours
                                      : join(base, ours, theirs);
                       });
}

void ActiveAlarms::replaceSounds(const QHash<QString, QString>& moved) {
    bool isAnyMoved = false;
    for (const AlarmPtr& alarm : m_clock.allAlarms())
        isAnyMoved = alarm->replaceSound(moved) || isAnyMoved;
    if (isAnyMoved)
        m_clock.alarmDidChange();
}

} // namespace dorvane
