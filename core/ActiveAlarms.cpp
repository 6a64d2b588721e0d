// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ActiveAlarms.h"

#include "core/Clock.h"
#include "core/JoinedAlarms.h"
#include "core/SameAlarm.h"
#include "platform/UserDefaults.h"

#include <QCryptographicHash>

#include <algorithm>

namespace dorvane {

namespace {

const auto key = QStringLiteral("AcitveAlarmsStoredKey"); // as preferences of earlier versions

QString markOf(const QByteArray& data) {
    return data.isEmpty() ? QString()
                          : QString::fromLatin1(
                                QCryptographicHash::hash(data, QCryptographicHash::Sha1).toHex());
}

// What was stored, and did not run when the rest was left.
void addStored(ActiveAlarms::Left& left, const std::vector<AlarmPtr>& stored, Instant now) {
    std::vector<AlarmPtr> then = left.undated;
    for (const RunningAlarm& running : left.running)
        then.push_back(running.alarm);
    for (const AlarmPtr& alarm : stored) {
        const auto same = std::find_if(then.begin(), then.end(), [&](const AlarmPtr& each) {
            return isSameAlarm(*each, *alarm);
        });
        if (same != then.end())
            then.erase(same);
        else if (const auto due = alarm->due(now))
            left.running.push_back({alarm, *due});
        else
            left.undated.push_back(alarm);
    }
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

QString ActiveAlarms::mark() const {
    const QString mark = markOf(m_defaults.value(key).toByteArray());
    return mark.isEmpty() ? m_beyond : mark;
}

// The preferences may have come into reach, and been read for another key, since the start.
void ActiveAlarms::storeActiveAlarms() {
    const QByteArray stored = m_defaults.value(key).toByteArray();
    const std::vector<AlarmPtr>& ours = m_clock.allAlarms();
    list().save(stored == m_known || (!m_beyond.isEmpty() && markOf(stored) == m_beyond)
                    ? ours
                    : joinedAlarms(m_archive.unarchive(m_known).alarms, ours,
                                   m_archive.unarchive(stored).alarms, haveSameValues));
    m_known = m_archive.archivedData(ours);
}

void ActiveAlarms::restoreActiveAlarms(AlarmDelegate& delegate, const std::optional<Left>& left) {
    const auto stored = list().load();
    m_hadStored = stored.has_value();
    m_known = m_defaults.value(key).toByteArray();
    // Clocks cannot tell which is newer: they may have been set between.
    m_areResumed = left && (!m_hadStored || left->mark.isEmpty() || left->mark == mark());
    if (!m_areResumed)
        return m_restored.restore(stored.value_or(std::vector<AlarmPtr>()), delegate);
    Left all = *left;
    if (!m_hadStored)
        goBeyond(left->mark);
    else if (left->mark.isEmpty())
        addStored(all, *stored, instantNow(m_runLoop));
    m_restored.resume(all.running, all.undated, delegate);
}

// What the list of this mark holds was there when the rest was left, or had been deleted by then.
void ActiveAlarms::goBeyond(const QString& mark) {
    m_beyond = mark;
    if (!mark.isEmpty())
        m_defaults.setJoin(key,
                           [mark, join = joinOfAlarms(m_archive, haveSameValues)](
                               const QVariant& base, const QVariant& ours, const QVariant& theirs) {
                               return ours.isValid() && markOf(theirs.toByteArray()) == mark
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
