// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/SoundLookup.h"
#include "tests/sounds/SoundLibraryFixture.h"
#include "tests/support/Testing.h"

namespace dorvane::testing {
namespace {

using ::testing::UnorderedElementsAreArray;

class AudioStorageControllerTest : public SoundLibraryFixture {
protected:
    AudioStorageController& make() {
        library = std::make_unique<AudioStorageController>(loop, user, sources, player, workspace);
        return *library;
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

    EXPECT_TRUE(make().isSystemSound(folders.rings + u"/Ping.aiff"_qs));
    library.reset(); // quits amid the copying: what is there is whole
    for (const QString& file : held(folders.rings))
        EXPECT_TRUE(many.contains(file)) << qPrintable(file.left(40));

    fill(folders.rings, {u"Ping.aiff=mine"_qs});
    many.replace(many.indexOf(u"Ping.aiff=ping"_qs), u"Ping.aiff=mine"_qs);
    make();
    waitUntilHeld(folders.rings, many);
    EXPECT_FALSE(QFileInfo::exists(folders.iMovie)) << "there is no iMovie";
}

TEST_F(AudioStorageControllerTest, ListsWhatCanBePlayed) {
    make();
    const QByteArray wave = QByteArray("RIFF\x24\0\0\0WAVEfmt ", 16) + QByteArray(32, '\0');
    const QByteArray book("\0\0\0\x18"
                          "ftypM4B ",
                          12);
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
        {"Book.m4b", "x", true},        {"a book", book, true}, // a kind of audio/mp4
        {"Boing.caf", "x", false},                              // this player has no decoder for it
        {"Boing.part", "x", false},
    };
    QStringList expected;
    for (const auto& file : files) {
        for (const QString& folder : {folders.rings, folders.recordings, folders.iMovie})
            writeFile(folder + u'/' + QString::fromUtf8(file.name), file.contents);
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
    asked << folders.rings + u"/Notes.txt"_qs << folders.rings + u"/.hidden.aiff"_qs
          << folders.rings + u"/missing.aiff"_qs << folders.rings + u"/../Rings/Ping.aiff"_qs
          << path("system/Ping.aiff") << QString();
    for (const QString& file : asked)
        EXPECT_EQ(library->isSystemSound(file), library->rings().contains(file))
            << qPrintable(file);
}

TEST_F(AudioStorageControllerTest, AddsTheUsersFilesAndSaysWhatBecameOfEach) {
    fill(path("else"), {u"Notes.txt=x"_qs, u"Old.mp3=new"_qs, u"100% Süß.mp3=x"_qs, u"Z.mp3=z"_qs,
                        u"Noise.wav=x"_qs, u".bell.aiff=bell"_qs, u"Same.mp3=same"_qs});
    player.setFile(path("else/Noise.wav"), {.isPlayable = false});
    fill(folders.sounds, {u"Old.mp3=old"_qs, u"Same.mp3=same"_qs});
    struct {
        QString url;
        QString name;
        QString problem;
        QString path = {}; // below the user's sounds
    } const files[] = {
        {u"http://example.org/Song.mp3"_qs, u"Song"_qs, u"it is not a file on this computer"_qs},
        {u"file://server"_qs + path("else/Z.mp3"), u"Z"_qs, u"there is no such file"_qs},
        {u"file://"_qs + path("else/missing.mp3"), u"missing"_qs, u"there is no such file"_qs},
        {u"file://"_qs + path("else/Old.mp3"), u"Old-2"_qs, {}, u"Old-2.mp3"_qs},
        {u"file://"_qs + path("else/Same.mp3"), u"Same"_qs, {}, u"Same.mp3"_qs},
        {u"file://"_qs + path("else/.bell.aiff"), u"bell"_qs, {}, u"bell.aiff"_qs},
        {u"file://"_qs + path("else/Notes.txt"), u"Notes"_qs,
         u"it is not a sound that can be played here"_qs},
        {u"file://"_qs + path("else/Noise.wav"), u"Noise"_qs,
         u"it is not a sound that can be played here"_qs},
        {u"file://localhost"_qs + path("else/100%25%20Süß.mp3"),
         u"100% Süß"_qs,
         {},
         u"100% Süß.mp3"_qs},
        {u"file://"_qs + path("else/Z.mp3"), u"Z"_qs, {}, u"Z.mp3"_qs},
    };
    std::vector<AddedSound> reported;
    QList<QUrl> urls;
    for (const auto& file : files)
        urls << QUrl(file.url);
    make().addAudioFilesWithURLs(urls, [&](const auto& sounds) { reported = sounds; });
    waitUntilHeld(folders.sounds, {u"100% Süß.mp3=x"_qs, u"Old-2.mp3=new"_qs, u"Old.mp3=old"_qs,
                                   u"Same.mp3=same"_qs, u"Z.mp3=z"_qs, u"bell.aiff=bell"_qs});
    library->stopLoading(); // the report is on its way then
    EXPECT_TRUE(reported.empty()) << "on the main thread only";
    loop.runPending();
    ASSERT_EQ(reported.size(), std::size(files));
    for (std::size_t i = 0; i < reported.size(); ++i) {
        EXPECT_EQ(reported[i].name, files[i].name);
        EXPECT_EQ(reported[i].problem, files[i].problem) << qPrintable(files[i].url);
        EXPECT_EQ(reported[i].path,
                  files[i].path.isEmpty() ? QString() : folders.sounds + u'/' + files[i].path);
    }
}

TEST_F(AudioStorageControllerTest, FindsASoundByItsNameOrAddsTheFile) {
    fill(path("else"), {u"Song.mp3=x"_qs, u"Notes.txt=x"_qs});
    fill(folders.rings, {u"Ping.aiff=x"_qs});
    fill(folders.recordings, {u"Tea.aiff=x"_qs});
    make();
    const std::pair<QString, QString> cases[] = {
        {u"ping"_qs, folders.rings + u"/Ping.aiff"_qs},
        {u"Tea"_qs, folders.recordings + u"/Tea.aiff"_qs},
        {u"Gong"_qs, u"no sound is called \"Gong\""_qs},
        {path("else/Song.mp3"), folders.sounds + u"/Song.mp3"_qs},
        {path("else/Notes.txt"), u"it is not a sound that can be played here"_qs}};
    for (const auto& [asked, expected] : cases) {
        std::variant<QString, SoundProblem> found;
        findSound(*library, asked, [&](const auto& answer) { found = answer; });
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return loop.runPending(), found.index() == 1 || !std::get<QString>(found).isEmpty();
        }));
        const auto* const problem = std::get_if<SoundProblem>(&found);
        EXPECT_EQ(problem ? problem->text : std::get<QString>(found), expected);
    }
}

} // namespace
} // namespace dorvane::testing
