// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/NotifierItem.h"

#include <string_view>
#include <utility>

namespace dorvane {

namespace {

constexpr auto itemPath = "/StatusNotifierItem";
constexpr auto itemInterface = "org.kde.StatusNotifierItem";
constexpr auto watcherService = "org.kde.StatusNotifierWatcher";
constexpr auto watcherPath = "/StatusNotifierWatcher";
constexpr auto watcherChanges =
    "type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
    "interface='org.freedesktop.DBus',member='NameOwnerChanged',"
    "arg0='org.kde.StatusNotifierWatcher'";

// What never changes; anything else that is a name is empty.
const char* constantText(std::string_view property) {
    if (property == "Category")
        return "ApplicationStatus";
    if (property == "Id")
        return "dorvane";
    return property == "Title" ? "Dorvane" : "";
}

constexpr auto unprivileged = SD_BUS_VTABLE_UNPRIVILEGED; // whoever is on the bus may call

NotifierItem& itemOf(void* data) {
    return *static_cast<NotifierItem*>(data);
}

} // namespace

const sd_bus_vtable NotifierItem::interface[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_PROPERTY("Category", "s", get, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Id", "s", get, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Title", "s", get, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Status", "s", get, 0, 0),
    SD_BUS_PROPERTY("WindowId", "i", get, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Menu", "o", get, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("ItemIsMenu", "b", get, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("IconName", "s", get, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("IconPixmap", "a(iiay)", get, 0, 0),
    SD_BUS_PROPERTY("OverlayIconName", "s", get, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("AttentionIconName", "s", get, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("AttentionIconPixmap", "a(iiay)", get, 0, 0),
    SD_BUS_PROPERTY("ToolTip", "(sa(iiay)ss)", get, 0, 0),
    SD_BUS_METHOD("Activate", "ii", "", activate, unprivileged),
    // For a panel that cannot draw menus.
    SD_BUS_METHOD("ContextMenu", "ii", "", activate, unprivileged),
    SD_BUS_METHOD("SecondaryActivate", "ii", "", ignore, unprivileged),
    SD_BUS_METHOD("Scroll", "is", "", ignore, unprivileged),
    SD_BUS_SIGNAL("NewIcon", "", 0),
    SD_BUS_SIGNAL("NewAttentionIcon", "", 0),
    SD_BUS_SIGNAL("NewToolTip", "", 0),
    SD_BUS_SIGNAL("NewStatus", "s", 0),
    SD_BUS_VTABLE_END,
};

NotifierItem::NotifierItem(RunLoop& runLoop, Click click, Callbacks callbacks)
    : m_runLoop(runLoop)
    , m_callbacks(std::move(callbacks))
    , m_isMenu(click == Click::Menu)
    , m_bus({.ready = [this] { registerWithWatcher(); }, .lost = m_callbacks.lost})
    , m_menu(m_bus, runLoop, m_callbacks.menuWillOpen) {
    if (!m_bus.get())
        return;
    sd_bus_add_object_vtable(m_bus.get(), nullptr, itemPath, itemInterface, interface, this);
    sd_bus_add_match_async(m_bus.get(), nullptr, watcherChanges, watcherChanged, nullptr, this);
    m_bus.flush();
}

// Under the connection's own name: another one would be one more thing to ask the bus for.
void NotifierItem::registerWithWatcher() {
    sd_bus_message* made = nullptr;
    const char* name = nullptr;
    if (sd_bus_get_unique_name(m_bus.get(), &name) < 0 ||
        sd_bus_message_new_method_call(m_bus.get(), &made, watcherService, watcherPath,
                                       watcherService, "RegisterStatusNotifierItem") < 0)
        return;
    const BusMessagePtr call(made);
    sd_bus_message_set_expect_reply(made, false);
    sd_bus_message_set_auto_start(made, false);
    if (BusWriter(call).text(name).send() >= 0)
        m_bus.flush();
}

int NotifierItem::watcherChanged(sd_bus_message* signal, void* data, sd_bus_error* /*error*/) {
    const char* newOwner = "";
    if (sd_bus_message_read(signal, "sss", nullptr, nullptr, &newOwner) >= 0 && *newOwner)
        itemOf(data).registerWithWatcher();
    return 0;
}

void NotifierItem::tell(const char* signal) {
    if (m_bus.get() && sd_bus_emit_signal(m_bus.get(), itemPath, itemInterface, signal, "") >= 0)
        m_bus.flush();
}

void NotifierItem::setPicture(const IconPicture& picture) {
    m_pixmaps = pixmapsOf(picture);
    tell("NewIcon");
    if (m_needsAttention)
        tell("NewAttentionIcon");
}

void NotifierItem::setToolTip(const QString& text) {
    m_toolTip = text;
    tell("NewToolTip");
}

void NotifierItem::setNeedsAttention(bool needsAttention) {
    m_needsAttention = needsAttention;
    tell("NewAttentionIcon");
    const BusMessagePtr signal = busSignal(m_bus.get(), itemPath, itemInterface, "NewStatus");
    if (BusWriter(signal).text(status()).send() >= 0)
        m_bus.flush();
}

const char* NotifierItem::status() const {
    return m_needsAttention ? "NeedsAttention" : "Active";
}

int NotifierItem::get(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
                      const char* name, sd_bus_message* message, void* data,
                      sd_bus_error* /*error*/) {
    const NotifierItem& item = itemOf(data);
    const std::string_view property(name);
    BusWriter reply(message);
    if (property == "Status")
        reply.text(item.status());
    else if (property == "WindowId")
        reply.number(0);
    else if (property == "Menu")
        reply.path(DbusMenu::path);
    else if (property == "ItemIsMenu")
        reply.flag(item.m_isMenu);
    else if (property == "IconPixmap")
        write(reply, item.m_pixmaps);
    else if (property == "AttentionIconPixmap")
        // Panels prefer it while we need attention; it is the same, so that the icon can flash.
        write(reply, item.m_needsAttention ? item.m_pixmaps : NotifierPixmaps());
    else if (property == "ToolTip")
        reply.container('r', "sa(iiay)ss", [&] {
            reply.text("");
            write(reply, {});
            reply.text(item.m_toolTip).text("");
        });
    else
        reply.text(constantText(property));
    return reply.result();
}

// Where the menu is the panel's to open, a panel that asks all the same opens it when it is
// refused.
int NotifierItem::activate(sd_bus_message* call, void* data, sd_bus_error* error) {
    const NotifierItem& item = itemOf(data);
    if (item.m_isMenu)
        return sd_bus_error_set(error, SD_BUS_ERROR_NOT_SUPPORTED, "open the menu");
    qint32 x = 0;
    qint32 y = 0;
    if (const int result = sd_bus_message_read(call, "ii", &x, &y); result < 0)
        return result;
    item.m_runLoop.defer([pressed = item.m_callbacks.pressed, x, y] { pressed({x, y}); });
    return sd_bus_reply_method_return(call, "");
}

int NotifierItem::ignore(sd_bus_message* call, void* /*data*/, sd_bus_error* /*error*/) {
    return sd_bus_reply_method_return(call, "");
}

} // namespace dorvane
