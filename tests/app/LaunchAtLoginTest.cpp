// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/LaunchAtLoginController.h"
#include "app/PrefController.h"
#include "platform/Bundle.h"
#include "platform/linux/session/AutostartLoginItems.h"
#include "tests/support/Files.h"
#include "tests/support/Windows.h"

#include <QCheckBox>

using namespace dorvane::testing;

namespace {

// Two copies of the program, and an autostart folder.
class LaunchAtLoginTest : public ::testing::Test {
protected:
    LaunchAtLoginTest() {
        for (const QString& copy : {m_here, m_there})
            writeFile(copy + u"/dorvane"_qs);
    }

    void writeItem(const QString& name, const QByteArray& text) const {
        writeFile(m_folder + u'/' + name, "[Desktop Entry]\n" + text);
    }

    [[nodiscard]] QStringList files() const { return QDir(m_folder).entryList(QDir::Files); }

    QTemporaryDir m_root;
    QString m_here = m_root.filePath(u"my 100% \"$HOME\" `copy`/Dorvane.app"_qs);
    QString m_there = m_root.filePath(u"there/Dorvane.app"_qs);
    QString m_folder = m_root.filePath(u"autostart"_qs);
    AutostartLoginItems m_items{
        {.home = {}, .caches = {}, .configuration = m_root.path(), .data = {}}};
    LaunchAtLoginController m_controller{m_items, m_here};
};

TEST_F(LaunchAtLoginTest, standsForThisCopyOnceAndInFront) {
    const QString own = u"com.brackenfold.Dorvane.desktop"_qs;
    EXPECT_FALSE(m_controller.launchAtLogin());
    m_controller.setLaunchAtLogin(true, m_there);
    EXPECT_FALSE(m_controller.launchAtLogin()) << "another copy does not count";
    writeItem(u"other.desktop"_qs, "Exec=no-such-program\n");
    m_controller.setLaunchAtLogin(true);
    m_controller.setLaunchAtLogin(true);
    EXPECT_TRUE(m_controller.launchAtLogin());
    ASSERT_EQ(m_items.snapshot().size(), 2U) << "one a copy; what does not resolve is left out";
    EXPECT_EQ(m_items.snapshot().front().bundlePath, m_here);
    m_controller.setLaunchAtLogin(false);
    m_controller.setLaunchAtLogin(false);
    EXPECT_EQ(files(), (QStringList{own, u"other.desktop"_qs}));
    EXPECT_TRUE(m_controller.willLaunchAtLogin(m_there));
}

TEST_F(LaunchAtLoginTest, whatEarlierVersionsMadeTellsOfTheLoginFromNowOn) {
    m_controller.setLaunchAtLogin(true);
    const QString own = m_folder + u"/com.brackenfold.Dorvane.desktop"_qs;
    const QByteArray now = contentsOf(own);
    const QByteArray earlier = QByteArray(now).replace(" --login", "");
    for (const auto& [found, left] : {std::pair(earlier, now), {earlier + "# mine\n", {}}}) {
        writeFile(own, found);
        AutostartLoginItems::renew(
            {.home = {}, .caches = {}, .configuration = m_root.path(), .data = {}});
        EXPECT_EQ(contentsOf(own), left.isEmpty() ? found : left);
    }
}

TEST_F(LaunchAtLoginTest, takesASwitchedOffItemForNoneAndTakesItOver) {
    const QByteArray exec = "Exec=" + m_there.toUtf8() + "/dorvane\n";
    for (const char* off : {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n"}) {
        writeItem(u"com.brackenfold.Dorvane.desktop"_qs, exec + off);
        EXPECT_FALSE(m_controller.willLaunchAtLogin(m_there)) << off;
        m_controller.setLaunchAtLogin(true, m_there);
        EXPECT_TRUE(m_controller.willLaunchAtLogin(m_there)) << off;
        EXPECT_EQ(files().size(), 1) << off;
    }
}

TEST_F(LaunchAtLoginTest, isMirroredByTheBoxWhoeverChangesItAndWhenItCannotBeChanged) {
    const Bundle bundle(m_here, {{u"CFBundleExecutable"_qs, u"Dorvane"_qs},
                                 {u"CFBundleShortVersionString"_qs, u"1.0"_qs}});
    QDir().mkpath(m_folder);
    bool wakes = true;
    PrefController preferences({.bundle = bundle,
                                .launchAtLogin = m_controller,
                                .manual = QUrl(u"file:///manual.html"_qs),
                                .openUrl = {},
                                .checkForUpdates = {},
                                .wakesComputer = [] { return true; },
                                .setWakesComputer = [&](bool on) { wakes = on; },
                                .canWakeComputer = [] { return true; },
                                .checkRinging = {},
                                .openBreaks = {}});
    preferences.show();
    EXPECT_EQ(preferences.prefsWindow().windowTitle(), u"Dorvane 1.0"_qs);
    auto& box = *preferences.prefsWindow().findChild<QCheckBox*>(u"startupCheckBox"_qs);
    preferences.prefsWindow().findChild<QCheckBox*>(u"wakeCheckBox"_qs)->click();
    EXPECT_FALSE(wakes);
    box.click();
    EXPECT_TRUE(m_controller.launchAtLogin());
    QDir(m_folder).remove(files().value(0)); // somebody else's doing
    EXPECT_TRUE(QTest::qWaitFor([&] { return !box.isChecked(); }));

    QDir().rmdir(m_folder);
    writeFile(m_folder, "in the way"); // root, too, cannot write below a file
    LogCapture log;
    box.click();
    EXPECT_FALSE(box.isChecked());
    EXPECT_EQ(log.messages().size(), 2);
}

} // namespace
