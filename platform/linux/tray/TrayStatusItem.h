// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/tray/FloatingClock.h"
#include "platform/linux/tray/IconPicture.h"
#include "platform/linux/tray/NotifierHostWatcher.h"
#include "platform/linux/tray/XEmbedTrayWatcher.h"
#include "platform/RunLoop.h"
#include "platform/StatusItem.h"

#include <QIcon>
#include <QPointer>
#include <QString>
#include <QSystemTrayIcon>

#include <memory>
#include <optional>

class QDBusConnection;

namespace dorvane {

class UserDefaults;

// The status item on a Linux desktop: an icon in the panel as a StatusNotifierItem or over XEmbed,
// whichever the first panel that shows up takes, and the floating clock while there is no panel
// for longer than a start or a restart of one takes. Needs the application object.
class TrayStatusItem final : public StatusItem {
public:
    // The clock's place is remembered in `defaults`.
    TrayStatusItem(RunLoop& runLoop, UserDefaults& defaults, const QDBusConnection& sessionBus);
    ~TrayStatusItem() override;

    void setIcon(const QIcon& icon) override;
    void setToolTip(const QString& text) override;
    void setExportedMenu(QMenu* menu) override;
    void setPressed(std::function<void()> pressed) override;
    void popUp(QMenu& menu) override;
    [[nodiscard]] QRect geometry() const override;
    [[nodiscard]] QPoint placeFor(QSize window) const override;

private:
    enum class Protocol { Notifier, XEmbed };

    [[nodiscard]] std::optional<Protocol> offered() const;
    [[nodiscard]] bool hosted() const;
    [[nodiscard]] QRect trayIconGeometry() const;
    void lookIn(RunLoop::Milliseconds delay);
    void look();
    void makeTrayIcon(Protocol protocol);
    void activated(QSystemTrayIcon::ActivationReason reason);
    void showClock();
    void menuHidden();

    RunLoop& m_runLoop;
    UserDefaults& m_defaults;
    std::function<void()> m_pressed;

    QIcon m_icon;
    IconPicture m_picture;
    QString m_toolTip;
    QPointer<QMenu> m_exportedMenu;

    std::unique_ptr<QSystemTrayIcon> m_trayIcon;
    std::optional<Protocol> m_protocol;     // of the tray icon; Qt decides once for a process
    std::optional<QPoint> m_lastClick;      // on the tray icon
    RunLoop::Milliseconds m_ignoreUntil{0}; // uptime; presses before that close a menu
    std::unique_ptr<FloatingClock> m_clock;
    RunLoopTimer m_look;
    RunLoopTimer m_patience; // runs while there is neither a panel nor the clock

    // Last, so that nothing above is gone while they can still report.
    NotifierHostWatcher m_notifierHost;
    XEmbedTrayWatcher m_xembedTray;
};

} // namespace dorvane
