// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sounds/SoundFolders.h"
#include "sounds/SoundSources.h"

#include <QFileInfo>
#include <QSet>

#include <stop_token>
#include <vector>

namespace dorvane {

class SoundFileTypes;

// Fills the library's folders from the sounds of the system. Only what is missing is copied, so a
// sound that the user changed stays as it is and one that was deleted comes back. Failures are
// logged and otherwise ignored: the next start tries again. Any thread, one at a time; others may
// list the folders meanwhile and see the files that are whole.
class SoundsLoader {
public:
    // `types` must outlive the loader.
    SoundsLoader(SoundFolders folders, SoundSources sources, const SoundFileTypes& types);

    // The four fillings, one after the other; returns early when `stop` is requested.
    void LoadSoundsThread(const std::stop_token& stop) const;

    void refreshSystemSounds(const std::stop_token& stop = {}) const;
    void refreshUserSounds(const std::stop_token& stop = {}) const;
    void refreshiLifeSounds(const std::stop_token& stop = {}) const;
    void refreshiMovieSounds(const std::stop_token& stop = {}) const;

private:
    [[nodiscard]] std::vector<QFileInfo> systemSounds() const;
    void copyTree(const QString& source, const QString& destination, const QSet<QString>& taken,
                  const std::stop_token& stop) const;

    SoundFolders m_folders;
    SoundSources m_sources;
    const SoundFileTypes& m_types;
};

} // namespace dorvane
