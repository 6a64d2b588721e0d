// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/TrayStatusItem.h"

#include "platform/linux/tray/NumberedMenu.h"
#include "platform/linux/tray/PlatformChoice.h"
#include "tests/support/BusTest.h"
#include "tests/support/MemoryDefaults.h"
#include "tests/support/Windows.h"

#include <QDBusMessage>
#include <QDBusPendingReply>

#include <set>
#include <sys/socket.h>
#include <sys/stat.h>

using namespace dorvane::testing;

namespace {

class TrayTest : public BusTest {
protected:
    TrayTest() { qputenv("DBUS_SESSION_BUS_ADDRESS", m_address.toUtf8()); }

    // The name on the bus of the item that a panel takes.
    QString taken() {
        QStringList registered;
        EXPECT_TRUE(QTest::qWaitFor([&] {
            loop.advance(10ms);
            registered = watcher.asked.filter(u"RegisterStatusNotifierItem|"_qs);
            return !registered.isEmpty();
        }));
        EXPECT_EQ(registered.size(), 1);
        return registered.value(0).section(u'|', 1);
    }

    QDBusPendingCall askMenu(const QString& item, const char* method,
                             const QVariantList& arguments) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            item, u"/MenuBar"_qs, u"com.canonical.dbusmenu"_qs, QLatin1String(method));
        call.setArguments(arguments);
        return m_theirs.asyncCall(call);
    }
    QString property(const QString& item, int number, const char* name) {
        const QDBusPendingReply<QDBusVariant> reply =
            askMenu(item, "GetProperty", {number, QLatin1String(name)});
        EXPECT_TRUE(QTest::qWaitFor([&] { return reply.isFinished(); }));
        return reply.value().variant().toString();
    }

    VirtualRunLoop loop{at("03-02 07:00")};
    MemoryDefaults defaults;
    // What tells programs of panels and takes their icons.
    FakeService watcher{m_theirs, "org.kde.StatusNotifierWatcher", [](const QDBusMessage&) {
                            return QVariant::fromValue(QDBusVariant(true));
                        }};
};

FloatingClock* floatingClock() {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* clock = qobject_cast<FloatingClock*>(window))
            return clock;
    return nullptr;
}

TEST_F(TrayTest, aClockFloatsWhereItWasLeftWhenNoPanelComes) {
    int pressed = 0;
    {
        TrayStatusItem item(loop, defaults, QDBusConnection(u"none"_qs));
        item.setPressed([&] { ++pressed; });
        loop.advance(4900ms);
        EXPECT_EQ(floatingClock(), nullptr);
        loop.advance(200ms);
        FloatingClock* clock = floatingClock();
        ASSERT_NE(clock, nullptr);
        EXPECT_EQ(item.geometry(), clock->frameGeometry());
        QTest::keyClick(clock, Qt::Key_Return);
        EXPECT_EQ(std::exchange(pressed, 0), 1);
        QTest::mouseClick(clock, Qt::LeftButton);
        EXPECT_EQ(pressed, 1);
        QTest::mousePress(clock, Qt::LeftButton, {}, {10, 10});
        QTest::mouseMove(clock, {-190, 110});
        QTest::mouseRelease(clock, Qt::LeftButton, {}, {10, 10});
        EXPECT_EQ(pressed, 1) << "dragging is not a click";
    }
    TrayStatusItem item(loop, defaults, QDBusConnection(u"none"_qs));
    loop.advance(6s);
    ASSERT_NE(floatingClock(), nullptr);
    EXPECT_EQ(floatingClock()->pos(), QPoint(534, 164));
}

// Collects the signals of our item.
class Panel : public QObject {
    Q_OBJECT

public:
    Panel(QDBusConnection bus, QString item) : m_bus(std::move(bus)), m_item(std::move(item)) {
        for (const char* name : {"NewIcon", "NewAttentionIcon", "NewToolTip", "NewStatus"})
            m_bus.connect(m_item, u"/StatusNotifierItem"_qs, {}, QLatin1String(name), this,
                          SLOT(heard(QDBusMessage)));
    }
    QVariant property(const char* name) {
        QDBusMessage get = QDBusMessage::createMethodCall(
            m_item, u"/StatusNotifierItem"_qs, u"org.freedesktop.DBus.Properties"_qs, u"Get"_qs);
        get << u"org.kde.StatusNotifierItem"_qs << QLatin1String(name);
        const QDBusPendingReply<QDBusVariant> pending = m_bus.asyncCall(get);
        EXPECT_TRUE(QTest::qWaitFor([&] { return pending.isFinished(); })) << name;
        return pending.value().variant();
    }
    // What was told since the last time: it comes before the answer to a question.
    QString told() {
        (void)property("Status");
        QCoreApplication::processEvents();
        return std::exchange(m_told, {}).join(u' ');
    }

public Q_SLOTS:
    void heard(const QDBusMessage& signal) { m_told << signal.member(); }

private:
    QDBusConnection m_bus;
    QString m_item;
    QStringList m_told;
};

QImage square(int side, QColor colour) {
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(colour);
    return image;
}

PanelMenuEntry entry(const char* text, std::vector<PanelMenuEntry> children = {}) {
    PanelMenuEntry entry;
    entry.text = entry.key = QString::fromUtf8(text);
    entry.children = std::move(children);
    return entry;
}

TEST_F(TrayTest, aPanelIsToldOfDifferencesAlone) {
    TrayStatusItem item(loop, defaults, m_ours);
    const auto setIcon = [&](QColor single, QColor doubled) {
        item.setIcon([=](int pixels) { return square(pixels, pixels > 22 ? doubled : single); },
                     StatusItem::IconSizes::Few);
    };
    setIcon(Qt::red, Qt::blue);
    Panel panel(m_theirs, taken());
    panel.told();

    setIcon(Qt::red, Qt::blue);
    EXPECT_EQ(panel.told(), QString());
    setIcon(Qt::red, Qt::green);
    EXPECT_EQ(panel.told(), u"NewIcon"_qs);
    item.setNeedsAttention(true);
    EXPECT_EQ(panel.told(), u"NewAttentionIcon NewStatus"_qs);
    EXPECT_EQ(panel.property("Status").toString(), u"NeedsAttention"_qs);
    setIcon(Qt::black, Qt::green);
    EXPECT_EQ(panel.told(), u"NewIcon NewAttentionIcon"_qs);
    const auto pixmaps = panel.property("AttentionIconPixmap").value<QDBusArgument>();
    QStringList seen;
    pixmaps.beginArray();
    while (!pixmaps.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray pixels;
        pixmaps.beginStructure();
        pixmaps >> width >> height >> pixels;
        pixmaps.endStructure();
        seen << u"%1x%2 %3 %4"_qs.arg(width)
                    .arg(height)
                    .arg(pixels.size())
                    .arg(QLatin1String(pixels.left(4).toHex()));
    }
    pixmaps.endArray();
    EXPECT_EQ(seen.join(u", "_qs), u"22x22 1936 ff000000, 44x44 7744 ff00ff00"_qs);
}

TEST_F(TrayTest, aPanelGetsEveryTitleAndItsCallsKeepNothingElseWaiting) {
    TrayStatusItem item(loop, defaults, m_ours);
    int opened = 0;
    PanelMenuEntry heading = entry("Active alarms:");
    heading.isEnabled = false;
    item.setPanelMenu({entry("Tea_\uFFFE\U0001F375\uFDD0"), heading});
    item.setPanelMenuWillOpen([&] { ++opened; });
    const QString name = taken();
    EXPECT_EQ(property(name, 1, "label"), u"Tea__\uFFFD\U0001F375\uFFFD"_qs)
        << "the bus takes no characters that stand for none";
    EXPECT_EQ(property(name, 2, "enabled"), u"false"_qs);

    for (int i = 0; i < 100; ++i)
        askMenu(name, "AboutToShow", {0});
    QThread::msleep(50);
    QCoreApplication::processEvents();
    EXPECT_LE(opened, 1) << "in one turn of the loop";
    EXPECT_TRUE(QTest::qWaitFor([&] { return opened == 100; }));
    const QDBusPendingCall group =
        askMenu(name, "AboutToShowGroup", {QVariant::fromValue(QList<int>(1000, 0))});
    EXPECT_TRUE(QTest::qWaitFor([&] { return group.isFinished(); }));
    EXPECT_EQ(opened, 101);
}

std::set<int> sockets() {
    std::set<int> open;
    for (int descriptor = 0; descriptor < 256; ++descriptor) {
        struct stat status {};
        if (::fstat(descriptor, &status) == 0 && S_ISSOCK(status.st_mode))
            open.insert(descriptor);
    }
    return open;
}

TEST_F(TrayTest, anIconWhoseConnectionEndsComesBackWithItsMenu) {
    const std::set<int> others = sockets();
    TrayStatusItem item(loop, defaults, m_ours);
    item.setPanelMenuWillOpen([&] { item.setPanelMenu({entry("Quit")}); });
    item.setNeedsAttention(true);
    const QString lost = taken();
    for (const int descriptor : sockets())
        if (!others.contains(descriptor))
            ::shutdown(descriptor, SHUT_RDWR);
    EXPECT_TRUE(QTest::qWaitFor([&] { return item.whereShown() == StatusItem::Shown::Nowhere; }));
    watcher.asked.clear();
    loop.advance(5s);
    const QString back = taken();
    EXPECT_NE(back, lost);
    EXPECT_EQ(item.whereShown(), StatusItem::Shown::InPanel);
    EXPECT_EQ(property(back, 1, "label"), u"Quit"_qs);
    EXPECT_EQ(Panel(m_theirs, back).property("Status"), u"NeedsAttention"_qs);
}

// The numbers of the items, as a tree, and what the panel is told.
QString numbers(const NumberedMenu::Item& item) {
    QString text = QString::number(item.number);
    if (item.children.empty())
        return text;
    QStringList below;
    for (const NumberedMenu::Item& child : item.children)
        below << numbers(child);
    return text + u'(' + below.join(u' ') + u')';
}

TEST(NumberedMenuTest, anEntryKeepsItsNumberAndNoNumberComesBack) {
    std::map<QByteArray, std::shared_ptr<int>> subjects;
    // An alarm is "tea:5", whatever stands behind the colon.
    const auto entriesOf = [&](const QByteArray& rows) {
        std::vector<PanelMenuEntry> entries;
        for (const QByteArray& row : rows.split(' ')) {
            const auto colon = row.indexOf(':');
            if (colon < 0) {
                entries.push_back(entry(row.constData()));
                continue;
            }
            entries.push_back(entry(row.constData(), {entry("Edit"), entry("Clear")}));
            entries.back().key.clear();
            auto& subject = subjects[row.left(colon)];
            entries.back().subject = subject = subject ? subject : std::make_shared<int>();
        }
        return entries;
    };
    const struct {
        const char* name;
        const char* entries;
        const char* numbers;
        std::optional<int> layout;
        std::size_t looks;
    } steps[] = {
        {"at first", "tea:5 Quit", "0(1(2 3) 4)", 0, 0},
        {"a text", "tea:4 Quit", "0(1(2 3) 4)", {}, 1},
        {"one more", "egg:4 tea:4 Quit", "0(5(6 7) 1(2 3) 4)", 0, 0},
        {"order", "tea:4 egg:4 Quit", "0(1(2 3) 5(6 7) 4)", 0, 0},
        {"one less", "egg:3 Quit", "0(5(6 7) 4)", 0, 1},
        {"back", "tea:3 egg:3 Quit", "0(8(9 10) 5(6 7) 4)", 0, 0},
    };
    NumberedMenu menu;
    for (const auto& step : steps) {
        const NumberedMenu::Change change = menu.show(entriesOf(step.entries));
        EXPECT_EQ(numbers(menu.root()), QLatin1String(step.numbers)) << step.name;
        EXPECT_EQ(change.layout, step.layout) << step.name;
        EXPECT_EQ(change.looks.size(), step.looks) << step.name;
    }
    auto entries = entriesOf(steps[5].entries);
    entries[1].children.pop_back();
    EXPECT_EQ(menu.show(entries).layout, 5) << "only below one item";
}

TEST(PlatformChoiceTest, whereWindowsAreBuriedOnWaylandTheProgramGoesOverX11) {
    const std::array names{"XDG_CURRENT_DESKTOP", "WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"};
    const auto set = [](const char* name, const QByteArray& value) {
        value.isEmpty() ? qunsetenv(name) : qputenv(name, value);
    };
    const std::pair<std::array<const char*, 4>, const char*> cases[] = {
        {{"ubuntu:GNOME", "wayland-0", ":0", ""}, "xcb;wayland"},
        {{"KDE", "wayland-0", ":0", ""}, "xcb;wayland"},
        {{"GNOME", "", ":0", ""}, ""},
        {{"GNOME", "wayland-0", "", ""}, ""},
        {{"sway", "wayland-0", ":0", ""}, ""},
        {{"GNOME", "wayland-0", ":0", "wayland"}, "wayland"},
        {{"", "", "", "offscreen"}, "offscreen"}, // as for the other tests
    };
    for (const auto& [values, platform] : cases) {
        for (std::size_t i = 0; i < names.size(); ++i)
            set(names[i], values[i]);
        {
            const PlatformChoice choice;
            EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), platform) << values[0];
        }
        EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), values[3]) << "for what we start";
    }
}

} // namespace

#include "TrayStatusItemTest.moc"
