// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/tray/DbusMenuTypes.h"
#include "platform/linux/tray/NumberedMenu.h"
#include "platform/RunLoop.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>

#include <functional>
#include <vector>

namespace dorvane {

// A menu on the bus as com.canonical.dbusmenu, for panels that draw the menus of their icons. The
// panel is told what changes, and nothing else. Main thread only.
class DbusMenu final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT)

public:
    static QString path() { return QStringLiteral("/MenuBar"); }

    // `willOpen` is called when a panel is about to open the menu; it may call show(). The run loop
    // must outlive the menu.
    DbusMenu(QDBusConnection bus, RunLoop& runLoop, std::function<void()> willOpen);
    ~DbusMenu() override;

    void show(std::vector<PanelMenuEntry> entries);

    [[nodiscard]] static uint version() { return 3; }
    [[nodiscard]] static QString textDirection() { return QStringLiteral("ltr"); }
    [[nodiscard]] static QString status() { return QStringLiteral("normal"); }
    [[nodiscard]] static QStringList iconThemePath() { return {}; }

    // Types are spelled out: Qt looks them up by these names.
public Q_SLOTS:
    uint GetLayout(int parent, int depth, const QStringList& names,
                   dorvane::DbusMenuLayout& layout);
    QList<dorvane::DbusMenuItem> GetGroupProperties(const QList<int>& numbers,
                                                    const QStringList& names);
    QDBusVariant GetProperty(int number, const QString& name);
    void Event(int number, const QString& name, const QDBusVariant& data, uint time);
    QList<int> EventGroup(const QList<dorvane::DbusMenuEvent>& events);
    // Whether the panel has to ask for the layout again before it opens this item.
    bool AboutToShow(int number);
    QList<int> AboutToShowGroup(const QList<int>& numbers, QList<int>& unknown);

Q_SIGNALS:
    void ItemsPropertiesUpdated(const QList<dorvane::DbusMenuItem>& updated,
                                const QList<dorvane::DbusMenuDefaults>& removed);
    void LayoutUpdated(uint revision, int parent);
    void ItemActivationRequested(int number, uint time);

private:
    [[nodiscard]] bool happened(int number, const QString& name);
    void refuse(int number);

    QDBusConnection m_bus;
    RunLoop& m_runLoop;
    std::function<void()> m_willOpen;
    NumberedMenu m_menu;
    uint m_revision = 1;
    uint m_toldRevision = 0; // that of the layout which a panel has asked for last
};

} // namespace dorvane
