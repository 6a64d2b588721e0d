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

void ActiveAlarms::readMark() {
    const QByteArray data = m_defaults.value(key).toByteArray();
    m_mark =
        data.isEmpty()
            ? QString()
            : QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Sha1).toHex());
}

void ActiveAlarms::storeActiveAlarms() {
    list().save(m_clock.allAlarms());
    readMark();
}

void ActiveAlarms::restoreActiveAlarms(AlarmDelegate& delegate, const std::optional<Left>& left) {
    const auto stored = list().load();
    m_hadStored = stored.has_value();
    readMark();
    // Clocks cannot tell which is newer: they may have been set between.
    m_areResumed = left && (!m_hadStored || left->mark == m_mark);
    if (m_areResumed)
        m_restored.resume(left->running, delegate);
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
