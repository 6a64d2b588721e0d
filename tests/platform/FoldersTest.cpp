// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/desktop/DesktopExec.h"
#include "platform/linux/folders/MainBundle.h"
#include "platform/linux/folders/XdgFolders.h"
#include "platform/linux/preferences/LibplistFormat.h"
#include "tests/support/Files.h"
#include "tests/support/Testing.h"

#include <pwd.h>
#include <unistd.h>

using namespace dorvane::testing;

namespace {

TEST(MainBundleTest, readsTheInformationFileAndDoesWithoutOne) {
    const std::pair<QByteArray, QString> cases[] = {
        {"<plist><dict><key>CFBundleVersion</key><string>7</string></dict></plist>", u"7"_qs},
        {"<plist><dict><key>CFBundleVersion</key><string>7", {}},
        {"<plist><array/></plist>", {}},
        {{}, {}}, // no file
    };
    for (const auto& [contents, version] : cases) {
        const QTemporaryDir folder;
        if (!contents.isNull())
            writeFile(folder.filePath(u"Info.plist"_qs), contents);
        const LogCapture log;
        const Bundle bundle = bundleWithPath(folder.path(), LibplistFormat());
        EXPECT_EQ(bundle.infoString(u"CFBundleVersion"_qs), version);
        EXPECT_EQ(log.messages().isEmpty(), !version.isEmpty()) << contents.constData();
    }
}

// As the desktop-entry specification has it: quoted, then escaped as every value is.
TEST(DesktopExecTest, namesTheProgramWhateverItsPathHolds) {
    EXPECT_EQ(desktopExec(u"/a \"b\" $c `d` \\e 100%/dorvane"_qs).toStdString(),
              R"("/a \\"b\\" \\$c \\`d\\` \\\\e 100%%/dorvane" %u)");
    for (const char* path :
         {"/usr/bin/x", "/a \"b\" $c `d` \\e 100%u/x", "/tab\t/line\n/x", "/\\n/x"})
        EXPECT_EQ(programOfDesktopExec(desktopExec(QLatin1String(path))), QLatin1String(path));
    EXPECT_EQ(programOfDesktopExec(u"dorvane %u"_qs), u"dorvane"_qs);
}

TEST(XdgFoldersTest, relativeAndMissingValuesFallBack) {
    const QString account = QFile::decodeName(::getpwuid(::getuid())->pw_dir);
    const struct {
        QByteArray home, cache, config;
        QString expectedHome, expectedCaches, expectedConfiguration;
    } cases[] = {
        {"/h", "/c", "/d/", u"/h"_qs, u"/c"_qs, u"/d"_qs},
        {"/h/", "", "relative", u"/h"_qs, u"/h/.cache"_qs, u"/h/.config"_qs},
        {"/h", "~/c", "/a/../b", u"/h"_qs, u"/h/.cache"_qs, u"/b"_qs},
        {"relative", "", "/d", account, account + u"/.cache"_qs, u"/d"_qs},
    };
    const char* const variables[] = {"HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME"};
    QByteArrayList before;
    for (const char* variable : variables)
        before << qgetenv(variable);
    for (const auto& each : cases) {
        qputenv("HOME", each.home);
        qputenv("XDG_CACHE_HOME", each.cache);
        qputenv("XDG_CONFIG_HOME", each.config);
        const UserFolders folders = xdgFolders();
        EXPECT_EQ(folders.home, each.expectedHome);
        EXPECT_EQ(folders.caches, each.expectedCaches);
        EXPECT_EQ(folders.configuration, each.expectedConfiguration);
    }
    for (const char* variable : variables)
        qputenv(variable, before.takeFirst());
}

} // namespace
