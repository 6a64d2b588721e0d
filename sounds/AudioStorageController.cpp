// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/AudioStorageController.h"

#include "platform/Log.h"
#include "platform/RunLoop.h"
#include "platform/Sound.h"
#include "sounds/FileManager.h"
#include "sounds/MenuText.h"
#include "sounds/SoundName.h"
#include "sounds/SoundsLoader.h"

#include <QDir>
#include <QDirIterator>
#include <QFontMetrics>
#include <QMenu>

namespace dorvane {

namespace {

// No menu is to be wider than a screen, and the end of a name tells most.
[[nodiscard]] QString shortenedToFit(const QString& name, const QFontMetrics& metrics) {
    constexpr int widest = 48; // average characters
    return metrics.elidedText(name, Qt::ElideMiddle, widest * metrics.averageCharWidth());
}

// The path of a file on this machine; empty for any other address. Music libraries write
// "file://localhost/...", which Qt would take for a share on another machine.
[[nodiscard]] QString localPath(const QUrl& url) {
    return url.host() == QStringLiteral("localhost") ? url.path(QUrl::FullyDecoded)
                                                     : url.toLocalFile();
}

} // namespace

AudioStorageController::AudioStorageController(RunLoop& runLoop, const UserFolders& user,
                                               SoundSources sources, const SoundPlayer& player,
                                               const Workspace& workspace)
    : m_runLoop(runLoop), m_player(player), m_folders(user), m_types(player, workspace) {
    createFolders(sources);
    copyPing(sources);
    m_loading.run([loader = SoundsLoader(m_folders, std::move(sources), m_types)](
                      const std::stop_token& stop) { loader.LoadSoundsThread(stop); });
}

void AudioStorageController::createFolders(const SoundSources& sources) const {
    QStringList folders = {m_folders.sounds, m_folders.rings};
    if (QFileInfo::exists(sources.iMovieResources))
        folders << m_folders.iMovie;
    for (const QString& folder : folders) {
        if (!QDir().mkpath(folder))
            qCInfo(logSounds) << "cannot make" << folder;
    }
}

// The quick alarms ring with Ping. The library is made when a sound is first asked for, and that
// can be a quick alarm falling due on the very first day: it must not lose the race against the
// loading thread. The file is small; every other sound can wait for the thread.
void AudioStorageController::copyPing(const SoundSources& sources) const {
    const QString ping = QStringLiteral("/Ping.aiff");
    const QFileInfo copy(m_folders.rings + ping);
    if (!copy.exists() || copy.size() == 0)
        copyItem(sources.systemSounds + ping, copy.filePath());
}

bool AudioStorageController::isSystemSound(const QString& path) const {
    const QFileInfo file(path);
    return path == m_folders.rings + QLatin1Char('/') + file.fileName() && file.isFile() &&
           !file.isHidden() && m_types.isSound(path);
}

void AudioStorageController::addAudioFilesWithURLs(const QList<QUrl>& urls, const Report& report) {
    // On the thread: the files may be large, or lie on a slow disk.
    m_loading.run([this, urls, report](const std::stop_token& stop) {
        std::vector<AddedSound> sounds;
        for (const QUrl& url : urls)
            sounds.push_back(add(url, stop));
        if (report)
            m_runLoop.post([report, sounds = std::move(sounds)] { report(sounds); });
    });
}

AddedSound AudioStorageController::add(const QUrl& url, const std::stop_token& stop) const {
    const QString source = url.isLocalFile() ? localPath(url) : QString();
    AddedSound sound{.name = QFileInfo(url.path()).completeBaseName()};
    if (source.isEmpty())
        sound.problem = QStringLiteral("it is not a file on this computer");
    else if (QFileInfo(source).isFile() && (!m_types.isSound(source) || !m_player.canPlay(source)))
        sound.problem = QStringLiteral("it is not a sound that can be played here");
    if (!sound.problem.isEmpty()) {
        qCInfo(logSounds) << "not added:" << url.toDisplayString() << sound.problem;
        return sound;
    }
    const KeptFile kept = keepCopy(source, m_folders.sounds, stop);
    sound.path = kept.path;
    sound.problem = kept.problem;
    if (kept.problem.isEmpty()) {
        syncFolder(m_folders.sounds);
        sound.name = soundName(kept.path);
    }
    return sound;
}

QStringList AudioStorageController::rings() const {
    return fullPathsContentsAtPath(m_folders.rings);
}

QStringList AudioStorageController::addedSounds() const {
    return fullPathsContentsAtPath(m_folders.sounds);
}

QStringList AudioStorageController::imovieSounds() const {
    return fullPathsContentsAtPath(m_folders.iMovie);
}

QStringList AudioStorageController::reminders() const {
    return fullPathsContentsAtPath(m_folders.recordings);
}

QStringList AudioStorageController::fullPathsContentsAtPath(const QString& folder) const {
    QStringList paths;
    QDirIterator files(folder, QDir::Files);
    while (files.hasNext()) {
        const QString path = files.next();
        if (m_types.isSound(path))
            paths << path;
    }
    if (folder == m_folders.iMovie)
        paths += imovieExtras(paths);
    return paths;
}

// Effects come in forms that are not recognised as sounds; one of each base name is offered all
// the same.
QStringList AudioStorageController::imovieExtras(const QStringList& listed) const {
    const QSet<QString> sounds(listed.begin(), listed.end());
    QSet<QString> taken;
    QStringList extras;
    QDirIterator files(m_folders.iMovie, QDir::Files);
    while (files.hasNext()) {
        const QString path = files.next();
        const QString baseName = files.fileInfo().completeBaseName();
        if (sounds.contains(path) || taken.contains(baseName))
            continue;
        extras << path;
        taken.insert(baseName);
    }
    return extras;
}

void AudioStorageController::fillMenu(QMenu& menu, const QStringList& paths,
                                      const SoundAction& action) {
    menu.clear();
    QList<QAction*> items;
    items.reserve(paths.size());
    const QFontMetrics metrics(menu.font());
    for (const QString& path : paths) {
        auto* item = new QAction(menuText(shortenedToFit(soundName(path), metrics)), &menu);
        item->setData(path);
        QObject::connect(item, &QAction::triggered, item, [action, path] { action(path); });
        items << item;
    }
    menu.addActions(items);
}

void AudioStorageController::fillMenuWithSystemSounds(QMenu& menu,
                                                      const SoundAction& action) const {
    fillMenu(menu, rings(), action);
}

void AudioStorageController::fillMenuWithAddedSounds(QMenu& menu, const SoundAction& action) const {
    fillMenu(menu, addedSounds(), action);
}

void AudioStorageController::fillMenuWithiMovieSounds(QMenu& menu,
                                                      const SoundAction& action) const {
    fillMenu(menu, imovieSounds(), action);
}

void AudioStorageController::fillMenuWithReminderSounds(QMenu& menu,
                                                        const SoundAction& action) const {
    fillMenu(menu, reminders(), action);
}

} // namespace dorvane
