// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/SoundsLoader.h"

#include "platform/Log.h"
#include "sounds/FileManager.h"
#include "sounds/SoundFileTypes.h"

#include <QDir>
#include <QDirIterator>
#include <QTemporaryFile>

#include <algorithm>
#include <array>

namespace dorvane {

namespace {

// The sounds of a desktop's theme that are worth an alarm, by their names in the sound naming
// convention: what rings, calls or chimes. The rest are clicks and spoken tests of loudspeakers,
// and several are links to one file.
constexpr std::array themeSounds{
    QLatin1String("alarm-clock-elapsed"),
    QLatin1String("bell"),
    QLatin1String("complete"),
    QLatin1String("dialog-warning"),
    QLatin1String("message-new-instant"),
    QLatin1String("phone-incoming-call"),
    QLatin1String("service-login"),
};

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

// Removes what a program that died has left of a copy or a recording. What is being written at this
// moment is younger by the file system's own clock.
void sweepPartFiles(const QString& folder) {
    QTemporaryFile newest(folder + QStringLiteral("/.XXXXXX"));
    if (!newest.open())
        return;
    const QDateTime old = newest.fileTime(QFileDevice::FileModificationTime).addSecs(-60 * 60);
    QDirIterator files(folder, {QStringLiteral("*.part")}, QDir::Files | QDir::Hidden);
    while (files.hasNext()) {
        const QFileInfo file(files.next());
        if (file.lastModified() < old && QFile::remove(file.filePath()))
            qCInfo(logSounds) << "removed the unfinished" << file.fileName();
    }
}

// Whether the folder holds exactly files like these.
[[nodiscard]] bool folderHolds(const QString& folder, const std::vector<QFileInfo>& expected) {
    const auto isHeld = [&folder](const QFileInfo& file) {
        return contentsEqual(folder + QLatin1Char('/') + file.fileName(), file.filePath());
    };
    return namesIn(folder).size() == qsizetype(expected.size()) &&
           std::all_of(expected.begin(), expected.end(), isHeld);
}

[[nodiscard]] QFileInfoList filesIn(const QString& folder) {
    return QDir(folder).entryInfoList(QDir::Files, QDir::Name);
}

[[nodiscard]] bool isWorthAnAlarm(const QString& name) {
    return std::find(themeSounds.begin(), themeSounds.end(), name) != themeSounds.end();
}

} // namespace

SoundsLoader::SoundsLoader(SoundFolders folders, SoundSources sources, const SoundFileTypes& types)
    : m_folders(std::move(folders)), m_sources(std::move(sources)), m_types(types) {}

void SoundsLoader::LoadSoundsThread(const std::stop_token& stop) const {
    for (const QString& folder :
         {m_folders.sounds, m_folders.rings, m_folders.iMovie, m_folders.recordings})
        sweepPartFiles(folder);
    refreshSystemSounds(stop);
    refreshUserSounds(stop);
    refreshiLifeSounds(stop);
    refreshiMovieSounds(stop);
}

void SoundsLoader::refreshSystemSounds(const std::stop_token& stop) const {
    const std::vector<QFileInfo> system = systemSounds();
    if (folderHolds(m_folders.rings, system))
        return;
    const QSet<QString> taken = namesIn(m_folders.rings);
    for (const QFileInfo& sound : system) {
        if (!taken.contains(sound.fileName()) && !stop.stop_requested())
            copyItem(sound.filePath(), m_folders.rings + QLatin1Char('/') + sound.fileName(), stop);
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

// Dorvane's own first. Of a theme one file for each name: it may bring a sound in several formats,
// and an earlier folder's hides a later one's.
std::vector<QFileInfo> SoundsLoader::systemSounds() const {
    std::vector<QFileInfo> sounds;
    for (const QFileInfo& own : filesIn(m_sources.systemSounds))
        sounds.push_back(own);
    for (const QString& folder : m_sources.themeSounds) {
        for (const QFileInfo& file : filesIn(folder)) {
            const auto isSame = [&file](const QFileInfo& other) {
                return other.completeBaseName() == file.completeBaseName();
            };
            if (isWorthAnAlarm(file.completeBaseName()) &&
                std::none_of(sounds.begin(), sounds.end(), isSame) &&
                m_types.isSound(file.filePath()))
                sounds.push_back(file);
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
