// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/NotifierItem.h"

#include <QDBusMessage>
#include <QDBusPendingCall>

#include <utility>

namespace dorvane {

namespace {

const auto itemPath = QStringLiteral("/StatusNotifierItem");
const auto watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");

} // namespace

NotifierItem::NotifierItem(QDBusConnection bus, RunLoop& runLoop, Click click, Callbacks callbacks)
    : m_bus(std::move(bus))
    , m_callbacks(std::move(callbacks))
    , m_isMenu(click == Click::Menu)
    , m_menu(m_bus, runLoop, m_callbacks.menuWillOpen) {
    registerNotifierTypes();
    m_bus.registerObject(itemPath, this,
                         QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals |
                             QDBusConnection::ExportAllProperties);
    m_bus.connect(QStringLiteral("org.freedesktop.DBus"), QString(),
                  QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"),
                  {watcherService}, QString(), this,
                  SLOT(watcherChanged(QString, QString, QString)));
    registerWithWatcher();
}

NotifierItem::~NotifierItem() {
    m_bus.unregisterObject(itemPath);
}

// Under the connection's own name: to take another one would mean to wait for the bus.
void NotifierItem::registerWithWatcher() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherService, QStringLiteral("/StatusNotifierWatcher"), watcherService,
        QStringLiteral("RegisterStatusNotifierItem"));
    call << m_bus.baseService();
    call.setAutoStartService(false);
    m_bus.asyncCall(call);
}

void NotifierItem::watcherChanged(const QString& /*name*/, const QString& /*oldOwner*/,
                                  const QString& newOwner) {
    if (!newOwner.isEmpty())
        registerWithWatcher();
}

void NotifierItem::setPicture(const IconPicture& picture) {
    m_pixmaps = pixmapsOf(picture);
    Q_EMIT NewIcon();
    if (m_needsAttention)
        Q_EMIT NewAttentionIcon();
}

void NotifierItem::setToolTip(const QString& text) {
    m_toolTip = text;
    Q_EMIT NewToolTip();
}

void NotifierItem::setNeedsAttention(bool needsAttention) {
    m_needsAttention = needsAttention;
    Q_EMIT NewAttentionIcon();
    Q_EMIT NewStatus(status());
}

QString NotifierItem::status() const {
    return m_needsAttention ? QStringLiteral("NeedsAttention") : QStringLiteral("Active");
}

NotifierPixmaps NotifierItem::attentionPixmaps() const {
    return m_needsAttention ? m_pixmaps : NotifierPixmaps();
}

// Where the menu is the panel's to open, a panel that asks all the same opens it when it is
// refused.
void NotifierItem::Activate(int x, int y) {
    if (m_isMenu)
        sendErrorReply(QDBusError::NotSupported, QStringLiteral("open the menu"));
    else
        m_callbacks.pressed({x, y});
}

// For a panel that cannot draw menus.
void NotifierItem::ContextMenu(int x, int y) {
    Activate(x, y);
}

void NotifierItem::SecondaryActivate(int /*x*/, int /*y*/) {}

void NotifierItem::Scroll(int /*delta*/, const QString& /*orientation*/) {}

} // namespace dorvane
