// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/tray/FloatingClock.h"
#include "platform/linux/tray/IconPicture.h"
#include "platform/linux/tray/NotifierHostWatcher.h"
#include "platform/linux/tray/NotifierItem.h"
#include "platform/linux/tray/XEmbedTrayWatcher.h"
#include "platform/RunLoop.h"
#include "platform/StatusItem.h"

#include <QDBusConnection>
#include <QIcon>
#include <QString>
#include <QSystemTrayIcon>

#include <memory>
#include <optional>

namespace dorvane {

class UserDefaults;

// The status item on a Linux desktop: an icon in the panel, as a StatusNotifierItem of our own or,
// in panels that take windows (XEmbed), Qt's; and the floating clock while there is no panel for
// longer than a start or a restart of one takes. Needs the application object.
class TrayStatusItem final : public StatusItem {
public:
    // The clock's place is remembered in `defaults`.
    TrayStatusItem(RunLoop& runLoop, UserDefaults& defaults, QDBusConnection sessionBus);
    ~TrayStatusItem() override;

    // Another connection to the session bus, once the first has gone.
    void setBus(QDBusConnection bus) { m_notifierHost.setBus(std::move(bus)); }

    void setIcon(const DrawIcon& draw, IconSizes sizes) override;
    void setToolTip(const QString& text) override;
    void setNeedsAttention(bool needsAttention) override;
    void setPanelMenu(std::vector<PanelMenuEntry> entries) override;
    void setPanelMenuWillOpen(std::function<void()> willOpen) override;
    void setPressed(std::function<void()> pressed) override;
    void popUp(QMenu& menu) override;
    [[nodiscard]] Shown whereShown() const override;
    [[nodiscard]] QRect geometry() const override;
    [[nodiscard]] QPoint placeFor(QSize window) const override;

private:
    [[nodiscard]] bool hasNotifierHost() const;
    [[nodiscard]] bool hosted() const;
    [[nodiscard]] QRect panelIconGeometry() const;
    void lookIn(RunLoop::Milliseconds delay);
    void look();
    void makeNotifier();
    void makeTrayIcon();
    void pressedInPanel(QPoint place);
    void press();
    void showClock();
    void menuHidden();

    RunLoop& m_runLoop;
    UserDefaults& m_defaults;
    std::function<void()> m_pressed;
    std::function<void()> m_panelMenuWillOpen;

    IconPicture m_picture;
    QString m_toolTip;
    bool m_needsAttention = false;
    std::vector<PanelMenuEntry> m_panelMenu; // until there is a notifier to hold it

    std::unique_ptr<NotifierItem> m_notifier;    // from the first panel that takes one on
    std::unique_ptr<QSystemTrayIcon> m_trayIcon; // while there are XEmbed trays alone
    std::optional<QPoint> m_lastClick;           // on the notifier
    RunLoop::Milliseconds m_ignoreUntil{0};      // uptime; presses before that close a menu
    std::unique_ptr<FloatingClock> m_clock;
    RunLoopTimer m_look;
    RunLoopTimer m_patience; // runs while there is neither a panel nor the clock

    // Last, so that nothing above is gone while they can still report.
    NotifierHostWatcher m_notifierHost;
    XEmbedTrayWatcher m_xembedTray;
    QObject m_connections; // ends those with menus, which are not ours
};

} // namespace dorvane
