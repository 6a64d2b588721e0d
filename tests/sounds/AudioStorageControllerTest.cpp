// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/sounds/SoundLibraryFixture.h"

namespace dorvane::testing {
namespace {

using ::testing::UnorderedElementsAreArray;

class AudioStorageControllerTest : public SoundLibraryFixture {
protected:
    [[nodiscard]] AudioStorageController* make() {
        library = std::make_unique<AudioStorageController>(user, sources, player, workspace);
        return library.get();
    }

    [[nodiscard]] static QStringList names(const QStringList& paths) {
        QStringList result;
        for (const QString& file : paths)
            result << QFileInfo(file).fileName();
        return result;
    }

    std::unique_ptr<AudioStorageController> library;
};

TEST_F(AudioStorageControllerTest, HasThePresetsSoundBeforeAnythingCanAskForIt) {
    QStringList many = {u"Ping.aiff=ping"_qs};
    for (int i = 0; i < 50; ++i)
        many << u"A%1.aiff=%2"_qs.arg(i, 2, 10, QLatin1Char('0')).arg(QString(9'000, u'x'));
    fill(path("system"), many);
    many.sort();

    EXPECT_TRUE(make()->isSystemSound(folders.rings + u"/Ping.aiff"_qs));
    library.reset(); // quits amid the copying: what is there is whole
    for (const QString& file : held(folders.rings))
        EXPECT_TRUE(many.contains(file)) << qPrintable(file.left(40));

    fill(folders.rings, {u"Ping.aiff=mine"_qs});
    many.replace(many.indexOf(u"Ping.aiff=ping"_qs), u"Ping.aiff=mine"_qs);
    (void)make();
    waitUntilHeld(folders.rings, many);
    EXPECT_FALSE(QFileInfo::exists(folders.iMovie)) << "there is no iMovie";
}

TEST_F(AudioStorageControllerTest, ListsWhatCanBePlayed) {
    (void)make();
    const QByteArray wave = QByteArray("RIFF\x24\0\0\0WAVEfmt ", 16) + QByteArray(32, '\0');
    struct {
        const char* name;
        QByteArray contents;
        bool isSound;
    } const files[] = {
        {"Ping.aiff", "x", true},       {"LOUD.MP3", "x", true},
        {"two.dots.oga", "x", true},    {"Notes.txt", wave, false}, // the name decides
        {"no extension", wave, true},   {"wave.unheardof", wave, true},
        {"text.unheardof", "x", false}, {"film.mp4", "x", false},
        {".hidden.aiff", "x", false},   {"folder.mp3/inside.mp3", "x", false},
        {"Boing.caf", "x", false}, // this player has no decoder for it
        {"Boing.part", "x", false},
    };
    QStringList expected;
    for (const auto& file : files) {
        for (const QString& folder : {folders.rings, folders.recordings, folders.iMovie})
            write(folder + QLatin1Char('/') + QString::fromUtf8(file.name), file.contents);
        if (file.isSound)
            expected << QString::fromUtf8(file.name);
    }
    EXPECT_THAT(names(library->rings()), UnorderedElementsAreArray(expected));
    EXPECT_THAT(names(library->reminders()), UnorderedElementsAreArray(expected));
    EXPECT_EQ(library->addedSounds(), QStringList());

    // Among the effects one more of each base name, recognised or not.
    const QStringList effects = names(library->imovieSounds());
    EXPECT_THAT(effects.mid(0, expected.size()), UnorderedElementsAreArray(expected));
    EXPECT_EQ(effects.count(u"Boing.caf"_qs) + effects.count(u"Boing.part"_qs), 1);
    EXPECT_EQ(effects.size(), expected.size() + 4); // Notes, text, film and one Boing

    QStringList asked = library->rings();
    for (const auto& file : files)
        asked << folders.rings + QLatin1Char('/') + QString::fromUtf8(file.name);
    asked << path("system/Ping.aiff") << folders.rings << u"Ping.aiff"_qs << QString()
          << folders.rings + u"/missing.aiff"_qs << folders.rings + u"/../Rings/Ping.aiff"_qs
          << folders.recordings + u"/Ping.aiff"_qs;
    for (const QString& file : asked)
        EXPECT_EQ(library->isSystemSound(file), library->rings().contains(file))
            << qPrintable(file);
}

TEST_F(AudioStorageControllerTest, AddsTheUsersFilesUnderTheirNames) {
    fill(path("elsewhere"), {u"New.mp3=new"_qs, u"Old.mp3=new"_qs, u"100% Süß.mp3=sweet"_qs});
    fill(folders.sounds, {u"Old.mp3=old"_qs});
    make()->addAudioFilesWithURLs({
        QUrl(u"http://example.org/Song.mp3"_qs),
        QUrl::fromLocalFile(path("elsewhere/missing.mp3")),
        QUrl::fromLocalFile(path("elsewhere/Old.mp3")),
        QUrl(u"file://server"_qs + path("elsewhere/New.mp3")),
        QUrl(u"file://localhost"_qs + path("elsewhere/100%25%20Süß.mp3")),
        QUrl::fromLocalFile(folders.sounds + u"/Old.mp3"_qs),
        QUrl::fromLocalFile(path("elsewhere/New.mp3")),
    });
    waitUntilHeld(folders.sounds, {u"100% Süß.mp3=sweet"_qs, u"New.mp3=new"_qs, u"Old.mp3=old"_qs});

    // The thread that did it is gone; a later file gets another one.
    fill(path("elsewhere"), {u"Zebra.mp3=later"_qs});
    library->addAudioFilesWithURLs({QUrl::fromLocalFile(path("elsewhere/Zebra.mp3"))});
    waitUntilHeld(folders.sounds, {u"100% Süß.mp3=sweet"_qs, u"New.mp3=new"_qs, u"Old.mp3=old"_qs,
                                   u"Zebra.mp3=later"_qs});
}

TEST_F(AudioStorageControllerTest, OffersAFileDialogWhatItLists) {
    player.types = {u"audio/wav"_qs, u"audio/x-caf"_qs, u"audio/x-aiff"_qs};
    EXPECT_EQ(make()->soundFileTypes().nameFilter(), u"Sound files (*.aif *.aiff *.caf *.wav)"_qs);
}

} // namespace
} // namespace dorvane::testing
