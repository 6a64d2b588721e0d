// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/AddingFiles.h"

#include "sounds/AddedSound.h"
#include "sounds/SoundFileTypes.h"

#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QPointer>
#include <QStandardPaths>

namespace dorvane {

AudioStorageController::Report reportIn(QLabel& hint) {
    return [hint = QPointer(&hint)](const std::vector<AddedSound>& sounds) {
        if (hint)
            hint->setText(messageAbout(sounds));
    };
}

void chooseFilesToAdd(QWidget& window, AudioStorageController& library, QLabel& hint) {
    const auto panel = new QFileDialog(&window, QStringLiteral("Choose audio file(s)"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::ExistingFiles);
    panel->setOption(QFileDialog::HideNameFilterDetails);
    panel->setNameFilters({library.soundFileTypes().nameFilter(), QStringLiteral("All files (*)")});
    const QString music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    panel->setDirectory(QFileInfo(music).isDir() ? music : QDir::homePath());
    QObject::connect(panel, &QDialog::accepted, &hint, [panel, &library, &hint] {
        hint.setText(QStringLiteral("Adding…"));
        library.addAudioFilesWithURLs(panel->selectedUrls(), reportIn(hint));
    });
    panel->open();
}

} // namespace dorvane
