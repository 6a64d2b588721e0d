// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/preferences/PropertyListDefaults.h"

#include "platform/linux/preferences/AtomicFile.h"
#include "platform/Log.h"
#include "platform/RunLoop.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace dorvane {

PropertyListDefaults::PropertyListDefaults(const QString& path, const PropertyListFormat& format,
                                           const RunLoop& runLoop)
    : m_path(pathBehindLinks(path))
    , m_format(format)
    , m_runLoop(runLoop)
    , m_wasUnread(!readIfChanged()) {
    removeUnfinishedWrites(m_path, runLoop.now());
    if (m_wasUnread)
        qCWarning(logPlatform) << "preferences are kept in memory only:" << m_path;
}

QVariant PropertyListDefaults::value(const QString& key) const {
    const auto changed = m_changes.constFind(key);
    const QVariant own = changed != m_changes.cend() ? *changed : m_stored.value(key);
    return own.isValid() ? own : m_registered.value(key);
}

void PropertyListDefaults::setValue(const QString& key, const QVariant& value) {
    m_changes.insert(key, value);
}

void PropertyListDefaults::removeValue(const QString& key) {
    m_changes.insert(key, QVariant());
}

void PropertyListDefaults::registerDefaults(const QVariantMap& defaults) {
    m_registered.insert(defaults);
}

bool PropertyListDefaults::synchronize() {
    if (m_changes.isEmpty())
        return true;
    if (!readIfChanged())
        return false;
    const QVariantMap values = merged();
    const bool isInFile = m_stamp && values == m_stored;
    if (!isInFile && !(copyUnread() && write(values)))
        return false;
    m_wasUnread = false;
    m_stored = values;
    m_changes.clear();
    return true;
}

QVariantMap PropertyListDefaults::merged() const {
    QVariantMap values = m_stored;
    for (auto change = m_changes.cbegin(); change != m_changes.cend(); ++change) {
        if (change.value().isValid())
            values.insert(change.key(), change.value());
        else
            values.remove(change.key());
    }
    return values;
}

std::optional<PropertyListDefaults::Stamp> PropertyListDefaults::stampOfFile() const {
    struct stat status {};
    if (::stat(QFile::encodeName(m_path).constData(), &status) != 0)
        return std::nullopt;
    return Stamp{status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

// Brings m_stored up to date with the file. A file that has gone, or is damaged, takes nothing away
// from what is known already. False when the file is there and must not be overwritten.
bool PropertyListDefaults::readIfChanged() {
    const auto stamp = stampOfFile();
    if (stamp && stamp == m_stamp)
        return true;
    m_stamp.reset();
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (!file.exists())
            return true;
        qCWarning(logPlatform) << "cannot read preferences" << m_path << file.errorString();
        return false;
    }
    const QByteArray data = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        qCWarning(logPlatform) << "cannot read preferences" << m_path << file.errorString();
        return false;
    }
    const auto root = m_format.parse(data);
    if (!root || root->typeId() != QMetaType::QVariantMap)
        return putAside();
    m_stored = root->toMap();
    m_stamp = stamp;
    return true;
}

bool PropertyListDefaults::putAside() {
    const QString name = newName("damaged");
    QFile file(m_path);
    if (!file.rename(name)) {
        qCWarning(logPlatform) << "cannot put aside damaged preferences" << m_path
                               << file.errorString();
        return false;
    }
    qCWarning(logPlatform) << "damaged preferences were put aside as" << name;
    return true;
}

// True when there is nothing that would be lost.
bool PropertyListDefaults::copyUnread() {
    if (!m_wasUnread || !m_stamp)
        return true;
    const QString name = newName("unread");
    QFile file(m_path);
    std::optional<QString> error = QStringLiteral("cannot read");
    if (file.open(QIODevice::ReadOnly))
        error = writeFileAtomically(name, file.readAll());
    if (error) {
        qCWarning(logPlatform) << "cannot copy preferences" << m_path << *error;
        return false;
    }
    qCWarning(logPlatform) << "preferences that could not be read at the start were copied to"
                           << name;
    return true;
}

// Beside the file, telling why and when it was made.
QString PropertyListDefaults::newName(const char* reason) const {
    const QString dated = QStringLiteral("%1.%2-%3")
                              .arg(m_path, QLatin1String(reason),
                                   m_runLoop.now().toString(QStringLiteral("yyyy-MM-ddTHH-mm-ss")));
    QString name = dated;
    for (int i = 2; QFileInfo::exists(name); ++i)
        name = QStringLiteral("%1-%2").arg(dated).arg(i);
    return name;
}

bool PropertyListDefaults::write(const QVariantMap& values) {
    const auto bytes = m_format.binary(values);
    if (!bytes) {
        qCWarning(logPlatform) << "a preference has a value that cannot be stored:"
                               << m_changes.keys();
        return false;
    }
    QDir().mkpath(QFileInfo(m_path).path()); // if that fails, writing says why
    if (const auto error = writeFileAtomically(m_path, *bytes)) {
        qCWarning(logPlatform) << "cannot write preferences" << m_path << *error;
        return false;
    }
    m_stamp = stampOfFile();
    return true;
}

} // namespace dorvane
