// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/SoundsLoader.h"

#include "tests/sounds/SoundLibraryFixture.h"
#include "tests/support/Testing.h"

namespace dorvane::testing {
namespace {

class SoundsLoaderTest : public SoundLibraryFixture {
protected:
    SoundsLoaderTest() {
        for (const QString& folder : {folders.sounds, folders.rings, folders.iMovie})
            QDir().mkpath(folder);
    }

    const SoundFileTypes types{player, workspace};
    const SoundsLoader loader{folders, sources, types};
};

TEST_F(SoundsLoaderTest, CopiesTheSystemsSoundsThatAreMissing) {
    fill(path("system"), {u"Ping.aiff=ping"_qs, u"Readme=text"_qs});
    // Only what is worth an alarm, and each once.
    fill(path("theme"), {u"bell.oga=bell"_qs, u"bell.wav=twice"_qs, u"complete.txt=text"_qs,
                         u"trash-empty.oga=bin"_qs, u"Ping.aiff=other"_qs});
    fill(path("other theme"), {u"bell.ogg=other"_qs, u"complete.oga=end"_qs});
    QFile::link(u"bell.oga"_qs, path("theme/service-login.oga"));
    QFile::link(u"nowhere.oga"_qs, path("theme/dialog-warning.oga"));
    const QStringList filled = {u"Ping.aiff=ping"_qs, u"Readme=text"_qs, u"bell.oga=bell"_qs,
                                u"complete.oga=end"_qs, u"service-login.oga=bell"_qs};

    loader.refreshSystemSounds();
    EXPECT_EQ(held(folders.rings), filled);
    EXPECT_FALSE(QFileInfo(folders.rings + u"/service-login.oga"_qs).isSymLink());
    loader.refreshSystemSounds();
    EXPECT_EQ(held(folders.rings), filled);

    // Deleted and emptied ones come back; changed ones, and those of the user, stay.
    QFile::remove(folders.rings + u"/bell.oga"_qs);
    fill(folders.rings, {u"Ping.aiff=mine"_qs, u"complete.oga="_qs, u"own.mp3=own"_qs});
    loader.refreshSystemSounds();
    EXPECT_EQ(held(folders.rings), (QStringList{u"Ping.aiff=mine"_qs, u"Readme=text"_qs,
                                                u"bell.oga=bell"_qs, u"complete.oga=end"_qs,
                                                u"own.mp3=own"_qs, u"service-login.oga=bell"_qs}));
}

TEST_F(SoundsLoaderTest, FlattensTheDeliveredSounds) {
    const QString watch = u"Alarm_Long_Digital_Watch.mp3=watch"_qs;
    fill(path("delivered"), {u"Dawn.ogg=dawn"_qs, u"Mine.ogg=theirs"_qs, watch});
    fill(path("delivered/Birds/Small"), {u"Wren.ogg=wren"_qs});
    fill(folders.sounds, {u"Mine.ogg=mine"_qs});

    const QStringList without = {u"Dawn.ogg=dawn"_qs, u"Mine.ogg=mine"_qs, u"Wren.ogg=wren"_qs};
    const QStringList with = QStringList(watch) + without;
    for (const QStringList& expected : {with, without, with}) {
        loader.refreshUserSounds();
        EXPECT_EQ(held(folders.sounds), expected);
    }
}

TEST_F(SoundsLoaderTest, SweepsWhatAnEarlierRunLeftUnfinished) {
    fill(folders.iMovie, {u".a1.part=old"_qs, u"b.part=new"_qs});
    QFile old(folders.iMovie + u"/.a1.part"_qs);
    ASSERT_TRUE(old.open(QIODevice::ReadWrite));
    ASSERT_TRUE(old.setFileTime(QDateTime::currentDateTime().addDays(-1),
                                QFileDevice::FileModificationTime));
    loader.LoadSoundsThread({});
    EXPECT_FALSE(old.exists());
    EXPECT_EQ(held(folders.iMovie), QStringList(u"b.part=new"_qs)) << "being written";
}

TEST_F(SoundsLoaderTest, FeedsOneFolderFromBothSetsOfEffects) {
    fill(path("imovie/ilife/Animals"), {u"Boing.caf=ilife"_qs});
    fill(path("imovie/effects"), {u"Boing.caf=imovie"_qs, u"Zap.caf=imovie"_qs});
    loader.LoadSoundsThread({});
    EXPECT_EQ(held(folders.iMovie), (QStringList{u"Boing.caf=ilife"_qs, u"Zap.caf=imovie"_qs}));
}

} // namespace
} // namespace dorvane::testing
