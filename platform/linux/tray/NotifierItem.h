// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/tray/DbusMenu.h"
#include "platform/linux/tray/NotifierTypes.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QObject>
#include <QPoint>

#include <functional>

namespace dorvane {

// Our icon on the bus as org.kde.StatusNotifierItem, with its menu. It registers itself with every
// watcher that comes, and waits for nobody. Main thread only.
class NotifierItem final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ title CONSTANT)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menuPath CONSTANT)
    Q_PROPERTY(bool ItemIsMenu READ isMenu CONSTANT)
    Q_PROPERTY(QString IconName READ noName CONSTANT)
    Q_PROPERTY(dorvane::NotifierPixmaps IconPixmap READ pixmaps)
    Q_PROPERTY(QString OverlayIconName READ noName CONSTANT)
    Q_PROPERTY(QString AttentionIconName READ noName CONSTANT)
    Q_PROPERTY(dorvane::NotifierPixmaps AttentionIconPixmap READ attentionPixmaps)
    Q_PROPERTY(dorvane::NotifierToolTip ToolTip READ toolTip)

public:
    // What a click does.
    enum class Click {
        Press, // it is reported, for a pop-up of our own
        Menu   // the panel opens the menu that it draws
    };

    struct Callbacks {
        std::function<void(QPoint place)> pressed; // pixels of the screen, 0,0 if not known
        std::function<void()> menuWillOpen;
    };

    // The run loop must outlive the item.
    NotifierItem(QDBusConnection bus, RunLoop& runLoop, Click click, Callbacks callbacks);
    ~NotifierItem() override;

    void setPicture(const IconPicture& picture);
    void setToolTip(const QString& text);
    void setNeedsAttention(bool needsAttention);
    [[nodiscard]] DbusMenu& menu() { return m_menu; }

    [[nodiscard]] static QString category() { return QStringLiteral("ApplicationStatus"); }
    [[nodiscard]] static QString id() { return QStringLiteral("dorvane"); }
    [[nodiscard]] static QString title() { return QStringLiteral("Dorvane"); }
    [[nodiscard]] static int windowId() { return 0; }
    [[nodiscard]] static QString noName() { return {}; }
    [[nodiscard]] static QDBusObjectPath menuPath() { return QDBusObjectPath(DbusMenu::path()); }
    [[nodiscard]] bool isMenu() const { return m_isMenu; }
    [[nodiscard]] const NotifierPixmaps& pixmaps() const { return m_pixmaps; }
    [[nodiscard]] QString status() const;
    // Panels prefer it while we need attention; it is the same, so that the icon can flash.
    [[nodiscard]] NotifierPixmaps attentionPixmaps() const;
    [[nodiscard]] NotifierToolTip toolTip() const { return {{}, {}, m_toolTip, {}}; }

public Q_SLOTS:
    void Activate(int x, int y);
    void ContextMenu(int x, int y);
    void SecondaryActivate(int x, int y);
    void Scroll(int delta, const QString& orientation);

Q_SIGNALS:
    void NewIcon();
    void NewAttentionIcon();
    void NewToolTip();
    void NewStatus(const QString& status);

private Q_SLOTS:
    void watcherChanged(const QString& name, const QString& oldOwner, const QString& newOwner);

private:
    void registerWithWatcher();

    QDBusConnection m_bus;
    Callbacks m_callbacks;
    bool m_isMenu;
    bool m_needsAttention = false;
    NotifierPixmaps m_pixmaps;
    QString m_toolTip;
    DbusMenu m_menu;
};

} // namespace dorvane
