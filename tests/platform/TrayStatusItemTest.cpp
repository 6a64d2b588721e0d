// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/TrayStatusItem.h"

#include "platform/linux/tray/NotifierHostWatcher.h"
#include "platform/linux/tray/NumberedMenu.h"
#include "platform/linux/tray/PlatformChoice.h"
#include "tests/support/BusTest.h"
#include "tests/support/MemoryDefaults.h"
#include "tests/support/Windows.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QHelpEvent>
#include <QToolTip>

using namespace dorvane::testing;
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
        m_bus.registerObject(u"/StatusNotifierWatcher"_qs, this,
                             QDBusConnection::ExportAllContents);
        EXPECT_TRUE(m_bus.registerService(service()));
    }
    ~FakeNotifierWatcher() override { m_bus.unregisterService(service()); }

    QStringList items;

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& item) { items << item; }

public:
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
    static QString service() { return u"org.kde.StatusNotifierWatcher"_qs; }
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
        TrayStatusItem item(loop, defaults, QDBusConnection(u"none"_qs));
        item.setPressed([&] { ++pressed; });
        loop.advance(4900ms);
        EXPECT_EQ(floatingClock(), nullptr);
        loop.advance(200ms);
        FloatingClock* clock = floatingClock();
        ASSERT_NE(clock, nullptr);
        EXPECT_EQ(item.geometry(), clock->frameGeometry());
        item.setToolTip(u"Tea"_qs);
        QHelpEvent hover(QEvent::ToolTip, {10, 10}, clock->mapToGlobal(QPoint(10, 10)));
        QApplication::sendEvent(clock, &hover);
        EXPECT_EQ(QToolTip::text(), u"Tea"_qs);
        QToolTip::hideText();

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
    EXPECT_EQ(floatingClock()->pos(), QPoint(534, 112));
}

// Collects the signals of our item and of its menu.
class Panel : public QObject {
    Q_OBJECT

public:
    Panel(QDBusConnection bus, QString item) : m_bus(std::move(bus)), m_item(std::move(item)) {
        for (const char* name : {"NewIcon", "NewAttentionIcon", "NewToolTip", "NewStatus"})
            m_bus.connect(m_item, u"/StatusNotifierItem"_qs, {}, QLatin1String(name), this,
                          SLOT(heard(QDBusMessage)));
        for (const char* name : {"LayoutUpdated", "ItemsPropertiesUpdated"})
            m_bus.connect(m_item, u"/MenuBar"_qs, {}, QLatin1String(name), this,
                          SLOT(heard(QDBusMessage)));
    }
    QDBusMessage call(const char* path, const char* interface, const char* method,
                      const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            m_item, QLatin1String(path), QLatin1String(interface), QLatin1String(method));
        message.setArguments(arguments);
        const QDBusPendingCall pending = m_bus.asyncCall(message);
        EXPECT_TRUE(QTest::qWaitFor([&] { return pending.isFinished(); })) << method;
        return pending.reply();
    }
    QVariant property(const char* name) {
        return call("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                    {u"org.kde.StatusNotifierItem"_qs, QLatin1String(name)})
            .arguments()
            .value(0)
            .value<QDBusVariant>()
            .variant();
    }
    QVariantList menu(const char* method, const QVariantList& arguments) {
        return call("/MenuBar", "com.canonical.dbusmenu", method, arguments).arguments();
    }
    // What was told since the last time.
    QString told() {
        QTest::qWait(50);
        return std::exchange(m_told, {}).join(u' ');
    }

public Q_SLOTS:
    void heard(const QDBusMessage& signal) { m_told << signal.member(); }

private:
    QDBusConnection m_bus;
    QString m_item;
    QStringList m_told;
};

QIcon square(QColor small, QColor large) {
    QIcon icon;
    for (const auto& [size, colour] : {std::pair(22, small), std::pair(44, large)}) {
        QPixmap pixmap(size, size);
        pixmap.fill(colour);
        icon.addPixmap(pixmap);
    }
    return icon;
}

PanelMenuEntry entry(const char* text, QStringList* chosen = nullptr,
                     std::vector<PanelMenuEntry> children = {}) {
    PanelMenuEntry entry;
    entry.text = entry.key = QLatin1String(text);
    entry.isEnabled = chosen || !children.empty();
    if (chosen)
        entry.chosen = [chosen, text] { *chosen << QLatin1String(text); };
    entry.children = std::move(children);
    return entry;
}

TEST_F(TrayTest, aPanelIsToldOfDifferencesAloneAndOpensTheMenuThatItWasTold) {
    VirtualRunLoop loop(QDateTime(QDate(2026, 3, 2), QTime(7, 0)));
    MemoryDefaults defaults;
    QStringList chosen;
    FakeNotifierWatcher watcher(m_theirs, true);
    TrayStatusItem item(loop, defaults, m_ours);
    item.setIcon(square(Qt::red, Qt::blue));
    item.setPanelMenu({entry("No_ne"), entry("Quit", &chosen)});
    item.setPanelMenuWillOpen([&] {
        chosen << u"opens"_qs;
        item.setPanelMenu({entry("No_ne"), entry("Tea", &chosen), entry("Quit", &chosen)});
    });
    EXPECT_TRUE(QTest::qWaitFor([&] {
        loop.advance(10ms);
        return !watcher.items.isEmpty();
    }));
    EXPECT_EQ(watcher.items, QStringList(m_ours.baseService()));
    Panel panel(m_theirs, m_ours.baseService());
    panel.told();

    item.setIcon(square(Qt::red, Qt::blue));
    EXPECT_EQ(panel.told(), QString());
    item.setIcon(square(Qt::red, Qt::green));
    EXPECT_EQ(panel.told(), u"NewIcon"_qs);
    item.setNeedsAttention(true);
    EXPECT_EQ(panel.told(), u"NewAttentionIcon NewStatus"_qs);
    EXPECT_EQ(panel.property("Status").toString(), u"NeedsAttention"_qs);
    item.setIcon(square(Qt::black, Qt::green));
    EXPECT_EQ(panel.told(), u"NewIcon NewAttentionIcon"_qs);
    const auto pixmaps =
        qdbus_cast<NotifierPixmaps>(panel.property("AttentionIconPixmap").value<QDBusArgument>());
    ASSERT_EQ(pixmaps.size(), 2);
    EXPECT_EQ(pixmaps[0].pixels.left(4).toHex(), "ff000000");
    EXPECT_EQ(pixmaps[1].pixels.left(4).toHex(), "ff00ff00");
    EXPECT_EQ(pixmaps[1].pixels.size(), 44 * 44 * 4);

    const auto layout = [&panel] {
        const auto read = panel.menu("GetLayout", {0, -1, QStringList()});
        QStringList rows;
        for (const DbusMenuLayout& row :
             qdbus_cast<DbusMenuLayout>(read.value(1).value<QDBusArgument>()).children)
            rows << QString::number(row.item.number) + row.item.properties[u"label"_qs].toString() +
                        (row.item.properties.contains(u"enabled"_qs) ? u" off"_qs : QString());
        return rows.join(u',');
    };
    EXPECT_EQ(layout(), u"1No__ne off,2Quit"_qs);
    const QVariant root = QVariant::fromValue(QList<int>{0});
    EXPECT_EQ(qdbus_cast<QList<int>>(panel.menu("AboutToShowGroup", {root}).value(0)),
              QList<int>{0});
    EXPECT_EQ(panel.told(), u"LayoutUpdated"_qs);
    EXPECT_EQ(layout(), u"1No__ne off,3Tea,2Quit"_qs);
    EXPECT_EQ(panel.menu("AboutToShow", {0}), QVariantList{false});
    EXPECT_EQ(panel.told(), QString());

    const QVariantList all = panel.menu("GetGroupProperties", {root, QStringList()});
    EXPECT_EQ(qdbus_cast<QList<DbusMenuItem>>(all.value(0)).size(), 1);
    for (const int number : {1, 2, 99})
        panel.menu("Event", {number, u"clicked"_qs, QVariant::fromValue(QDBusVariant(0)), 0U});
    loop.runPending();
    EXPECT_EQ(chosen.join(u' '), u"opens opens Quit"_qs);
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
            entries.push_back(entry(row.constData(), nullptr, {entry("Edit"), entry("Clear")}));
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

TEST_F(TrayTest, onlyGnomeOnWaylandWithoutIconsGoesOverX11) {
    const struct {
        const char* desktop;
        const char* wayland;
        const char* own;
        bool hasHost;
        const char* platform;
    } cases[] = {
        {"ubuntu:GNOME", "wayland-0", "", false, "xcb"},
        {"GNOME", "wayland-0", "", true, ""},
        {"GNOME", "", "", false, ""},
        {"KDE", "wayland-0", "", false, ""},
        {"GNOME", "wayland-0", "wayland", false, "wayland"},
    };
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    const auto set = [](const char* name, QByteArray value) {
        value.isEmpty() ? qunsetenv(name) : qputenv(name, value);
    };
    for (const auto& each : cases) {
        FakeNotifierWatcher watcher(m_ours, each.hasHost); // a call within this thread
        set("XDG_CURRENT_DESKTOP", each.desktop);
        set("WAYLAND_DISPLAY", each.wayland);
        set("DISPLAY", ":0");
        set("QT_QPA_PLATFORM", each.own);
        choosePlatform(m_ours);
        EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), each.platform) << each.desktop << each.hasHost;
    }
    set("QT_QPA_PLATFORM", platform);
    for (const char* name : {"XDG_CURRENT_DESKTOP", "WAYLAND_DISPLAY", "DISPLAY"})
        qunsetenv(name);
}

} // namespace

#include "TrayStatusItemTest.moc"
