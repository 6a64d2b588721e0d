// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sounds/AddedSound.h"
#include "sounds/LoadingThread.h"
#include "sounds/SoundFileTypes.h"
#include "sounds/SoundFolders.h"
#include "sounds/SoundSources.h"

#include <QList>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <vector>

class QMenu;

namespace dorvane {

class RunLoop;

// The sound library: folders that hold every sound an alarm can play; those of the user's lie with
// his data, and copies that can be made again below his caches. It is nothing but those folders;
// every listing reads its folder afresh, in the order in which the file system gives it. A thread
// of its own fills them from the system's sounds, from the moment this is made; listings taken
// meanwhile show what is there so far. Main thread only.
class AudioStorageController {
public:
    // What choosing a sound in a menu calls.
    using SoundAction = std::function<void(const QString& path)>;

    // Called on the main thread when all files of one call were dealt with, in their order.
    using Report = std::function<void(const std::vector<AddedSound>& sounds)>;

    // Makes the folders and starts filling them. The loop, the player and the workspace must
    // outlive this.
    AudioStorageController(RunLoop& runLoop, const UserFolders& user, SoundSources sources,
                           const SoundPlayer& player, const Workspace& workspace);

    // The one instance of the application.
    static AudioStorageController& sharedController();

    // The library's root, shown to the user; ends in a slash.
    [[nodiscard]] const QString& storedSoundsPath() const { return m_folders.root; }

    // Whether rings() contains the path; looks at that one file only.
    [[nodiscard]] bool isSystemSound(const QString& path) const;

    // The ring that quick alarms play; it is there as soon as this is made.
    [[nodiscard]] QString pingPath() const {
        return m_folders.rings + QStringLiteral("/Ping.aiff");
    }

    // Copies local sound files among the user's sounds, each under its own name, and returns before
    // that is done. A name that is there already keeps its file: where that is another one, the new
    // one gets a number. Failures are logged.
    void addAudioFilesWithURLs(const QList<QUrl>& urls, const Report& report = {});

    // The sound files of one group, as full paths.
    [[nodiscard]] QStringList rings() const;
    [[nodiscard]] QStringList addedSounds() const;
    [[nodiscard]] QStringList imovieSounds() const;
    [[nodiscard]] QStringList reminders() const;
    [[nodiscard]] QStringList fullPathsContentsAtPath(const QString& folder) const;

    // Replaces the menu's items by one for each path, titled with its name and holding the path as
    // its data().
    static void fillMenu(QMenu& menu, const QStringList& paths, const SoundAction& action);
    void fillMenuWithSystemSounds(QMenu& menu, const SoundAction& action) const;
    void fillMenuWithAddedSounds(QMenu& menu, const SoundAction& action) const;
    void fillMenuWithiMovieSounds(QMenu& menu, const SoundAction& action) const;
    void fillMenuWithReminderSounds(QMenu& menu, const SoundAction& action) const;

    // What counts as a sound file here.
    [[nodiscard]] const SoundFileTypes& soundFileTypes() const { return m_types; }

    // Ends the copying soon and waits for that; to be called before the process quits.
    void stopLoading() { m_loading.stop(); }

private:
    void createFolders(const SoundSources& sources) const;
    void copyPing(const SoundSources& sources) const;
    [[nodiscard]] AddedSound add(const QUrl& url, const std::stop_token& stop) const;
    [[nodiscard]] QStringList imovieExtras(const QStringList& listed) const;

    RunLoop& m_runLoop;
    const SoundPlayer& m_player;
    const SoundFolders m_folders;
    const SoundFileTypes m_types;
    LoadingThread m_loading; // last: its jobs use the others
};

} // namespace dorvane
