// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/preferences/PreferencesFile.h"

#include "platform/linux/preferences/AtomicFile.h"
#include "platform/Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace dorvane {

namespace {

void put(QVariantMap& values, const QString& key, const QVariant& value) {
    if (value.isValid())
        values.insert(key, value);
    else
        values.remove(key);
}

// Beside the file, telling why and when it was made.
QString newName(const QString& path, const char* reason, const QDateTime& now) {
    const QString dated =
        QStringLiteral("%1.%2-%3")
            .arg(path, QLatin1String(reason), now.toString(QStringLiteral("yyyy-MM-ddTHH-mm-ss")));
    QString name = dated;
    for (int i = 2; QFileInfo::exists(name); ++i)
        name = QStringLiteral("%1-%2").arg(dated).arg(i);
    return name;
}

} // namespace

PreferencesFile::PreferencesFile(QString path, const PropertyListFormat& format)
    : m_path(std::move(path)), m_format(format) {}

// Each time anew: a link can come with a folder that is mounted late.
QString PreferencesFile::path() const {
    return pathBehindLinks(m_path);
}

std::optional<QString> PreferencesFile::begin(const QDateTime& now) {
    auto problem = read(now);
    m_known = m_contents;
    return problem;
}

// A file that has gone, or is damaged, takes nothing away from what is known already.
std::optional<QString> PreferencesFile::read(const QDateTime& now) {
    const PlainFile seen = PlainFile::look(path());
    if (seen.stamp && seen.stamp == m_stamp)
        return std::nullopt;
    m_stamp.reset();
    const PlainFile file = PlainFile::read(path());
    if (file.isAbsent())
        return std::nullopt;
    if (!file.stamp)
        return QStringLiteral("the file cannot be read: ") + file.error;
    const auto root = m_format.parse(file.contents);
    if (!root || root->typeId() != QMetaType::QVariantMap)
        return putAside(now);
    m_contents = root->toMap();
    m_stamp = file.stamp;
    return std::nullopt;
}

std::optional<QString> PreferencesFile::change(const Changes& changes, const Joins& joins,
                                               const QDateTime& now) {
    if (auto problem = read(now))
        return problem;
    const Joined wanted = joined(changes, joins);
    const bool isInFile = m_stamp && wanted.values == m_contents;
    if (!isInFile && (m_stamp || !changes.isEmpty())) {
        auto problem = wanted.replacesUnread ? copyUnread(now) : std::nullopt;
        if (!problem)
            problem = write(wanted.values);
        if (problem)
            return problem;
    }
    m_known = m_contents = wanted.values;
    return std::nullopt;
}

PreferencesFile::Joined PreferencesFile::joined(const Changes& changes, const Joins& joins) const {
    Joined result{.values = m_contents};
    const auto keys = changes.keys() + joins.keys();
    for (const QString& key : QSet<QString>(keys.begin(), keys.end())) {
        const QVariant known = m_known.value(key);
        const QVariant theirs = m_contents.value(key);
        QVariant value = changes.value(key, theirs);
        if (theirs != known) {
            if (joins.contains(key))
                value = joins[key](known, changes.value(key, known), theirs);
            result.replacesUnread = result.replacesUnread || (theirs.isValid() && value != theirs);
        }
        put(result.values, key, value);
    }
    return result;
}

std::optional<QString> PreferencesFile::putAside(const QDateTime& now) {
    const QString name = newName(path(), "damaged", now);
    QFile file(path());
    if (!file.rename(name))
        return QStringLiteral("the file is damaged and cannot be put aside: ") + file.errorString();
    qCWarning(logPlatform) << "damaged preferences were put aside as" << name;
    return std::nullopt;
}

std::optional<QString> PreferencesFile::copyUnread(const QDateTime& now) const {
    const PlainFile file = PlainFile::read(path());
    if (file.stamp != m_stamp)
        return QStringLiteral("the file changes at this moment");
    const QString name = newName(path(), "unread", now);
    if (const auto error = writeFileAtomically(name, file.contents))
        return error;
    qCWarning(logPlatform) << "preferences that were changed elsewhere, or could not be read "
                              "before, were copied to"
                           << name;
    return std::nullopt;
}

std::optional<QString> PreferencesFile::write(const QVariantMap& values) {
    const auto bytes = m_format.binary(values);
    if (!bytes)
        return QStringLiteral("a preference has a value that cannot be stored");
    QDir().mkpath(QFileInfo(path()).path()); // if that fails, writing says why
    if (auto error = writeFileAtomically(path(), *bytes))
        return error;
    m_stamp = PlainFile::look(path()).stamp;
    return std::nullopt;
}

} // namespace dorvane
