// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/OldSoundFolders.h"

#include "tests/sounds/SoundLibraryFixture.h"
#include "tests/support/FullDisk.h"
#include "tests/support/Testing.h"

namespace dorvane::testing {
namespace {

// The old folders below the caches, and one start of the program after another.
class OldSoundFoldersTest : public SoundLibraryFixture {
protected:
    OldSoundFoldersTest() {
        fill(old(u"Dorvane/Sounds"_qs),
             {u"Bell.mp3=bell"_qs, u"Song.mp3=mine"_qs, u"x.part=x"_qs, u"empty.mp3="_qs});
        fill(old(u"Dorvane/Recordings"_qs), {u"Tea.aiff=tea"_qs});
        fill(old(u"Pendix/Rings"_qs), {u"Basso.aiff=basso"_qs});
        fill(folders.sounds, {u"Song.mp3=another"_qs});
        fill(folders.breaks, {u"Basso.aiff=basso"_qs});
    }

    [[nodiscard]] QString old(const QString& below) const { return user.caches + u'/' + below; }

    // How far a start comes before something ends it.
    enum class End { BeforeRewriting, RewritingFails, None };

    void start(End end) {
        OldSoundFolders move(loop, user, [&](const MovedSounds& moved, const auto& done) {
            m_paths = moved;
            if (end != End::BeforeRewriting)
                done(end == End::None);
        });
        // The second time comes after whatever the first has set going.
        for (int i = 0; i < (end == End::RewritingFails ? 2 : 1); ++i) {
            m_paths.clear();
            move.bringOver();
            EXPECT_TRUE(QTest::qWaitFor([&] { return loop.runPending(), !m_paths.isEmpty(); }));
        }
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return end != End::None || !QFileInfo::exists(old(u"Pendix/Rings"_qs)); }));
    }

    MovedSounds m_paths;
};

TEST_F(OldSoundFoldersTest, eachStoredPathLeadsToItsFileWheneverTheProgramEnds) {
    const QStringList before = held(old(u"Dorvane/Sounds"_qs));
    for (const End end : {End::BeforeRewriting, End::RewritingFails}) {
        start(end);
        EXPECT_EQ(held(old(u"Dorvane/Sounds"_qs)), before) << "the stored paths are the old ones";
        EXPECT_EQ(held(old(u"Dorvane/Recordings"_qs)), QStringList(u"Tea.aiff=tea"_qs));
    }
    start(End::None);
    const MovedSounds expected{
        {old(u"Dorvane/Sounds/Bell.mp3"_qs), folders.sounds + u"/Bell.mp3"_qs},
        {old(u"Dorvane/Sounds/Song.mp3"_qs), folders.sounds + u"/Song-2.mp3"_qs},
        {old(u"Dorvane/Recordings/Tea.aiff"_qs), folders.recordings + u"/Tea.aiff"_qs},
        {old(u"Pendix/Rings/Basso.aiff"_qs), folders.breaks + u"/Basso.aiff"_qs}};
    EXPECT_EQ(m_paths, expected);
    EXPECT_EQ(held(folders.sounds),
              (QStringList{u"Bell.mp3=bell"_qs, u"Song-2.mp3=mine"_qs, u"Song.mp3=another"_qs}));
    EXPECT_EQ(held(folders.recordings), QStringList(u"Tea.aiff=tea"_qs));
    EXPECT_FALSE(QFileInfo::exists(old(u"Dorvane/Recordings"_qs)));
    EXPECT_EQ(held(old(u"Dorvane/Sounds"_qs)), (QStringList{u"empty.mp3="_qs, u"x.part=x"_qs}));

    const QString bell = old(u"Dorvane/Sounds/Bell.mp3"_qs);
    EXPECT_EQ(movedSoundPath(user, bell), expected[bell]);
    EXPECT_EQ(movedSoundPath(user, folders.rings + u"/Ping.aiff"_qs), QString());
}

// Another file system is like this one with a link in the file's place: the contents are copied.
TEST_F(OldSoundFoldersTest, whatDoesNotFitStaysWhereItIsUnderItsPath) {
    const QString large = old(u"Dorvane/Sounds/Large.mp3"_qs);
    fill(path("else"), {u"Large.mp3="_qs + QString(300'000, u'x'), u"Small.mp3=x"_qs});
    ASSERT_TRUE(QFile::link(path("else/Large.mp3"), large));
    ASSERT_TRUE(QFile::link(path("else/Small.mp3"), old(u"Dorvane/Sounds/Small.mp3"_qs)));
    const LogCapture log;
    {
        const FullDisk full;
        start(End::None);
    }
    EXPECT_EQ(log.messages().size(), 2) << "what could not be copied, and that it stays";
    EXPECT_FALSE(m_paths.contains(large));
    EXPECT_EQ(contentsOf(large).size(), 300'000);
    EXPECT_EQ(contentsOf(folders.sounds + u"/Small.mp3"_qs), "x");
    EXPECT_FALSE(QFileInfo::exists(folders.sounds + u"/Large.mp3"_qs));
    start(End::None);
    EXPECT_EQ(m_paths.value(large), folders.sounds + u"/Large.mp3"_qs);
}

} // namespace
} // namespace dorvane::testing
