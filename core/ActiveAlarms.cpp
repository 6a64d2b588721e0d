// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ActiveAlarms.h"

#include "core/Clock.h"
#include "core/JoinedAlarms.h"
#include "platform/UserDefaults.h"

#include <QCryptographicHash>

namespace dorvane {

namespace {

const auto key = QStringLiteral("AcitveAlarmsStoredKey"); // as preferences of earlier versions

} // namespace

ActiveAlarms::ActiveAlarms(UserDefaults& defaults, const AlarmArchive& archive, RunLoop& runLoop,
                           Clock& clock)
    : m_defaults(defaults), m_archive(archive), m_clock(clock), m_restored(runLoop, clock) {
    defaults.setJoin(key, joinOfAlarms(archive, haveSameValues));
}

ArchivedList ActiveAlarms::list() const {
    return {key, m_defaults, m_archive};
}

QString ActiveAlarms::mark() const {
    const QByteArray data = m_defaults.value(key).toByteArray();
    return data.isEmpty() ? QString()
                          : QString::fromLatin1(
                                QCryptographicHash::hash(data, QCryptographicHash::Sha1).toHex());
}

// The preferences may have come into reach, and been read for another key, since the start.
void ActiveAlarms::storeActiveAlarms() {
    const QByteArray stored = m_defaults.value(key).toByteArray();
    const std::vector<AlarmPtr>& ours = m_clock.allAlarms();
    list().save(stored == m_known
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
    m_areResumed = left && (!m_hadStored || left->mark == mark());
    if (m_areResumed)
        m_restored.resume(left->running, left->undated, delegate);
    else
        m_restored.restore(stored.value_or(std::vector<AlarmPtr>()), delegate);
}

void ActiveAlarms::replaceSounds(const QHash<QString, QString>& moved) {
    bool isAnyMoved = false;
    for (const AlarmPtr& alarm : m_clock.allAlarms())
        isAnyMoved = alarm->replaceSound(moved) || isAnyMoved;
    if (isAnyMoved)
        m_clock.alarmDidChange();
}

} // namespace dorvane
