// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/UpdateFeed.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QVersionNumber>

namespace dorvane {

namespace {

constexpr qsizetype longestAddress = 500;

bool isVersion(const QString& text) {
    static const QRegularExpression numbers(QStringLiteral("\\A[0-9]{1,5}(\\.[0-9]{1,5}){1,3}\\z"));
    return numbers.match(text).hasMatch();
}

// Without a name and a password, which only make an address look like another.
bool isOnServer(const QUrl& address) {
    return address.isValid() && address.scheme() == QStringLiteral("https") &&
           !address.host().isEmpty() && address.userInfo().isEmpty();
}

} // namespace

std::optional<Release> releaseInFeed(const QByteArray& feed, QString& reason) {
    const QJsonObject root = QJsonDocument::fromJson(feed).object();
    const QString version = root.value(QStringLiteral("version")).toString();
    const QString address = root.value(QStringLiteral("link")).toString();
    const QUrl link(address, QUrl::StrictMode);
    if (root.isEmpty())
        reason = QStringLiteral("what the server sent is no feed");
    else if (!isVersion(version))
        reason = QStringLiteral("the feed names no version");
    else if (address.size() > longestAddress || !isOnServer(link))
        reason = QStringLiteral("the feed has no https link");
    else
        return Release{version, link};
    return std::nullopt;
}

bool isNewer(const QString& version, const QString& than) {
    const auto value = [](const QString& text) {
        return QVersionNumber::fromString(isVersion(text) ? text : QString()).normalized();
    };
    return value(version) > value(than);
}

bool isFeedAddress(const QUrl& address) {
    return isOnServer(address) || (address.isLocalFile() && address.host().isEmpty());
}

} // namespace dorvane
