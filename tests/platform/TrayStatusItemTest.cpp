// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/TrayStatusItem.h"

#include "platform/linux/tray/NotifierHostWatcher.h"
#include "tests/support/BusTest.h"
#include "tests/support/MemoryDefaults.h"
#include "tests/support/VirtualRunLoop.h"

#include <QApplication>
#include <QTest>

using namespace dorvane;
using namespace std::chrono_literals;
using dorvane::testing::BusTest;
using dorvane::testing::MemoryDefaults;
using dorvane::testing::VirtualRunLoop;
using Host = NotifierHostWatcher::Host;

namespace {

// The part of a panel, or of what stands between panels and icons, that tells of panels.
class FakeNotifierWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered MEMBER m_hosted)

public:
    FakeNotifierWatcher(QDBusConnection bus, bool hosted)
        : m_bus(std::move(bus)), m_hosted(hosted) {
        m_bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                             QDBusConnection::ExportAllContents);
        EXPECT_TRUE(m_bus.registerService(service()));
    }
    ~FakeNotifierWatcher() override { m_bus.unregisterService(service()); }

    void setHosted(bool hosted) {
        m_hosted = hosted;
        if (hosted)
            Q_EMIT StatusNotifierHostRegistered();
        else
            Q_EMIT StatusNotifierHostUnregistered();
    }

Q_SIGNALS:
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();

private:
    static QString service() { return QStringLiteral("org.kde.StatusNotifierWatcher"); }
    QDBusConnection m_bus;
    bool m_hosted;
};

class TrayTest : public BusTest {};

TEST_F(TrayTest, hostsAreNoticedAsTheyComeAndGo) {
    QList<Host> seen;
    std::optional<NotifierHostWatcher> watcher;
    watcher.emplace(m_ours, [&] { seen << watcher->host(); });
    const auto becomes = [&](Host host) {
        return QTest::qWaitFor([&] { return watcher->host() == host; });
    };
    EXPECT_EQ(watcher->host(), Host::Unknown);
    EXPECT_TRUE(becomes(Host::Absent));
    {
        FakeNotifierWatcher panel(m_theirs, false);
        QTest::qWait(50);
        panel.setHosted(true);
        EXPECT_TRUE(becomes(Host::Present));
        panel.setHosted(false);
        EXPECT_TRUE(becomes(Host::Absent));
        panel.setHosted(true);
        EXPECT_TRUE(becomes(Host::Present));
    }
    EXPECT_TRUE(becomes(Host::Absent));
    EXPECT_EQ(seen, (QList<Host>{Host::Absent, Host::Present, Host::Absent, Host::Present,
                                 Host::Absent}));
}

FloatingClock* floatingClock() {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* clock = qobject_cast<FloatingClock*>(window))
            return clock;
    return nullptr;
}

TEST_F(TrayTest, aClockFloatsWhereItWasLeftWhenNoPanelComes) {
    VirtualRunLoop loop(QDateTime(QDate(2026, 3, 2), QTime(7, 0)));
    MemoryDefaults defaults;
    int pressed = 0;
    {
        TrayStatusItem item(loop, defaults, QDBusConnection(QStringLiteral("none")));
        item.setPressed([&] { ++pressed; });
        loop.advance(4900ms);
        EXPECT_EQ(floatingClock(), nullptr);
        loop.advance(200ms);
        FloatingClock* clock = floatingClock();
        ASSERT_NE(clock, nullptr);
        EXPECT_EQ(item.geometry(), clock->frameGeometry());

        QTest::mouseClick(clock, Qt::LeftButton);
        EXPECT_EQ(pressed, 1);
        QTest::mousePress(clock, Qt::LeftButton, {}, {10, 10});
        QTest::mouseMove(clock, {-190, 110});
        QTest::mouseRelease(clock, Qt::LeftButton, {}, {10, 10});
        EXPECT_EQ(pressed, 1) << "dragging is not a click";
    }
    TrayStatusItem item(loop, defaults, QDBusConnection(QStringLiteral("none")));
    loop.advance(6s);
    ASSERT_NE(floatingClock(), nullptr);
    EXPECT_EQ(floatingClock()->pos(), QPoint(534, 112));
}

} // namespace

#include "TrayStatusItemTest.moc"
