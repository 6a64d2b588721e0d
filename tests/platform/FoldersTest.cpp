// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/desktop/DesktopExec.h"
#include "platform/linux/folders/MainBundle.h"
#include "platform/linux/folders/XdgFolders.h"
#include "platform/linux/preferences/LibplistFormat.h"
#include "tests/support/LogCapture.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace dorvane;
using dorvane::testing::LogCapture;

namespace {

TEST(MainBundleTest, readsTheInformationFile) {
    const struct {
        QByteArray contents;
        QString version;
        int messages;
    } cases[] = {
        {"<plist><dict><key>CFBundleVersion</key><string>7</string></dict></plist>",
         QStringLiteral("7"), 0},
        {"<plist><dict><key>CFBundleVersion</key><string>7", QString(), 1},
        {"<plist><array/></plist>", QString(), 1},
    };
    for (const auto& each : cases) {
        const QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("Info.plist")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(each.contents);
        file.close();
        const LogCapture log;
        const Bundle bundle = bundleWithPath(folder.path(), LibplistFormat());
        EXPECT_EQ(bundle.infoString(QStringLiteral("CFBundleVersion")), each.version);
        EXPECT_EQ(log.messages().size(), each.messages) << each.contents.constData();
    }
}

// As the desktop-entry specification has it: quoted, then escaped as every value is.
TEST(DesktopExecTest, namesTheProgramWhateverItsPathHolds) {
    EXPECT_EQ(desktopExec(QStringLiteral("/a \"b\" $c `d` \\e 100%/dorvane")).toStdString(),
              R"("/a \\"b\\" \\$c \\`d\\` \\\\e 100%%/dorvane" %u)");
    for (const char* path :
         {"/usr/bin/x", "/a \"b\" $c `d` \\e 100%u/x", "/tab\t/line\n/x", "/\\n/x"})
        EXPECT_EQ(programOfDesktopExec(desktopExec(QLatin1String(path))), QLatin1String(path));
    EXPECT_EQ(programOfDesktopExec(QStringLiteral("dorvane %u")), QStringLiteral("dorvane"));
}

class XdgFoldersTest : public ::testing::Test {
protected:
    ~XdgFoldersTest() override {
        for (auto variable = m_before.cbegin(); variable != m_before.cend(); ++variable)
            qputenv(variable.key().constData(), variable.value());
    }
    // An empty value unsets the variable.
    static void set(const char* name, const QByteArray& value) {
        if (value.isEmpty())
            qunsetenv(name);
        else
            qputenv(name, value);
    }

private:
    const QMap<QByteArray, QByteArray> m_before = {{"HOME", qgetenv("HOME")},
                                                   {"XDG_CACHE_HOME", qgetenv("XDG_CACHE_HOME")},
                                                   {"XDG_CONFIG_HOME", qgetenv("XDG_CONFIG_HOME")},
                                                   {"XDG_DATA_HOME", qgetenv("XDG_DATA_HOME")}};
};

TEST_F(XdgFoldersTest, relativeAndMissingValuesFallBack) {
    const struct {
        QByteArray home, cache, config;
        const char16_t* expectedCaches;
        const char16_t* expectedConfiguration;
    } cases[] = {
        {"/h", "/c", "/d/", u"/c", u"/d"},
        {"/h/", "", "relative", u"/h/.cache", u"/h/.config"},
        {"/h", "~/c", "/a/../b", u"/h/.cache", u"/b"},
    };
    for (const auto& each : cases) {
        set("HOME", each.home);
        set("XDG_CACHE_HOME", each.cache);
        set("XDG_CONFIG_HOME", each.config);
        set("XDG_DATA_HOME", "");
        const UserFolders folders = xdgFolders();
        EXPECT_EQ(folders.home, QStringLiteral("/h"));
        EXPECT_EQ(folders.caches, QString::fromUtf16(each.expectedCaches));
        EXPECT_EQ(folders.configuration, QString::fromUtf16(each.expectedConfiguration));
        EXPECT_EQ(folders.data, QStringLiteral("/h/.local/share"));
    }
}

TEST_F(XdgFoldersTest, homeOfTheAccountWhereTheEnvironmentHasNone) {
    for (const char* home : {"", "relative"}) {
        set("HOME", home);
        set("XDG_CACHE_HOME", "");
        const UserFolders folders = xdgFolders();
        EXPECT_TRUE(folders.home.startsWith(u'/'));
        EXPECT_TRUE(folders.caches.startsWith(folders.home));
    }
}

} // namespace
