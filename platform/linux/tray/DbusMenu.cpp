// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/DbusMenu.h"

#include <algorithm>
#include <set>
#include <utility>
#include <variant>

namespace dorvane {

namespace {

using Item = NumberedMenu::Item;

constexpr auto menuInterface = "com.canonical.dbusmenu";
constexpr auto unprivileged = SD_BUS_VTABLE_UNPRIVILEGED; // whoever is on the bus may call

struct Property {
    QString name;
    std::variant<QString, bool> value;
};
using Properties = std::vector<Property>;

const auto labelName = QStringLiteral("label");
const auto enabledName = QStringLiteral("enabled");

// An underline marks the key of an item, and two stand for one.
QString label(QString text) {
    return text.replace(u'_', QStringLiteral("__"));
}

// Those that are not at their defaults, or the named ones of them.
Properties propertiesOf(const Item& item, const QStringList& names) {
    const bool isRoot = item.number == NumberedMenu::rootNumber;
    Properties properties;
    if (item.entry.isSeparator)
        properties.push_back({QStringLiteral("type"), QStringLiteral("separator")});
    else if (!isRoot)
        properties.push_back({labelName, label(item.entry.text)});
    if (!item.children.empty())
        properties.push_back({QStringLiteral("children-display"), QStringLiteral("submenu")});
    if (!isRoot && !item.entry.isSeparator && !item.entry.isEnabled)
        properties.push_back({enabledName, false});
    if (!names.isEmpty())
        std::erase_if(properties,
                      [&](const Property& property) { return !names.contains(property.name); });
    return properties;
}

void writeValue(BusWriter& message, const Property& property) {
    if (const auto* text = std::get_if<QString>(&property.value))
        message.container('v', "s", [&] { message.text(*text); });
    else
        message.container('v', "b", [&] { message.flag(std::get<bool>(property.value)); });
}

// The members of (ia{sv}).
void writeItem(BusWriter& message, const Item& item, const QStringList& names) {
    message.number(item.number).container('a', "{sv}", [&] {
        for (const Property& property : propertiesOf(item, names))
            message.container('e', "sv", [&] {
                message.text(property.name);
                writeValue(message, property);
            });
    });
}

// As (ia{sv}av), with the levels below it down to `depth`, all of them when it is negative. The
// children are variants, because a signature cannot contain itself.
void writeLayout(BusWriter& message, const Item& item, int depth, const QStringList& names) {
    message.container('r', "ia{sv}av", [&] {
        writeItem(message, item, names);
        message.container('a', "v", [&] {
            if (depth != 0)
                for (const Item& child : item.children)
                    message.container('v', "(ia{sv}av)",
                                      [&] { writeLayout(message, child, depth - 1, names); });
        });
    });
}

// As several (ia{sv}).
void writeTree(BusWriter& message, const Item& item, const QStringList& names) {
    message.container('r', "ia{sv}", [&] { writeItem(message, item, names); });
    for (const Item& child : item.children)
        writeTree(message, child, names);
}

DbusMenu& menuOf(void* data) {
    return *static_cast<DbusMenu*>(data);
}

int refuse(sd_bus_error* error, int number) {
    return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "no such item: %d", number);
}

} // namespace

const sd_bus_vtable DbusMenu::interface[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_PROPERTY("Version", "u", get, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("TextDirection", "s", get, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Status", "s", get, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("IconThemePath", "as", get, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_METHOD("GetLayout", "iias", "u(ia{sv}av)", getLayout, unprivileged),
    SD_BUS_METHOD("GetGroupProperties", "aias", "a(ia{sv})", getGroupProperties, unprivileged),
    SD_BUS_METHOD("GetProperty", "is", "v", getProperty, unprivileged),
    SD_BUS_METHOD("Event", "isvu", "", event, unprivileged),
    SD_BUS_METHOD("EventGroup", "a(isvu)", "ai", eventGroup, unprivileged),
    SD_BUS_METHOD("AboutToShow", "i", "b", aboutToShow, unprivileged),
    SD_BUS_METHOD("AboutToShowGroup", "ai", "aiai", aboutToShowGroup, unprivileged),
    SD_BUS_SIGNAL("ItemsPropertiesUpdated", "a(ia{sv})a(ias)", 0),
    SD_BUS_SIGNAL("LayoutUpdated", "ui", 0),
    SD_BUS_SIGNAL("ItemActivationRequested", "iu", 0),
    SD_BUS_VTABLE_END,
};

DbusMenu::DbusMenu(ServedBus& bus, RunLoop& runLoop, std::function<void()> willOpen)
    : m_bus(bus), m_runLoop(runLoop), m_willOpen(std::move(willOpen)) {
    if (m_bus.get())
        sd_bus_add_object_vtable(m_bus.get(), nullptr, path, menuInterface, interface, this);
}

void DbusMenu::show(std::vector<PanelMenuEntry> entries) {
    const NumberedMenu::Change change = m_menu.show(std::move(entries));
    if (!change.looks.empty())
        tellLooks(change.looks);
    if (change.layout) {
        const BusMessagePtr signal = busSignal(m_bus.get(), path, menuInterface, "LayoutUpdated");
        if (BusWriter(signal).count(++m_revision).number(*change.layout).send() >= 0)
            m_bus.flush();
    }
}

void DbusMenu::tellLooks(const std::vector<const Item*>& items) {
    const BusMessagePtr signal =
        busSignal(m_bus.get(), path, menuInterface, "ItemsPropertiesUpdated");
    BusWriter message(signal);
    message.container('a', "(ia{sv})", [&] {
        for (const Item* item : items)
            message.container('r', "ia{sv}", [&] {
                writeItem(message, *item, {labelName, enabledName});
            });
    });
    // What has gone back to its default.
    message.container('a', "(ias)", [&] {
        for (const Item* item : items)
            if (item->entry.isEnabled)
                message.container('r', "ias", [&] {
                    message.number(item->number).container('a', "s", [&] {
                        message.text(enabledName);
                    });
                });
    });
    if (message.send() >= 0)
        m_bus.flush();
}

int DbusMenu::get(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
                  const char* name, sd_bus_message* message, void* /*data*/,
                  sd_bus_error* /*error*/) {
    const std::string_view property(name);
    BusWriter reply(message);
    if (property == "Version")
        reply.count(3);
    else if (property == "IconThemePath")
        reply.container('a', "s", [] {});
    else
        reply.text(property == "Status" ? "normal" : "ltr");
    return reply.result();
}

int DbusMenu::getLayout(sd_bus_message* call, void* data, sd_bus_error* error) {
    DbusMenu& menu = menuOf(data);
    qint32 parent = 0;
    qint32 depth = 0;
    sd_bus_message_read(call, "ii", &parent, &depth);
    const Item* item = menu.m_menu.find(parent);
    if (!item)
        return refuse(error, parent);
    menu.m_toldRevision = menu.m_revision;
    const BusMessagePtr message = replyTo(call);
    BusWriter reply(message);
    reply.count(menu.m_revision);
    writeLayout(reply, *item, depth, readStrings(call));
    return reply.send();
}

// Of no item in particular: of all of them.
int DbusMenu::getGroupProperties(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    const NumberedMenu& menu = menuOf(data).m_menu;
    const std::vector<qint32> numbers = readNumbers(call);
    const QStringList names = readStrings(call);
    const BusMessagePtr message = replyTo(call);
    BusWriter reply(message);
    reply.container('a', "(ia{sv})", [&] {
        if (numbers.empty())
            writeTree(reply, menu.root(), names);
        for (const int number : numbers)
            if (const Item* item = menu.find(number))
                reply.container('r', "ia{sv}", [&] { writeItem(reply, *item, names); });
    });
    return reply.send();
}

int DbusMenu::getProperty(sd_bus_message* call, void* data, sd_bus_error* error) {
    qint32 number = 0;
    const char* name = "";
    sd_bus_message_read(call, "is", &number, &name);
    const Item* item = menuOf(data).m_menu.find(number);
    const Properties properties =
        item ? propertiesOf(*item, {QString::fromUtf8(name)}) : Properties();
    if (properties.empty())
        return refuse(error, number);
    const BusMessagePtr message = replyTo(call);
    BusWriter reply(message);
    writeValue(reply, properties.front());
    return reply.send();
}

int DbusMenu::event(sd_bus_message* call, void* data, sd_bus_error* error) {
    qint32 number = 0;
    const char* name = "";
    sd_bus_message_read(call, "is", &number, &name);
    return menuOf(data).happened(number, name) ? sd_bus_reply_method_return(call, "")
                                               : refuse(error, number);
}

int DbusMenu::eventGroup(sd_bus_message* call, void* data, sd_bus_error* error) {
    std::vector<qint32> unknown;
    std::size_t count = 0;
    sd_bus_message_enter_container(call, 'a', "(isvu)");
    while (sd_bus_message_enter_container(call, 'r', "isvu") > 0) {
        qint32 number = 0;
        const char* name = "";
        sd_bus_message_read(call, "is", &number, &name);
        sd_bus_message_skip(call, "vu");
        sd_bus_message_exit_container(call);
        ++count;
        if (!menuOf(data).happened(number, name))
            unknown.push_back(number);
    }
    if (count > 0 && unknown.size() == count)
        return refuse(error, unknown.front());
    const BusMessagePtr message = replyTo(call);
    return BusWriter(message).numbers(unknown).send();
}

// False when there is no such item. A panel may click what has been disabled meanwhile.
bool DbusMenu::happened(int number, std::string_view name) {
    const Item* item = m_menu.find(number);
    if (item && name == "clicked" && item->entry.isEnabled && item->entry.chosen)
        m_runLoop.defer(item->entry.chosen);
    return item != nullptr;
}

// Whether the panel has to ask for the layout before it opens this item.
bool DbusMenu::mustBeReadAgain(int number) {
    // Not for a submenu: nothing moves under the hand that chooses.
    if (number == NumberedMenu::rootNumber && m_willOpen)
        m_willOpen();
    return m_toldRevision != m_revision;
}

int DbusMenu::aboutToShow(sd_bus_message* call, void* data, sd_bus_error* error) {
    DbusMenu& menu = menuOf(data);
    qint32 number = 0;
    sd_bus_message_read(call, "i", &number);
    if (!menu.m_menu.find(number))
        return refuse(error, number);
    const bool readAgain = menu.mustBeReadAgain(number);
    const BusMessagePtr message = replyTo(call);
    return BusWriter(message).flag(readAgain).send();
}

// The menu is made anew once, however often it is named.
int DbusMenu::aboutToShowGroup(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    DbusMenu& menu = menuOf(data);
    std::vector<qint32> toUpdate;
    std::vector<qint32> unknown;
    const std::vector<qint32> named = readNumbers(call);
    for (const int number : std::set<qint32>(named.begin(), named.end())) {
        if (!menu.m_menu.find(number))
            unknown.push_back(number);
        else if (menu.mustBeReadAgain(number))
            toUpdate.push_back(number);
    }
    const BusMessagePtr message = replyTo(call);
    return BusWriter(message).numbers(toUpdate).numbers(unknown).send();
}

} // namespace dorvane
