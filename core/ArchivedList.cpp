// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ArchivedList.h"

#include "platform/Log.h"
#include "platform/UserDefaults.h"

#include <algorithm>
#include <cstddef>
#include <set>

namespace dorvane {

namespace {

// A list of ours does; in one from elsewhere two entries may be one alarm, which copies are not.
bool holdsEachOnce(const std::vector<AlarmPtr>& alarms) {
    return std::set<AlarmPtr>(alarms.begin(), alarms.end()).size() == alarms.size();
}

} // namespace

ArchivedList::ArchivedList(QString key, UserDefaults& defaults, const AlarmArchive& archive)
    : m_key(std::move(key)), m_defaults(defaults), m_archive(archive) {}

std::optional<std::vector<AlarmPtr>> ArchivedList::load() {
    const QVariant stored = m_defaults.value(m_key);
    if (!stored.isValid())
        return std::nullopt;
    AlarmArchive::Unarchived unarchived{.alarms = {}, .isComplete = false};
    if (stored.typeId() == QMetaType::QByteArray)
        unarchived = read(stored.toByteArray());
    if (!unarchived.isComplete)
        keepUnreadable(stored);
    return std::move(unarchived.alarms);
}

AlarmArchive::Unarchived ArchivedList::read(const QByteArray& data) {
    if (!m_last || m_last->data != data) {
        AlarmArchive::Unarchived unarchived = m_archive.unarchive(data);
        m_last.reset();
        if (!holdsEachOnce(unarchived.alarms))
            return unarchived;
        m_last = {data, std::move(unarchived)};
    }
    AlarmArchive::Unarchived copies{.alarms = {}, .isComplete = m_last->unarchived.isComplete};
    copies.alarms.reserve(m_last->unarchived.alarms.size());
    for (const AlarmPtr& alarm : m_last->unarchived.alarms)
        copies.alarms.push_back(alarm->storedCopy());
    return copies;
}

void ArchivedList::save(const std::vector<AlarmPtr>& alarms) {
    const QByteArray data = m_archive.archivedData(alarms);
    if (data.isEmpty()) { // out of memory: the list that is stored is better than none
        qCWarning(logCore).noquote() << m_key << "cannot be archived and stays as it is";
        return;
    }
    m_defaults.setValue(m_key, data);
    m_defaults.synchronize();
    if (m_last)
        remember(data, alarms);
}

bool ArchivedList::replaceSounds(const QHash<QString, QString>& moved) {
    const auto alarms = load().value_or(std::vector<AlarmPtr>());
    const bool isAnyMoved = std::count_if(alarms.begin(), alarms.end(), [&](const AlarmPtr& each) {
                                return each->replaceSound(moved);
                            }) > 0;
    if (isAnyMoved)
        save(alarms);
    return isAnyMoved;
}

// As reading all of it back would. An alarm reads alone as it does among others, so that only those
// need reading that are new since the last time: mostly one, in its place or at the end, or none
// where one was taken out.
void ArchivedList::remember(const QByteArray& data, const std::vector<AlarmPtr>& alarms) {
    const std::vector<AlarmPtr> known = std::move(m_last->unarchived.alarms);
    m_last.reset();
    std::vector<AlarmPtr> records;
    std::vector<AlarmPtr> changed;
    auto next = known.begin();
    for (const AlarmPtr& alarm : alarms) {
        const auto end = next + std::min<std::ptrdiff_t>(2, known.end() - next);
        const auto found = std::find_if(
            next, end, [&](const AlarmPtr& record) { return record->isStoredLike(*alarm); });
        if (found != end) {
            records.push_back(*found);
            next = found + 1;
        } else {
            records.push_back(nullptr);
            changed.push_back(alarm);
            next = next == end ? end : next + 1;
        }
    }
    if (2 * changed.size() > alarms.size())
        return; // it costs less to read all of it, and only when somebody asks
    const std::vector<AlarmPtr> read = m_archive.unarchive(m_archive.archivedData(changed)).alarms;
    if (read.size() != changed.size() || !holdsEachOnce(alarms))
        return;
    auto fresh = read.begin();
    for (AlarmPtr& record : records)
        if (!record)
            record = *fresh++;
    m_last = {data, {.alarms = std::move(records), .isComplete = true}};
}

// The same value is met at every reading until somebody changes the list, and is kept once.
void ArchivedList::keepUnreadable(const QVariant& value) {
    QString kept;
    for (int i = 1; kept.isEmpty(); ++i) {
        const QString candidate = QStringLiteral("%1.damaged-%2").arg(m_key).arg(i);
        const QVariant known = m_defaults.value(candidate);
        if (known == value)
            return;
        if (!known.isValid())
            kept = candidate;
    }
    qCWarning(logCore).noquote() << "not all of" << m_key << "can be read; it is kept under"
                                 << kept;
    m_defaults.setValue(kept, value);
}

} // namespace dorvane
