// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/desktop/DesktopWorkspace.h"
#include "platform/linux/desktop/PortalAppearance.h"
#include "platform/linux/desktop/WindowColours.h"
#include "platform/linux/session/LogindPowerMonitor.h"
#include "platform/linux/session/LogindSleepInhibitor.h"
#include "platform/linux/session/UnixSignals.h"
#include "tests/support/BusTest.h"
#include "tests/support/Windows.h"

#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QDesktopServices>
#include <QToolTip>
#include <QUrl>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

using namespace dorvane::testing;

namespace {

// Time for what should not happen.
void settle() {
    QTest::qWait(50);
}

using LogindTest = BusTest;
using WorkspaceTest = BusTest;

class FakeLogind : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    QStringList asked;
    std::array<int, 2> pipe{-1, -1}; // an inhibitor is held while its other end is open

public Q_SLOTS:
    QDBusUnixFileDescriptor Inhibit(const QString& what, const QString& who, const QString& why,
                                    const QString& mode) {
        asked << QStringList{what, who, why, mode}.join(u'|');
        EXPECT_EQ(::pipe2(pipe.data(), O_CLOEXEC | O_NONBLOCK), 0);
        QDBusUnixFileDescriptor inhibitor;
        inhibitor.giveFileDescriptor(pipe[1]);
        return inhibitor;
    }
};

TEST_F(LogindTest, tellsOfWakingUpAndIsKeptFromIdleSleepAlone) {
    FakeLogind logind;
    m_theirs.registerObject(u"/org/freedesktop/login1"_qs, &logind,
                            QDBusConnection::ExportAllSlots);
    ASSERT_TRUE(m_theirs.registerService(u"org.freedesktop.login1"_qs));
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_address.toUtf8());
    char byte = 0;
    const auto isReleased = [&] { return ::read(logind.pipe[0], &byte, 1) == 0; };
    LogindSleepInhibitor inhibitor;
    for (const bool isHeld : {true, false, true, true}) // answered before logind did
        inhibitor.setHeld(isHeld);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !logind.asked.isEmpty(); }));
    settle();
    EXPECT_FALSE(isReleased());
    inhibitor.setHeld(false);
    EXPECT_TRUE(QTest::qWaitFor(isReleased));
    EXPECT_EQ(logind.asked, QStringList{u"idle|Dorvane|An alarm rings|block"_qs});
    inhibitor.setHeld(true);
    inhibitor.setHeld(false);
    EXPECT_TRUE(QTest::qWaitFor([&] { return logind.asked.size() == 2 && isReleased(); }));

    LogindPowerMonitor monitor;
    int woken = 0;
    monitor.setPoweredOn([&] { ++woken; });
    settle(); // it starts to listen
    for (const bool goingToSleep : {true, false})
        m_theirs.send(QDBusMessage::createSignal(u"/org/freedesktop/login1"_qs,
                                                 u"org.freedesktop.login1.Manager"_qs,
                                                 u"PrepareForSleep"_qs)
                      << goingToSleep);
    EXPECT_TRUE(QTest::qWaitFor([&] { return woken == 1; }));
    settle();
    EXPECT_EQ(woken, 1);
}

// The settings portal of a desktop. Answers are wrapped in two variants, as real portals do.
class FakePortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit FakePortal(QDBusConnection bus) {
        bus.registerObject(u"/org/freedesktop/portal/desktop"_qs, this,
                           QDBusConnection::ExportAllContents);
        EXPECT_TRUE(bus.registerService(u"org.freedesktop.portal.Desktop"_qs));
    }

    void change(const QString& key, uint value) {
        Q_EMIT SettingChanged(u"org.freedesktop.appearance"_qs, key, QDBusVariant(value));
    }

public Q_SLOTS:
    QDBusVariant Read(const QString&, const QString&) {
        return QDBusVariant(QVariant::fromValue(QDBusVariant(1U)));
    }

Q_SIGNALS:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);
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

void expectDarkAndReadable(const QPalette& palette) {
    const std::pair<QPalette::ColorRole, QPalette::ColorRole> textsAndGrounds[] = {
        {QPalette::WindowText, QPalette::Window},
        {QPalette::Text, QPalette::Base},
        {QPalette::ButtonText, QPalette::Button},
        {QPalette::ToolTipText, QPalette::ToolTipBase},
        {QPalette::HighlightedText, QPalette::Highlight},
        {QPalette::Link, QPalette::Window},
        {QPalette::PlaceholderText, QPalette::Base},
    };
    for (const auto& [text, ground] : textsAndGrounds)
        for (const auto& [group, least] :
             {std::pair(QPalette::Active, 90), std::pair(QPalette::Disabled, 50)}) {
            const auto grey = [&](auto role) { return qGray(palette.color(group, role).rgb()); };
            EXPECT_GT(grey(text) - grey(ground), least) << text << " of group " << group;
        }
}

TEST_F(AppearanceTest, followsThePortalAndWithoutAPreferenceThePalette) {
    const auto scheme = u"color-scheme"_qs;
    setPaletteDark(false);
    FakePortal portal(m_theirs);
    PortalAppearance appearance(m_ours);
    appearance.setChanged([this] { ++m_changes; });
    EXPECT_FALSE(appearance.isDark()) << "nothing waits for the portal";
    EXPECT_TRUE(becomes(appearance, true, 1));
    expectDarkAndReadable(QApplication::palette());
    EXPECT_EQ(QToolTip::palette(), QApplication::palette());
    portal.change(u"contrast"_qs, 0);
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
    setPaletteDark(false);
    PortalAppearance appearance(m_ours);
    appearance.setChanged([this] { ++m_changes; });
    setPaletteDark(true);
    EXPECT_TRUE(becomes(appearance, true, 1));
}

// The file manager, and what opens addresses without one.
class FakeFileManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    QStringList shown, opened;

    Q_INVOKABLE void open(const QUrl& url) { opened << url.toString(); }

public Q_SLOTS:
    void ShowItems(const QStringList& uris, const QString&) { shown << uris; }
};

TEST_F(WorkspaceTest, revealsInTheFileManagerOrElseOpensTheFolder) {
    FakeFileManager manager;
    QDesktopServices::setUrlHandler(u"file"_qs, &manager, "open");
    m_theirs.registerObject(u"/org/freedesktop/FileManager1"_qs, &manager,
                            QDBusConnection::ExportAllSlots);
    ASSERT_TRUE(m_theirs.registerService(u"org.freedesktop.FileManager1"_qs));
    DesktopWorkspace workspace(m_ours);
    workspace.reveal(u"/some place/100% ü.mp3"_qs);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !manager.shown.isEmpty(); }));
    EXPECT_EQ(manager.shown, QStringList{u"file:///some%20place/100%25%20%C3%BC.mp3"_qs});
    settle();
    EXPECT_EQ(manager.opened, QStringList());

    ASSERT_TRUE(m_theirs.unregisterService(u"org.freedesktop.FileManager1"_qs));
    workspace.reveal(u"/some place/song.mp3"_qs);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !manager.opened.isEmpty(); }));
    DesktopWorkspace(QDBusConnection(u"none"_qs)).reveal(u"/other/song"_qs);
    EXPECT_EQ(manager.opened, (QStringList{u"file:///some place"_qs, u"file:///other"_qs}));
    QDesktopServices::unsetUrlHandler(u"file"_qs);
}

TEST_F(WorkspaceTest, goesByContentWhereTheNameDoesNotTell) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"sound"_qs));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    file.write(QByteArray("RIFF\x24\0\0\0WAVEfmt ", 16));
    const DesktopWorkspace workspace(m_ours);
    EXPECT_EQ(workspace.typeOfFile(file.fileName()), u"audio/x-wav"_qs);
    EXPECT_EQ(workspace.typeOfFile(folder.filePath(u"gone.wav"_qs)), QString());
}

TEST(UnixSignalsTest, arriveFromTheLoopAndIgnoredOnesStayIgnored) {
    std::signal(SIGHUP, SIG_IGN);
    int arrived = 0;
    const UnixSignals signals([&] { ++arrived; });
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        std::raise(signal);
    EXPECT_EQ(arrived, 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return arrived == 2; }));
    settle();
    EXPECT_EQ(arrived, 2);
}

} // namespace

#include "DesktopServicesTest.moc"
