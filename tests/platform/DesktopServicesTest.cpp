// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/announcements/AnnouncementPresenter.h"
#include "platform/linux/announcements/DesktopNotice.h"
#include "platform/linux/desktop/DesktopWorkspace.h"
#include "platform/linux/desktop/PortalAppearance.h"
#include "platform/linux/desktop/WindowColours.h"
#include "platform/linux/session/LogindPowerMonitor.h"
#include "platform/linux/session/LogindSleepInhibitor.h"
#include "tests/support/BusTest.h"
#include "tests/support/Windows.h"

#include <QDBusArgument>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QToolTip>

#include <array>
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
using NoticeTest = BusTest;

TEST_F(LogindTest, isKeptFromIdleSleepAloneAndTellsOfWaking) {
    std::array<int, 2> pipe{-1, -1}; // an inhibitor is held while its other end is open
    FakeService logind(m_theirs, "org.freedesktop.login1", [&](const QDBusMessage&) {
        EXPECT_EQ(::pipe2(pipe.data(), O_CLOEXEC | O_NONBLOCK), 0);
        QDBusUnixFileDescriptor inhibitor;
        inhibitor.giveFileDescriptor(pipe[1]);
        return QVariant::fromValue(inhibitor);
    });
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_address.toUtf8());
    char byte = 0;
    const auto isReleased = [&] { return ::read(pipe[0], &byte, 1) == 0; };
    int woken = 0;
    LogindPowerMonitor monitor;
    monitor.setPoweredOn([&] { ++woken; });
    LogindSleepInhibitor inhibitor;
    for (const bool isHeld : {true, false, true, true}) // answered before logind did
        inhibitor.setHeld(isHeld);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !logind.asked.isEmpty(); }));
    settle();
    EXPECT_FALSE(isReleased());
    inhibitor.setHeld(false);
    EXPECT_TRUE(QTest::qWaitFor(isReleased));
    EXPECT_EQ(logind.asked, QStringList{u"Inhibit|idle|Dorvane|An alarm rings|block"_qs});
    inhibitor.setHeld(true);
    inhibitor.setHeld(false);
    EXPECT_TRUE(QTest::qWaitFor([&] { return logind.asked.size() == 2 && isReleased(); }));
    for (const bool fallsAsleep : {true, false, true})
        logind.tell("/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep",
                    {fallsAsleep});
    EXPECT_TRUE(QTest::qWaitFor([&] { return woken > 0; }));
    settle();
    EXPECT_EQ(woken, 1) << "not before it slept";
}

TEST_F(NoticeTest, isAnsweredOnceByItsShowerAndTakenBackAndShownAnew) {
    const char* const service = "org.freedesktop.Notifications";
    const auto answer = [](const QDBusMessage&) { return QVariant(7U); };
    FakeService stranger(join(), "org.example.Stranger", answer);
    std::optional<FakeService> desktop(std::in_place, m_theirs, service, answer);
    const auto tell = [&](FakeService& by, uint id, const QString& key) {
        by.tell("/org/freedesktop/Notifications", service, "ActionInvoked", {id, key});
    };
    const auto choose = [&](uint id) { tell(*desktop, id, u"done"_qs); };
    DesktopNotice notice(m_ours);
    QStringList chosen;
    const auto show = [&] {
        notice.show(u"Time"_qs, {}, {{u"done"_qs, u"Done"_qs}},
                    [&](const QString& key) { chosen << key; });
    };
    const auto isClosed = [&] { return desktop->asked.contains(u"CloseNotification|7"_qs); };
    show();
    settle();
    choose(6);
    tell(stranger, 7, u"done"_qs);
    tell(*desktop, 7, u"default"_qs);
    settle();
    EXPECT_EQ(chosen, QStringList());
    choose(7);
    choose(7);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !chosen.isEmpty(); }));
    settle();
    EXPECT_EQ(chosen, QStringList{u"done"_qs});
    EXPECT_FALSE(isClosed());
    show();
    notice.withdraw(); // before the desktop has answered
    EXPECT_TRUE(QTest::qWaitFor(isClosed));
    show();
    settle();
    desktop.reset(); // it crashes, and another takes its place
    desktop.emplace(join(), service, answer);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !desktop->asked.isEmpty(); }));
    settle();
    EXPECT_EQ(desktop->asked.size(), 1);
    choose(7);
    EXPECT_TRUE(QTest::qWaitFor([&] { return chosen.size() == 2; }));
}

TEST_F(NoticeTest, anAnnouncementComesWithASoundOrSaysThatItHasNone) {
    using Outcome = AnnouncementPresenter::Outcome;
    const struct {
        QStringList capabilities;
        const char* text;
        Outcome outcome;
    } cases[] = {{{u"body-markup"_qs, u"sound"_qs}, "Tea &amp; cake", Outcome::Shown},
                 {{}, "Tea & cake", Outcome::ShownSilent}};
    for (const auto& each : cases) {
        QVariantList shown;
        FakeService desktop(m_theirs, "org.freedesktop.Notifications",
                            [&](const QDBusMessage& call) -> QVariant {
                                if (call.member() == u"GetCapabilities"_qs)
                                    return each.capabilities;
                                shown = call.arguments();
                                return 7U;
                            });
        VirtualRunLoop loop(at("11-24 08:00"));
        std::optional<Outcome> outcome;
        AnnouncementPresenter presenter(loop, {u"Dorvane"_qs, u"Tea & cake"_qs, {}}, m_ours,
                                        [&](Outcome how) { outcome = how; });
        presenter.show();
        EXPECT_TRUE(QTest::qWaitFor([&] { return outcome.has_value(); }));
        EXPECT_EQ(outcome, each.outcome);
        EXPECT_EQ(shown.value(4).toString(), QLatin1String(each.text));
        EXPECT_EQ(qdbus_cast<QVariantMap>(shown.value(6))[u"sound-name"_qs],
                  u"alarm-clock-elapsed"_qs);
    }
}

class AppearanceTest : public BusTest {
protected:
    ~AppearanceTest() override { QApplication::setPalette(m_palette); }

    static void setPaletteDark(bool dark) {
        QApplication::setPalette(dark ? QPalette(QColor(40, 40, 40)) : QPalette(Qt::lightGray));
    }

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
            const auto grey = [&palette, group = group](auto role) {
                return qGray(palette.color(group, role).rgb());
            };
            EXPECT_GT(grey(text) - grey(ground), least) << text << " of group " << group;
        }
}

TEST_F(AppearanceTest, followsThePortalAndWithoutAPreferenceThePalette) {
    setPaletteDark(false);
    // Wrapped in two variants, as real portals do.
    FakeService portal(m_theirs, "org.freedesktop.portal.Desktop", [](const QDBusMessage&) {
        return QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(1U))));
    });
    const auto change = [&](const char* key, uint value) {
        portal.tell("/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings",
                    "SettingChanged",
                    {u"org.freedesktop.appearance"_qs, QLatin1String(key),
                     QVariant::fromValue(QDBusVariant(value))});
    };
    PortalAppearance appearance(m_ours);
    int changes = 0;
    appearance.setChanged([&] { ++changes; });
    const auto becomes = [&](bool dark, int told) {
        settle();
        return QTest::qWaitFor([&] { return appearance.isDark() == dark; }) &&
               std::exchange(changes, 0) == told;
    };
    EXPECT_FALSE(appearance.isDark()) << "nothing waits for the portal";
    EXPECT_TRUE(becomes(true, 1));
    expectDarkAndReadable(QApplication::palette());
    EXPECT_EQ(QToolTip::palette(), QApplication::palette());
    change("contrast", 0);
    EXPECT_TRUE(becomes(true, 0));
    change("color-scheme", 2);
    EXPECT_TRUE(becomes(false, 1));
    EXPECT_FALSE(windowsAreDark()) << "the theme's colours again";
    setPaletteDark(true);
    EXPECT_TRUE(becomes(false, 0)) << "the user prefers light";
    change("color-scheme", 0);
    EXPECT_TRUE(becomes(true, 1));
    change("color-scheme", 2);
    EXPECT_TRUE(becomes(false, 1));
    EXPECT_FALSE(windowsAreDark()) << "though the theme stays dark";
}

TEST_F(WorkspaceTest, revealsInTheFileManager) {
    const FakeService manager(m_theirs, "org.freedesktop.FileManager1",
                              [](const QDBusMessage&) { return QVariant(); });
    DesktopWorkspace(m_ours).reveal(u"/some place/100% ü.mp3"_qs);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !manager.asked.isEmpty(); }));
    EXPECT_EQ(manager.asked,
              QStringList{u"ShowItems|file:///some%20place/100%25%20%C3%BC.mp3|"_qs});
}

} // namespace
