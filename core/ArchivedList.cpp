// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ArchivedList.h"

#include "platform/Log.h"
#include "platform/UserDefaults.h"

namespace dorvane {

ArchivedList::ArchivedList(QString key, UserDefaults& defaults, const AlarmArchive& archive)
    : m_key(std::move(key)), m_defaults(defaults), m_archive(archive) {}

std::optional<std::vector<AlarmPtr>> ArchivedList::load() {
    const QVariant stored = m_defaults.value(m_key);
    if (!stored.isValid())
        return std::nullopt;
    AlarmArchive::Unarchived read{.alarms = {}, .isComplete = false};
    if (stored.typeId() == QMetaType::QByteArray)
        read = m_archive.unarchive(stored.toByteArray());
    if (!read.isComplete)
        keepUnreadable(stored);
    return std::move(read.alarms);
}

void ArchivedList::save(const std::vector<AlarmPtr>& alarms) {
    const QByteArray data = m_archive.archivedData(alarms);
    if (data.isEmpty()) { // out of memory: the list that is stored is better than none
        qCWarning(logCore).noquote() << m_key << "cannot be archived and stays as it is";
        return;
    }
    m_defaults.setValue(m_key, data);
    m_defaults.synchronize();
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
