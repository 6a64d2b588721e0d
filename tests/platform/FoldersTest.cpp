// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/desktop/DesktopExec.h"
#include "platform/linux/folders/XdgFolders.h"
#include "tests/support/Testing.h"

#include <pwd.h>
#include <unistd.h>

using namespace dorvane::testing;

namespace {

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
        QString expected;
    } cases[] = {
        {"/h", "/c", "/d/", u"/h|/c|/d"_qs},
        {"/h/", "", "relative", u"/h|/h/.cache|/h/.config"_qs},
        {"/h", "~/c", "/a/../b", u"/h|/h/.cache|/b"_qs},
        {"relative", "", "/d", account + u'|' + account + u"/.cache|/d"_qs},
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
        EXPECT_EQ(QStringList({folders.home, folders.caches, folders.configuration}).join(u'|'),
                  each.expected);
    }
    for (const char* variable : variables)
        qputenv(variable, before.takeFirst());
}

} // namespace
