// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/FileManager.h"

#include "tests/sounds/SoundLibraryFixture.h"
#include "tests/support/FullDisk.h"
#include "tests/support/Testing.h"

#include <sys/stat.h>

namespace dorvane::testing {
namespace {

class CopyItem : public SoundLibraryFixture {};

TEST_F(CopyItem, LeavesAWholeFileOrNothing) {
    const QString to = path("to/sound.aiff");
    QDir().mkpath(path("to"));
    const QByteArray large(300'000, 'x');
    writeFile(path("large"), large);
    writeFile(path("empty"), {});
    ASSERT_EQ(mkfifo(qPrintable(path("pipe")), 0600), 0);
    std::stop_source stopped;
    stopped.request_stop();

    const QString noFile = u"there is no such file"_qs;
    EXPECT_EQ(copyItem(path("missing"), to), noFile);
    EXPECT_EQ(copyItem(path("empty"), to), u"there is nothing in it"_qs);
    EXPECT_EQ(copyItem(path("pipe"), to), noFile) << "must not wait for a writer either";
    EXPECT_EQ(copyItem(path("large"), to, stopped.get_token()), u"stopped"_qs);
    {
        const FullDisk full;
        EXPECT_NE(copyItem(path("large"), to), QString());
    }
    EXPECT_EQ(held(path("to")), QStringList());

    writeFile(to, {});
    EXPECT_EQ(copyItem(path("large"), to), QString()) << "over what a power cut emptied";
    writeFile(path("small"), "y");
    EXPECT_EQ(copyItem(path("small"), to), u"the name is taken"_qs);
    EXPECT_EQ(held(path("to")), QStringList(u"sound.aiff="_qs + QString::fromUtf8(large)));
}

} // namespace
} // namespace dorvane::testing
