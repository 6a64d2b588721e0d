// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QMutex>
#include <QSet>
#include <QString>

namespace dorvane {

class SoundPlayer;
class Workspace;

// Tells the files that can be played from all others. The name decides wherever it says anything,
// so that a folder of thousands of files is listed without opening them; only a file whose name
// says nothing is looked into. Made on the main thread, used on any.
class SoundFileTypes {
public:
    // The workspace must outlive this.
    SoundFileTypes(const SoundPlayer& player, const Workspace& workspace);

    [[nodiscard]] bool isSound(const QString& path) const;

    // The filter of a file dialog that offers sounds: "Sound files (*.aif *.aiff ...)", and with
    // them the files whose name does not say what they are. Reads the whole of the desktop's type
    // database, which takes some 30 ms the first time.
    [[nodiscard]] QString nameFilter() const;

private:
    enum class Verdict { Sound, NoSound, Unknown };

    [[nodiscard]] Verdict verdictOnExtension(const QString& extension) const;
    [[nodiscard]] bool isPlayableType(const QString& type) const;

    const Workspace& m_workspace;
    QSet<QString> m_types;
    QSet<QString> m_extensions; // lower case
    mutable QMutex m_mutex;
    mutable QHash<QString, Verdict> m_otherExtensions;
};

} // namespace dorvane
