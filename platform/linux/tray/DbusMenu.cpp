// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/DbusMenu.h"

#include <algorithm>
#include <utility>

namespace dorvane {

namespace {

using Item = NumberedMenu::Item;

const auto labelName = QStringLiteral("label");
const auto enabledName = QStringLiteral("enabled");

// An underline marks the key of an item, and two stand for one.
QString label(QString text) {
    return text.replace(u'_', QStringLiteral("__"));
}

// Those that are not at their defaults, or the named ones of them.
QVariantMap propertiesOf(const Item& item, const QStringList& names) {
    QVariantMap properties;
    if (item.entry.isSeparator)
        properties[QStringLiteral("type")] = QStringLiteral("separator");
    else if (item.number != NumberedMenu::rootNumber)
        properties[labelName] = label(item.entry.text);
    if (!item.children.empty())
        properties[QStringLiteral("children-display")] = QStringLiteral("submenu");
    const bool isPlain = item.number != NumberedMenu::rootNumber && !item.entry.isSeparator;
    if (isPlain && !item.entry.isEnabled)
        properties[enabledName] = false;
    if (!names.isEmpty())
        properties.removeIf([&](const auto& property) { return !names.contains(property.key()); });
    return properties;
}

// With the levels below it down to `depth`, all of them when it is negative.
DbusMenuLayout layoutOf(const Item& item, int depth, const QStringList& names) {
    DbusMenuLayout layout{{item.number, propertiesOf(item, names)}, {}};
    if (depth != 0)
        for (const Item& child : item.children)
            layout.children << layoutOf(child, depth - 1, names);
    return layout;
}

void appendTree(const Item& item, const QStringList& names, QList<DbusMenuItem>& items) {
    items << DbusMenuItem{item.number, propertiesOf(item, names)};
    for (const Item& child : item.children)
        appendTree(child, names, items);
}

} // namespace

DbusMenu::DbusMenu(QDBusConnection bus, RunLoop& runLoop, std::function<void()> willOpen)
    : m_bus(std::move(bus)), m_runLoop(runLoop), m_willOpen(std::move(willOpen)) {
    registerDbusMenuTypes();
    m_bus.registerObject(path(), this,
                         QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals |
                             QDBusConnection::ExportAllProperties);
}

DbusMenu::~DbusMenu() {
    m_bus.unregisterObject(path());
}

void DbusMenu::show(std::vector<PanelMenuEntry> entries) {
    const NumberedMenu::Change change = m_menu.show(std::move(entries));
    if (!change.looks.empty()) {
        QList<DbusMenuItem> updated;
        QList<DbusMenuDefaults> removed;
        for (const Item* item : change.looks) {
            updated << DbusMenuItem{item->number, propertiesOf(*item, {labelName, enabledName})};
            if (item->entry.isEnabled)
                removed << DbusMenuDefaults{item->number, {enabledName}};
        }
        Q_EMIT ItemsPropertiesUpdated(updated, removed);
    }
    if (change.layout)
        Q_EMIT LayoutUpdated(++m_revision, *change.layout);
}

uint DbusMenu::GetLayout(int parent, int depth, const QStringList& names, DbusMenuLayout& layout) {
    if (const Item* item = m_menu.find(parent)) {
        layout = layoutOf(*item, depth, names);
        m_toldRevision = m_revision;
    } else {
        refuse(parent);
    }
    return m_revision;
}

// Of no item in particular: of all of them.
QList<DbusMenuItem> DbusMenu::GetGroupProperties(const QList<int>& numbers,
                                                 const QStringList& names) {
    QList<DbusMenuItem> items;
    if (numbers.isEmpty())
        appendTree(m_menu.root(), names, items);
    for (const int number : numbers)
        if (const Item* item = m_menu.find(number))
            items << DbusMenuItem{number, propertiesOf(*item, names)};
    return items;
}

QDBusVariant DbusMenu::GetProperty(int number, const QString& name) {
    const Item* item = m_menu.find(number);
    const QVariant value = item ? propertiesOf(*item, {}).value(name) : QVariant();
    if (!value.isValid()) {
        refuse(number);
        return QDBusVariant(QString());
    }
    return QDBusVariant(value);
}

void DbusMenu::Event(int number, const QString& name, const QDBusVariant& /*data*/, uint /*time*/) {
    if (!happened(number, name))
        refuse(number);
}

QList<int> DbusMenu::EventGroup(const QList<DbusMenuEvent>& events) {
    QList<int> unknown;
    for (const DbusMenuEvent& event : events)
        if (!happened(event.number, event.name))
            unknown << event.number;
    if (!events.isEmpty() && unknown.size() == events.size())
        refuse(unknown.first());
    return unknown;
}

// False when there is no such item. A panel may click what has been disabled meanwhile.
bool DbusMenu::happened(int number, const QString& name) {
    const Item* item = m_menu.find(number);
    if (item && name == QLatin1String("clicked") && item->entry.isEnabled && item->entry.chosen)
        m_runLoop.defer(item->entry.chosen);
    return item != nullptr;
}

bool DbusMenu::AboutToShow(int number) {
    if (!m_menu.find(number)) {
        refuse(number);
        return false;
    }
    // Not for a submenu: nothing moves under the hand that chooses.
    if (number == NumberedMenu::rootNumber && m_willOpen)
        m_willOpen();
    return m_toldRevision != m_revision;
}

QList<int> DbusMenu::AboutToShowGroup(const QList<int>& numbers, QList<int>& unknown) {
    QList<int> toUpdate;
    for (const int number : numbers) {
        if (!m_menu.find(number))
            unknown << number;
        else if (AboutToShow(number))
            toUpdate << number;
    }
    return toUpdate;
}

void DbusMenu::refuse(int number) {
    if (calledFromDBus())
        sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("no such item: %1").arg(number));
}

} // namespace dorvane
