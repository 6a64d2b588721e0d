// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/AlarmSoundMenuContructor.h"

#include "sounds/SoundMenuTarget.h"
#include "tests/sounds/SoundLibraryFixture.h"
#include "tests/support/Windows.h"

namespace dorvane::testing {
namespace {

using ::testing::ElementsAre;

class TracingTarget final : public SoundMenuTarget {
public:
    void soundSelected(const QString& path) override { calls << path; }
    void manageReminders() override { calls << u"manageReminders"_qs; }
    QStringList calls;
};

class AlarmSoundMenuContructorTest : public SoundLibraryFixture {
protected:
    AlarmSoundMenuContructorTest() {
        constructor.setObjectMenu(&menu);
        constructor.setTarget(&target);
    }

    // One line an item: "System Sounds > Ping | ...", in brackets when it cannot be chosen.
    [[nodiscard]] static std::vector<std::string> items(const QMenu& shown) {
        std::vector<std::string> lines;
        for (const QAction* item : shown.actions()) {
            QString line = item->isSeparator() ? u"-"_qs : item->text();
            if (!item->isVisible() || !item->isEnabled())
                line = u"[%1]"_qs.arg(line);
            if (const auto* submenu = item->menu()) {
                line += u" >"_qs;
                for (const QAction* sound : submenu->actions())
                    line += u" "_qs + sound->text();
            }
            lines.push_back(line.toStdString());
        }
        return lines;
    }

    AudioStorageController library{loop, user, sources, player, workspace};
    TracingTarget target;
    QMenu menu;
    AlarmSoundMenuContructor constructor{library};
};

TEST_F(AlarmSoundMenuContructorTest, ShowsTheGroupsOfTheLibrary) {
    constructor.constructMenu();
    EXPECT_THAT(items(menu), ElementsAre("[Select Sound]", "Record Sound > Record Alarm Sound...",
                                         "-", "[System Sounds] >", "-", "[iMovie Sounds] >", "-",
                                         "[User Sound Library] >"));

    menu.actions().first()->setText(u"Ping"_qs);
    fill(folders.recordings, {u"Tea.aiff=x"_qs});
    fill(folders.rings, {u"Ping.aiff=x"_qs});
    fill(folders.iMovie, {u"Boing.xyz=x"_qs});
    fill(folders.sounds, {u"R&B\tNo. 1.mp3=x"_qs});
    constructor.constructMenu();
    EXPECT_THAT(items(menu), ElementsAre("[Ping]", "Record Sound > Record Alarm Sound... Tea", "-",
                                         "System Sounds > Ping", "-", "iMovie Sounds > Boing", "-",
                                         "User Sound Library > R&&B No. 1"));

    for (const int group : {1, 3, 5, 7}) {
        for (QAction* item : menu.actions().at(group)->menu()->actions())
            item->trigger();
    }
    EXPECT_EQ(target.calls,
              (QStringList{u"manageReminders"_qs, folders.recordings + u"/Tea.aiff"_qs,
                           folders.rings + u"/Ping.aiff"_qs, folders.iMovie + u"/Boing.xyz"_qs,
                           folders.sounds + u"/R&B\tNo. 1.mp3"_qs}));

    fill(folders.sounds, {QString(246, u'W') + u".aiff=x"_qs});
    constructor.constructMenu();
    EXPECT_LT(menu.actions().at(7)->menu()->sizeHint().width(), 800) << "the least screen's";
}

} // namespace
} // namespace dorvane::testing
