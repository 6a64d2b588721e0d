// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/bus/ServedBus.h"
#include "platform/linux/tray/DbusMenu.h"
#include "platform/linux/tray/NotifierPixmap.h"

#include <QPoint>
#include <QString>

#include <functional>

namespace dorvane {

// Our icon on the bus as org.kde.StatusNotifierItem, with its menu, on a connection of its own. It
// registers itself with every watcher that comes, and waits for nobody. Main thread only.
class NotifierItem final {
public:
    // What a click does.
    enum class Click {
        Press, // it is reported, for a pop-up of our own
        Menu   // the panel opens the menu that it draws
    };

    // Called from the event loop; none but `pressed` may destroy the item.
    struct Callbacks {
        std::function<void(QPoint place)> pressed; // pixels of the screen, 0,0 if not known
        std::function<void()> menuWillOpen;        // may show another menu
        std::function<void()> lost;                // the item is no longer on the bus
    };

    // The run loop must outlive the item.
    NotifierItem(RunLoop& runLoop, Click click, Callbacks callbacks);

    // False where there is no bus, and after it has been lost.
    [[nodiscard]] bool isOnBus() const { return m_bus.get() != nullptr; }

    void setPicture(const IconPicture& picture);
    void setToolTip(const QString& text);
    void setNeedsAttention(bool needsAttention);
    [[nodiscard]] DbusMenu& menu() { return m_menu; }

private:
    static const sd_bus_vtable interface[];

    // Called by sd-bus; `data` is the item.
    static int get(sd_bus* bus, const char* path, const char* interface, const char* name,
                   sd_bus_message* message, void* data, sd_bus_error* error);
    static int activate(sd_bus_message* call, void* data, sd_bus_error* error);
    static int ignore(sd_bus_message* call, void* data, sd_bus_error* error);
    static int watcherChanged(sd_bus_message* signal, void* data, sd_bus_error* error);

    void registerWithWatcher();
    void tell(const char* signal);
    [[nodiscard]] const char* status() const;

    RunLoop& m_runLoop;
    Callbacks m_callbacks;
    bool m_isMenu;
    bool m_needsAttention = false;
    NotifierPixmaps m_pixmaps;
    QString m_toolTip;
    ServedBus m_bus;
    DbusMenu m_menu;
};

} // namespace dorvane
