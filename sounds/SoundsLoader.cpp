// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/SoundsLoader.h"

#include "sounds/FileManager.h"
#include "sounds/SoundFileTypes.h"

#include <QDir>
#include <QDirIterator>

#include <algorithm>

namespace dorvane {

namespace {

// The names in the folder, one level. An empty file does not count: it is what a power cut can
// leave of a copy, and has to be copied again.
[[nodiscard]] QSet<QString> namesIn(const QString& folder) {
    QSet<QString> names;
    QDirIterator entries(folder, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    while (entries.hasNext()) {
        const QFileInfo entry(entries.next());
        if (entry.isDir() || entry.size() > 0)
            names.insert(entry.fileName());
    }
    return names;
}

// Whether the folder holds exactly the files of `expected`, from name to a file like it.
[[nodiscard]] bool folderHolds(const QString& folder, const QMap<QString, QString>& expected) {
    const QStringList names = expected.keys();
    return namesIn(folder) == QSet<QString>(names.begin(), names.end()) &&
           std::all_of(names.begin(), names.end(), [&](const QString& name) {
               return contentsEqual(folder + QLatin1Char('/') + name, expected[name]);
           });
}

} // namespace

SoundsLoader::SoundsLoader(SoundFolders folders, SoundSources sources, const SoundFileTypes& types)
    : m_folders(std::move(folders)), m_sources(std::move(sources)), m_types(types) {}

void SoundsLoader::LoadSoundsThread(const std::stop_token& stop) const {
    refreshSystemSounds(stop);
    refreshUserSounds(stop);
    refreshiLifeSounds(stop);
    refreshiMovieSounds(stop);
}

void SoundsLoader::refreshSystemSounds(const std::stop_token& stop) const {
    const QMap<QString, QString> system = systemSounds();
    if (folderHolds(m_folders.rings, system))
        return;
    const QSet<QString> taken = namesIn(m_folders.rings);
    for (auto sound = system.begin(); sound != system.end() && !stop.stop_requested(); ++sound) {
        if (!taken.contains(sound.key()))
            copyItem(sound.value(), m_folders.rings + QLatin1Char('/') + sound.key(), stop);
    }
}

void SoundsLoader::refreshUserSounds(const std::stop_token& stop) const {
    const QString withdrawn = QStringLiteral("Alarm_Long_Digital_Watch.mp3");
    const QSet<QString> taken = namesIn(m_folders.sounds);
    copyTree(m_sources.userSounds, m_folders.sounds, taken, stop);
    // Meant to look at the listing from before the copying: a file of that name that is still
    // delivered is there after one start and gone after the next.
    if (taken.contains(withdrawn))
        QFile::remove(m_folders.sounds + QLatin1Char('/') + withdrawn);
}

void SoundsLoader::refreshiLifeSounds(const std::stop_token& stop) const {
    copyTree(m_sources.iLifeEffects, m_folders.iMovie, namesIn(m_folders.iMovie), stop);
}

void SoundsLoader::refreshiMovieSounds(const std::stop_token& stop) const {
    copyTree(m_sources.iMovieEffects, m_folders.iMovie, namesIn(m_folders.iMovie), stop);
}

// From the name that a system sound has in the library to its file.
QMap<QString, QString> SoundsLoader::systemSounds() const {
    QMap<QString, QString> sounds;
    QDirIterator own(m_sources.systemSounds, QDir::Files);
    while (own.hasNext()) {
        const QString path = own.next();
        sounds.insert(own.fileName(), path);
    }
    // A theme's folder holds other files as well, and names that we have.
    for (const QString& folder : m_sources.themeSounds) {
        QDirIterator theme(folder, QDir::Files);
        while (theme.hasNext()) {
            const QString path = theme.next();
            if (!sounds.contains(theme.fileName()) && m_types.isSound(path))
                sounds.insert(theme.fileName(), path);
        }
    }
    return sounds;
}

// Copies the files of a folder and of all folders in it into one folder, but those whose name is
// taken. Of two of the same name in the tree the first one stays.
void SoundsLoader::copyTree(const QString& source, const QString& destination,
                            const QSet<QString>& taken, const std::stop_token& stop) const {
    QDirIterator files(source, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext() && !stop.stop_requested()) {
        const QString path = files.next();
        if (!taken.contains(files.fileName()))
            copyItem(path, destination + QLatin1Char('/') + files.fileName(), stop);
    }
}

} // namespace dorvane
