// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Bundle.h"
#include "sounds/AudioStorageController.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/Files.h"
#include "tests/support/Windows.h"

namespace dorvane::testing {

// A home and the sources of a sound library in a temporary folder. What a folder holds is written
// and read as "name=contents", sorted by name.
class SoundLibraryFixture : public FakeDesktopTest {
protected:
    SoundLibraryFixture() {
        sources.systemSounds = path("system");
        sources.themeSounds = {path("theme"), path("other theme")};
        sources.userSounds = path("delivered");
        sources.iMovieResources = path("imovie");
        sources.iLifeEffects = path("imovie/ilife");
        sources.iMovieEffects = path("imovie/effects");
    }

    void fill(const QString& folder, const QStringList& files) {
        QDir().mkpath(folder);
        for (const QString& file : files) {
            const auto mark = file.indexOf(u'=');
            writeFile(folder + u'/' + file.left(mark), file.mid(mark + 1).toUtf8());
        }
    }

    [[nodiscard]] static QStringList held(const QString& folder) {
        QStringList files;
        const auto everything = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
        for (const QFileInfo& entry : QDir(folder).entryInfoList(everything, QDir::Name)) {
            files << entry.fileName() + u'=' + QString::fromUtf8(contentsOf(entry.filePath()));
        }
        return files;
    }

    // Until the loading thread has brought the folder to this.
    static void waitUntilHeld(const QString& folder, const QStringList& files) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return held(folder) == files; }, 10'000))
            << qPrintable(held(folder).join(u'\n'));
    }

    const SoundFolders folders{user};
    SoundSources sources;
};

} // namespace dorvane::testing
