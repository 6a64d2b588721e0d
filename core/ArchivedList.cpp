// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ArchivedList.h"

#include "platform/Log.h"
#include "platform/RunLoop.h"
#include "platform/UserDefaults.h"

namespace dorvane {

ArchivedList::ArchivedList(QString key, UserDefaults& defaults, const AlarmArchive& archive,
                           const RunLoop& runLoop)
    : m_key(std::move(key)), m_defaults(defaults), m_archive(archive), m_runLoop(runLoop) {}

std::optional<std::vector<AlarmPtr>> ArchivedList::load() {
    const QVariant stored = m_defaults.value(m_key);
    if (!stored.isValid())
        return std::nullopt;
    const QByteArray data = stored.toByteArray();
    AlarmArchive::Unarchived read = m_archive.unarchive(data);
    if (!read.isComplete)
        keepUnreadable(data);
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

void ArchivedList::keepUnreadable(const QByteArray& data) {
    const QString kept =
        m_key + QStringLiteral(".damaged-") + m_runLoop.now().toString(Qt::ISODate);
    qCWarning(logCore).noquote() << "not all of" << m_key << "can be read; the data is kept under"
                                 << kept;
    m_defaults.setValue(kept, data);
}

} // namespace dorvane
