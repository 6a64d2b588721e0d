// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/bus/BusMessage.h"
#include "platform/linux/bus/ServedBus.h"
#include "platform/linux/tray/NumberedMenu.h"
#include "platform/RunLoop.h"

#include <functional>
#include <string_view>
#include <vector>

namespace dorvane {

// A menu on the bus as com.canonical.dbusmenu, for panels that draw the menus of their icons. The
// panel is told what changes, and nothing else. Main thread only.
class DbusMenu final {
public:
    static constexpr auto path = "/MenuBar";

    // `willOpen` is called when a panel is about to open the menu; it may call show(). Connection
    // and run loop must outlive the menu.
    DbusMenu(ServedBus& bus, RunLoop& runLoop, std::function<void()> willOpen);
    DbusMenu(const DbusMenu&) = delete;
    DbusMenu& operator=(const DbusMenu&) = delete;

    void show(std::vector<PanelMenuEntry> entries);

private:
    static const sd_bus_vtable interface[];

    // Called by sd-bus; `data` is the menu.
    static int get(sd_bus* bus, const char* path, const char* interface, const char* name,
                   sd_bus_message* message, void* data, sd_bus_error* error);
    static int getLayout(sd_bus_message* call, void* data, sd_bus_error* error);
    static int getGroupProperties(sd_bus_message* call, void* data, sd_bus_error* error);
    static int getProperty(sd_bus_message* call, void* data, sd_bus_error* error);
    static int event(sd_bus_message* call, void* data, sd_bus_error* error);
    static int eventGroup(sd_bus_message* call, void* data, sd_bus_error* error);
    static int aboutToShow(sd_bus_message* call, void* data, sd_bus_error* error);
    static int aboutToShowGroup(sd_bus_message* call, void* data, sd_bus_error* error);

    [[nodiscard]] bool happened(int number, std::string_view name);
    [[nodiscard]] bool mustBeReadAgain(int number);
    void tellLooks(const std::vector<const NumberedMenu::Item*>& items);

    ServedBus& m_bus;
    RunLoop& m_runLoop;
    std::function<void()> m_willOpen;
    NumberedMenu m_menu;
    quint32 m_revision = 1;
    quint32 m_toldRevision = 0; // that of the layout which a panel has asked for last
};

} // namespace dorvane
