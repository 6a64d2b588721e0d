// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/SoundFileTypes.h"

#include "platform/Sound.h"
#include "platform/Workspace.h"

#include <QFileInfo>
#include <QMimeDatabase>

#include <algorithm>

namespace dorvane {

namespace {

constexpr int longestBareName = 40;

} // namespace

SoundFileTypes::SoundFileTypes(const SoundPlayer& player, const Workspace& workspace)
    : m_workspace(workspace) {
    const QMimeDatabase database;
    for (const QString& name : player.soundUnfilteredTypes()) {
        const QMimeType type = database.mimeTypeForName(name);
        m_types.insert(type.isValid() ? type.name() : name); // the name may be an alias
        for (const QString& extension : type.suffixes())
            m_extensions.insert(extension.toLower());
    }
    // The desktop's database knows neither the type nor the extension.
    if (m_types.contains(QStringLiteral("audio/x-caf")))
        m_extensions.insert(QStringLiteral("caf"));
}

bool SoundFileTypes::isSound(const QString& path) const {
    const Verdict verdict = verdictOnExtension(QFileInfo(path).suffix().toLower());
    if (verdict == Verdict::Unknown)
        return isPlayableType(m_workspace.typeOfFile(path));
    return verdict == Verdict::Sound;
}

SoundFileTypes::Verdict SoundFileTypes::verdictOnExtension(const QString& extension) const {
    if (extension.isEmpty())
        return Verdict::Unknown;
    if (m_extensions.contains(extension))
        return Verdict::Sound;
    // Asking the database takes 0.3 ms when it does not know the extension.
    const QMutexLocker lock(&m_mutex);
    const auto known = m_otherExtensions.constFind(extension);
    if (known != m_otherExtensions.constEnd())
        return *known;
    const QList<QMimeType> types =
        QMimeDatabase().mimeTypesForFileName(QStringLiteral("x.") + extension);
    Verdict verdict = types.isEmpty() ? Verdict::Unknown : Verdict::NoSound;
    if (std::any_of(types.begin(), types.end(),
                    [this](const QMimeType& type) { return isPlayableType(type.name()); }))
        verdict = Verdict::Sound;
    m_otherExtensions.insert(extension, verdict);
    return verdict;
}

bool SoundFileTypes::isPlayableType(const QString& name) const {
    if (m_types.contains(name))
        return true;
    const QMimeType type = QMimeDatabase().mimeTypeForName(name);
    const QStringList ancestors = type.isValid() ? type.allAncestors() : QStringList();
    return m_types.contains(type.name()) ||
           std::any_of(ancestors.begin(), ancestors.end(),
                       [this](const QString& ancestor) { return m_types.contains(ancestor); });
}

QString SoundFileTypes::nameFilter() const {
    QSet<QString> extensions = m_extensions;
    for (const QMimeType& type : QMimeDatabase().allMimeTypes()) {
        if (!isPlayableType(type.name()))
            continue;
        for (const QString& extension : type.suffixes())
            extensions.insert(extension.toLower());
    }
    QStringList patterns;
    for (const QString& extension : extensions)
        patterns << QStringLiteral("*.") + extension;
    patterns.sort();
    // Of names without an extension a pattern can only say how long they are.
    QString bare;
    for (int length = 1; length <= longestBareName; ++length)
        patterns << (bare += QStringLiteral("[!.]"));
    return QStringLiteral("Sound files (%1)").arg(patterns.join(QLatin1Char(' ')));
}

} // namespace dorvane
