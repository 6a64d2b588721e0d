// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/OldSoundFolders.h"

#include "platform/Log.h"
#include "platform/RunLoop.h"
#include "sounds/FileManager.h"
#include "sounds/SoundFolders.h"

#include <QDir>
#include <QDirIterator>

#include <algorithm>
#include <array>

namespace dorvane {

namespace {

struct Pair {
    QString from;
    QString to;
};

std::array<Pair, 3> foldersOf(const UserFolders& user) {
    const SoundFolders now(user);
    const QString old = user.caches;
    return {Pair{old + QStringLiteral("/Dorvane/Sounds"), now.sounds},
            {old + SoundFolders::recordingsBelow, now.recordings},
            {old + QStringLiteral("/Pendix/Rings"), now.breaks}};
}

// Both folders may be the same one, by the environment or by a link.
bool isToBeMoved(const Pair& folders) {
    const QFileInfo from(folders.from);
    return from.isDir() && from.canonicalFilePath() != QFileInfo(folders.to).canonicalFilePath();
}

void bringFiles(const Pair& folders, MovedSounds& moved, const std::stop_token& stop) {
    if (!QDir().mkpath(folders.to)) {
        qCWarning(logSounds).noquote() << "cannot make" << folders.to;
        return;
    }
    QDirIterator files(folders.from, QDir::Files | QDir::Hidden);
    while (files.hasNext() && !stop.stop_requested()) {
        const QString file = files.next();
        // What a power cut has left of a copy.
        if (file.endsWith(QStringLiteral(".part")) || files.fileInfo().size() == 0)
            continue;
        const KeptFile kept = keepFile(file, folders.to, stop);
        if (kept.problem.isEmpty())
            moved.insert(file, kept.path);
        else
            qCWarning(logSounds).noquote() << file << "stays where it is:" << kept.problem;
    }
    syncFolder(folders.to);
    syncFolder(QFileInfo(folders.to).path());
}

void removeOld(const UserFolders& user, const MovedSounds& moved) {
    for (auto file = moved.cbegin(); file != moved.cend(); ++file)
        if (contentsEqual(file.key(), file.value()))
            QFile::remove(file.key());
    for (const Pair& folders : foldersOf(user))
        if (isToBeMoved(folders))
            QDir().rmdir(folders.from); // unless something stays in it
}

} // namespace

QString movedSoundPath(const UserFolders& user, const QString& path) {
    for (const auto& [from, to] : foldersOf(user))
        if (path.startsWith(from + QLatin1Char('/')))
            return to + path.mid(from.size());
    return {};
}

OldSoundFolders::OldSoundFolders(RunLoop& runLoop, const UserFolders& user, Rewrite rewrite)
    : m_runLoop(runLoop), m_user(user), m_rewrite(std::move(rewrite)) {}

void OldSoundFolders::bringOver() {
    const auto folders = foldersOf(m_user);
    if (std::none_of(folders.begin(), folders.end(), isToBeMoved))
        return;
    m_thread.run([this, folders, weak = m_lifeline.weak()](const std::stop_token& stop) {
        MovedSounds moved;
        for (const Pair& each : folders)
            if (isToBeMoved(each))
                bringFiles(each, moved, stop);
        m_runLoop.post([weak, moved] {
            if (OldSoundFolders* const self = weak.get())
                self->rewrite(moved);
        });
    });
}

void OldSoundFolders::rewrite(const MovedSounds& moved) {
    m_rewrite(moved, [weak = m_lifeline.weak(), moved](bool isOnDisk) {
        OldSoundFolders* const self = weak.get();
        if (self && isOnDisk)
            self->m_thread.run(
                [user = self->m_user, moved](const std::stop_token&) { removeOld(user, moved); });
    });
}

} // namespace dorvane
