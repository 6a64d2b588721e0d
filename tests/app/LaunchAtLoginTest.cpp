// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/LaunchAtLoginController.h"
#include "app/PrefController.h"
#include "platform/Bundle.h"
#include "platform/linux/session/AutostartLoginItems.h"
#include "tests/support/LogCapture.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace dorvane;
using dorvane::testing::LogCapture;

namespace {

// Two copies of the program, and an autostart folder.
class LaunchAtLoginTest : public ::testing::Test {
protected:
    LaunchAtLoginTest() {
        for (const QString& copy : {m_here, m_there}) {
            QDir().mkpath(copy);
            write(copy + QStringLiteral("/dorvane"), "");
        }
    }

    static void write(const QString& path, const QByteArray& text) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
        file.write(text);
    }

    void writeItem(const QString& name, const QByteArray& text) const {
        QDir().mkpath(m_folder);
        write(m_folder + QLatin1Char('/') + name, "[Desktop Entry]\n" + text);
    }

    [[nodiscard]] QStringList files() const { return QDir(m_folder).entryList(QDir::Files); }

    QTemporaryDir m_root;
    QString m_here = m_root.filePath(QStringLiteral("my 100% \"$HOME\" `copy`/Dorvane.app"));
    QString m_there = m_root.filePath(QStringLiteral("there/Dorvane.app"));
    QString m_folder = m_root.filePath(QStringLiteral("autostart"));
    AutostartLoginItems m_items{
        {.home = {}, .caches = {}, .configuration = m_root.path(), .data = {}}};
    LaunchAtLoginController m_controller{m_items, m_here};
};

TEST_F(LaunchAtLoginTest, standsForThisCopyOnceAndInFront) {
    const QString own = QStringLiteral("com.brackenfold.Dorvane.desktop");
    EXPECT_FALSE(m_controller.launchAtLogin());
    m_controller.setLaunchAtLogin(true, m_there);
    EXPECT_FALSE(m_controller.launchAtLogin()) << "another copy does not count";
    writeItem(QStringLiteral("other.desktop"), "Exec=no-such-program\n");
    m_controller.setLaunchAtLogin(true);
    m_controller.setLaunchAtLogin(true);
    EXPECT_TRUE(m_controller.launchAtLogin());
    ASSERT_EQ(m_items.snapshot().size(), 2U) << "one a copy; what does not resolve is left out";
    EXPECT_EQ(m_items.snapshot().front().bundlePath, m_here);
    m_controller.setLaunchAtLogin(false);
    m_controller.setLaunchAtLogin(false);
    EXPECT_EQ(files(), (QStringList{own, QStringLiteral("other.desktop")}));
    EXPECT_TRUE(m_controller.willLaunchAtLogin(m_there));
}

TEST_F(LaunchAtLoginTest, takesASwitchedOffItemForNoneAndTakesItOver) {
    const QByteArray exec = "Exec=" + m_there.toUtf8() + "/dorvane\n";
    for (const char* off : {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n"}) {
        writeItem(QStringLiteral("com.brackenfold.Dorvane.desktop"), exec + off);
        EXPECT_FALSE(m_controller.willLaunchAtLogin(m_there)) << off;
        m_controller.setLaunchAtLogin(true, m_there);
        EXPECT_TRUE(m_controller.willLaunchAtLogin(m_there)) << off;
        EXPECT_EQ(files().size(), 1) << off;
    }
}

TEST_F(LaunchAtLoginTest, isMirroredByTheBoxWhoeverChangesItAndWhenItCannotBeChanged) {
    const Bundle bundle(m_here,
                        {{QStringLiteral("CFBundleExecutable"), QStringLiteral("Dorvane")},
                         {QStringLiteral("CFBundleShortVersionString"), QStringLiteral("1.0")}});
    QDir().mkpath(m_folder);
    PrefController preferences({.bundle = bundle,
                                .launchAtLogin = m_controller,
                                .manual = QUrl(QStringLiteral("file:///manual.html")),
                                .openUrl = {}});
    preferences.show();
    EXPECT_EQ(preferences.prefsWindow().windowTitle(), QStringLiteral("Dorvane 1.0"));
    auto& box = *preferences.prefsWindow().findChild<QCheckBox*>(QStringLiteral("startupCheckBox"));
    box.click();
    EXPECT_TRUE(m_controller.launchAtLogin());
    QDir(m_folder).remove(files().value(0)); // somebody else's doing
    EXPECT_TRUE(QTest::qWaitFor([&] { return !box.isChecked(); }));

    QDir().rmdir(m_folder);
    write(m_folder, "in the way"); // root, too, cannot write below a file
    LogCapture log;
    box.click();
    EXPECT_FALSE(box.isChecked());
    EXPECT_EQ(log.messages().size(), 2);
}

} // namespace
