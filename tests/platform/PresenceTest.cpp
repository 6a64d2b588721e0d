// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/presence/LogindSession.h"
#include "platform/linux/presence/MutterIdleMonitor.h"
#include "platform/linux/presence/SessionPresence.h"
#include "platform/linux/presence/XIdleCounter.h"
#include "platform/linux/session/QtRunLoop.h"
#include "tests/support/BusTest.h"
#include "tests/support/Testing.h"

#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

using namespace dorvane::testing;

namespace {

class PresenceTest : public BusTest {
protected:
    // Watches the one source, and notes each change as "away", "back" or, at first, "known".
    template<typename Source, typename... Arguments>
    void watch(Arguments&&... arguments) {
        m_presence.emplace([&] {
            SessionPresence::Sources sources;
            sources.push_back(std::make_unique<Source>(std::forward<Arguments>(arguments)...));
            return sources;
        });
        m_presence->setChanged([this] {
            m_notes += m_presence->awaySince() ? u" away"_qs
                       : m_notes.isEmpty()     ? u"known"_qs
                                               : u" back"_qs;
        });
        m_presence->watch();
    }
    // On a busy machine the next one may have come by then, too.
    [[nodiscard]] bool becomes(const char* notes) {
        return QTest::qWaitFor([&] { return m_notes.startsWith(QLatin1String(notes)); });
    }

    QtRunLoop m_loop;
    std::optional<SessionPresence> m_presence;
    QString m_notes;
};

TEST_F(PresenceTest, LogindTellsThatTheSessionIsLockedOrIdles) {
    const char* const path = "/org/freedesktop/login1/session/_35";
    QVariantMap hints{{u"LockedHint"_qs, true}, {u"IdleHint"_qs, false}};
    FakeService logind(
        m_theirs, "org.freedesktop.login1", [&](const QDBusMessage& call) -> QVariant {
            if (call.member() == u"Get"_qs)
                return QVariant::fromValue(QDBusVariant(u"5"_qs));
            if (call.member() == u"GetSession"_qs)
                return QVariant::fromValue(QDBusObjectPath(QString::fromLatin1(path)));
            return hints;
        });
    watch<LogindSession>(m_loop, m_ours);
    EXPECT_TRUE(becomes("known away"));
    const auto tell = [&](const char* hint, bool is) {
        hints[QString::fromLatin1(hint)] = is;
        logind.tell(path, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                    {u"org.freedesktop.login1.Session"_qs, QVariantMap(), QStringList()});
    };
    tell("IdleHint", true);
    tell("LockedHint", false);
    tell("IdleHint", false);
    EXPECT_TRUE(becomes("known away back"));
}

TEST_F(PresenceTest, GnomeTellsOfAMinuteWithoutAKeyAndOfTheNextOne) {
    watch<MutterIdleMonitor>(m_loop, m_ours);
    QTest::qWait(50);
    EXPECT_FALSE(m_presence->isKnown()) << "there is no such shell yet";
    {
        FakeService shell(m_theirs, "org.gnome.Mutter.IdleMonitor", [](const QDBusMessage& call) {
            return QVariant(call.member() == u"AddIdleWatch"_qs ? 7U : 8U);
        });
        const auto fire = [&](uint id) {
            shell.tell("/org/gnome/Mutter/IdleMonitor/Core", "org.gnome.Mutter.IdleMonitor",
                       "WatchFired", {id});
        };
        EXPECT_TRUE(becomes("known"));
        fire(6); // somebody else's
        fire(7);
        EXPECT_TRUE(becomes("known away"));
        EXPECT_NEAR(double((m_loop.sinceBoot() - *m_presence->awaySince()).count()), 60e3, 2e3);
        EXPECT_TRUE(QTest::qWaitFor([&] { return shell.asked.size() == 2; }));
        EXPECT_EQ(shell.asked, QStringList({u"AddIdleWatch|60000"_qs, u"AddUserActiveWatch"_qs}));
        QTest::qWait(50);
        fire(8);
        EXPECT_TRUE(becomes("known away back"));
        fire(7);
        EXPECT_TRUE(becomes("known away back away"));
    }
    EXPECT_TRUE(becomes("known away back away back")) << "who is gone tells of nobody's return";
}

// A real X server, whose pointer is moved from outside.
TEST_F(PresenceTest, AnXServerTellsOfThePointer) {
    QProcess server;
    server.start(u"Xvfb"_qs, {u"-displayfd"_qs, u"1"_qs, u"-screen"_qs, u"0"_qs, u"64x64x24"_qs});
    if (!server.waitForStarted() || QStandardPaths::findExecutable(u"xdotool"_qs).isEmpty())
        GTEST_SKIP() << "Xvfb or xdotool is not installed";
    ASSERT_TRUE(server.waitForReadyRead());
    const QByteArray display = ":" + server.readLine().trimmed();
    const QByteArray before = qgetenv("DISPLAY");
    qputenv("DISPLAY", display);
    watch<XIdleCounter>(m_loop, RunLoop::Milliseconds(300));
    EXPECT_TRUE(becomes("known away"));
    QProcess::execute(u"xdotool"_qs, {u"mousemove_relative"_qs, u"5"_qs, u"5"_qs});
    EXPECT_TRUE(becomes("known away back"));
    EXPECT_TRUE(becomes("known away back away"));
    server.terminate();
    EXPECT_TRUE(becomes("known away back away back"));
    server.waitForFinished();
    qputenv("DISPLAY", before);
}

} // namespace
