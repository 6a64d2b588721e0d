// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/SoundLookup.h"

#include "sounds/AudioStorageController.h"
#include "sounds/SoundName.h"

#include <algorithm>

namespace dorvane {

namespace {

QString pathOf(const QStringList& paths, const QString& name) {
    const auto found = std::find_if(paths.begin(), paths.end(), [&](const QString& path) {
        return soundName(path).compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == paths.end() ? QString() : *found;
}

} // namespace

void findSound(AudioStorageController& library, const QString& nameOrPath,
               const std::function<void(const std::variant<QString, SoundProblem>& sound)>& found) {
    const QStringList all =
        library.rings() + library.addedSounds() + library.imovieSounds() + library.reminders();
    if (all.contains(nameOrPath))
        return found(nameOrPath);
    if (!nameOrPath.startsWith(u'/')) {
        const QString path = pathOf(all, nameOrPath);
        return path.isEmpty() ? found(SoundProblem{
                                    QStringLiteral("no sound is called \"%1\"").arg(nameOrPath)})
                              : found(path);
    }
    library.addAudioFilesWithURLs({QUrl::fromLocalFile(nameOrPath)},
                                  [found](const std::vector<AddedSound>& added) {
                                      if (!added.front().problem.isEmpty())
                                          found(SoundProblem{added.front().problem});
                                      else
                                          found(added.front().path);
                                  });
}

} // namespace dorvane
