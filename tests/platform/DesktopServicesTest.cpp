// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/desktop/DesktopWorkspace.h"
#include "platform/linux/desktop/PortalAppearance.h"
#include "platform/linux/desktop/WindowColours.h"
#include "platform/linux/session/LogindPowerMonitor.h"
#include "platform/linux/session/UnixSignals.h"
#include "tests/support/BusTest.h"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDesktopServices>
#include <QFile>
#include <QTest>
#include <QToolTip>
#include <QUrl>

#include <cmath>
#include <csignal>
#include <utility>

using namespace dorvane;
using dorvane::testing::BusTest;

namespace {

// Time for what should not happen.
void settle() {
    QTest::qWait(50);
}

class LogindTest : public BusTest {};

TEST_F(LogindTest, tellsOfWakingUpAndNotOfFallingAsleep) {
    ASSERT_TRUE(m_theirs.registerService(QStringLiteral("org.freedesktop.login1")));
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_bus.address().toUtf8());
    LogindPowerMonitor monitor;
    int woken = 0;
    monitor.setPoweredOn([&] { ++woken; });
    settle(); // it starts to listen
    const auto announce = [&](bool goingToSleep) {
        m_theirs.send(QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/login1"),
                                                 QStringLiteral("org.freedesktop.login1.Manager"),
                                                 QStringLiteral("PrepareForSleep"))
                      << goingToSleep);
    };
    announce(true);
    announce(false);
    EXPECT_TRUE(QTest::qWaitFor([&] { return woken == 1; }));
    settle();
    EXPECT_EQ(woken, 1);
}

// The settings portal of a desktop. Answers are wrapped in two variants, as real portals do.
class FakePortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit FakePortal(QDBusConnection bus) : m_bus(std::move(bus)) {
        m_bus.registerObject(path(), this, QDBusConnection::ExportAllContents);
        EXPECT_TRUE(m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
    }

    void change(const QString& key, uint value) {
        Q_EMIT SettingChanged(QStringLiteral("org.freedesktop.appearance"), key,
                              QDBusVariant(value));
    }

public Q_SLOTS:
    QDBusVariant Read(const QString&, const QString&) {
        return QDBusVariant(QVariant::fromValue(QDBusVariant(1U)));
    }

Q_SIGNALS:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    static QString path() { return QStringLiteral("/org/freedesktop/portal/desktop"); }
    QDBusConnection m_bus;
};

class AppearanceTest : public BusTest {
protected:
    ~AppearanceTest() override { QApplication::setPalette(m_palette); }

    static void setPaletteDark(bool dark) {
        QApplication::setPalette(dark ? QPalette(QColor(40, 40, 40)) : QPalette(Qt::lightGray));
    }

    // Whether `appearance` comes to say this, having told of so many changes since the last time.
    [[nodiscard]] bool becomes(const PortalAppearance& appearance, bool dark, int changes) {
        settle();
        return QTest::qWaitFor([&] { return appearance.isDark() == dark; }) &&
               std::exchange(m_changes, 0) == changes;
    }

    int m_changes = 0;

private:
    QPalette m_palette = QApplication::palette();
};

double luminance(QColor colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

// The contrast of every text with what is behind it, from 1 to 21.
void expectDarkAndReadable(const QPalette& palette) {
    const struct {
        QPalette::ColorRole text;
        QPalette::ColorRole ground;
        double enabled;
        double disabled;
    } pairs[] = {
        {QPalette::WindowText, QPalette::Window, 7, 3},
        {QPalette::Text, QPalette::Base, 7, 3},
        {QPalette::ButtonText, QPalette::Button, 7, 3},
        {QPalette::ToolTipText, QPalette::ToolTipBase, 7, 7},
        {QPalette::HighlightedText, QPalette::Highlight, 4.5, 3},
        {QPalette::Link, QPalette::Window, 4.5, 3},
        {QPalette::LinkVisited, QPalette::Window, 4.5, 3},
        {QPalette::PlaceholderText, QPalette::Base, 4.5, 2},
    };
    for (const auto& [text, ground, enabled, disabled] : pairs) {
        for (const auto& [group, least] :
             {std::pair(QPalette::Active, enabled), std::pair(QPalette::Disabled, disabled)}) {
            const double above = luminance(palette.color(group, text)) + 0.05;
            const double behind = luminance(palette.color(group, ground)) + 0.05;
            EXPECT_GT(above / behind, least) << text << " of group " << group;
        }
    }
}

TEST_F(AppearanceTest, followsThePortalAndWithoutAPreferenceThePalette) {
    const auto scheme = QStringLiteral("color-scheme");
    setPaletteDark(false);
    FakePortal portal(m_theirs);
    PortalAppearance appearance(m_ours);
    appearance.setChanged([this] { ++m_changes; });
    EXPECT_FALSE(appearance.isDark()) << "nothing waits for the portal";
    EXPECT_TRUE(becomes(appearance, true, 1));
    expectDarkAndReadable(QApplication::palette());
    EXPECT_EQ(QToolTip::palette(), QApplication::palette());
    portal.change(QStringLiteral("contrast"), 0);
    EXPECT_TRUE(becomes(appearance, true, 0));
    portal.change(scheme, 2);
    EXPECT_TRUE(becomes(appearance, false, 1));
    EXPECT_FALSE(windowsAreDark()) << "the theme's colours again";
    setPaletteDark(true);
    EXPECT_TRUE(becomes(appearance, false, 0)) << "the user prefers light";
    portal.change(scheme, 0);
    EXPECT_TRUE(becomes(appearance, true, 1));
}

TEST_F(AppearanceTest, followsThePaletteWithoutAPortal) {
    setPaletteDark(true);
    PortalAppearance appearance(m_ours);
    appearance.setChanged([this] { ++m_changes; });
    EXPECT_TRUE(becomes(appearance, true, 0));
    setPaletteDark(false);
    EXPECT_TRUE(becomes(appearance, false, 1));
}

// A file manager, which takes or refuses what it is asked to show.
class FakeFileManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    QStringList shown;

public Q_SLOTS:
    void ShowItems(const QStringList& uris, const QString&) { shown << uris; }
};

// Stands in for the programs that open addresses.
class FakeOpener : public QObject {
    Q_OBJECT

public:
    QStringList opened;

public Q_SLOTS:
    void open(const QUrl& url) { opened << url.toString(); }
};

class WorkspaceTest : public BusTest {};

TEST_F(WorkspaceTest, revealsInTheFileManagerOrElseOpensTheFolder) {
    FakeOpener opener;
    QDesktopServices::setUrlHandler(QStringLiteral("file"), &opener, "open");
    FakeFileManager manager;
    m_theirs.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), &manager,
                            QDBusConnection::ExportAllSlots);
    ASSERT_TRUE(m_theirs.registerService(QStringLiteral("org.freedesktop.FileManager1")));
    DesktopWorkspace workspace(m_ours);
    workspace.reveal(QStringLiteral("/some place/100% ü.mp3"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !manager.shown.isEmpty(); }));
    EXPECT_EQ(manager.shown,
              QStringList{QStringLiteral("file:///some%20place/100%25%20%C3%BC.mp3")});
    settle();
    EXPECT_EQ(opener.opened, QStringList());

    ASSERT_TRUE(m_theirs.unregisterService(QStringLiteral("org.freedesktop.FileManager1")));
    workspace.reveal(QStringLiteral("/some place/song.mp3"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !opener.opened.isEmpty(); }));
    DesktopWorkspace(QDBusConnection(QStringLiteral("none"))).reveal(QStringLiteral("/other/song"));
    EXPECT_EQ(opener.opened,
              (QStringList{QStringLiteral("file:///some place"), QStringLiteral("file:///other")}));
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
}

TEST_F(WorkspaceTest, goesByContentWhereTheNameDoesNotTell) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("sound"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("RIFF\x24\0\0\0WAVEfmt ", 16));
    file.close();
    const DesktopWorkspace workspace(m_ours);
    EXPECT_EQ(workspace.typeOfFile(path), QStringLiteral("audio/x-wav"));
    EXPECT_EQ(workspace.typeOfFile(folder.filePath(QStringLiteral("gone.wav"))), QString());
}

TEST(UnixSignalsTest, arriveFromTheLoopAndIgnoredOnesStayIgnored) {
    std::signal(SIGHUP, SIG_IGN);
    int arrived = 0;
    {
        const UnixSignals signals([&] { ++arrived; });
        for (const int signal : {SIGTERM, SIGINT, SIGHUP})
            std::raise(signal);
        EXPECT_EQ(arrived, 0);
        EXPECT_TRUE(QTest::qWaitFor([&] { return arrived == 2; }));
        settle();
        EXPECT_EQ(arrived, 2);
    }
    EXPECT_EQ(std::signal(SIGTERM, SIG_DFL), SIG_DFL);
    EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

} // namespace

#include "DesktopServicesTest.moc"
