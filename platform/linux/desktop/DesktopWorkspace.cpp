// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/desktop/DesktopWorkspace.h"

#include "platform/Log.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QUrl>

namespace dorvane {

DesktopWorkspace::DesktopWorkspace(QDBusConnection sessionBus) : m_bus(std::move(sessionBus)) {}

void DesktopWorkspace::openUrl(const QUrl& url) {
    // Starts a program and does not wait for what becomes of it.
    if (QDesktopServices::openUrl(url))
        return;
    qCWarning(logPlatform, "Nothing opens %ls", qUtf16Printable(url.toDisplayString()));
    if (m_nothingOpens)
        m_nothingOpens(url);
}

void DesktopWorkspace::reveal(const QString& path) {
    const QUrl item = QUrl::fromLocalFile(path);
    const QUrl parent = QUrl::fromLocalFile(QFileInfo(path).absolutePath());
    if (!m_bus.isConnected()) {
        openUrl(parent);
        return;
    }
    QDBusMessage show = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    show << QStringList{item.toString(QUrl::FullyEncoded)} << QString();
    auto* call = new QDBusPendingCallWatcher(m_bus.asyncCall(show), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, parent] {
        call->deleteLater();
        if (call->isError())
            openUrl(parent);
    });
}

QString DesktopWorkspace::typeOfFile(const QString& path) const {
    if (!QFileInfo(path).isReadable())
        return {};
    return QMimeDatabase().mimeTypeForFile(path).name();
}

} // namespace dorvane
