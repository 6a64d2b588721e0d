// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

namespace dorvane {

// A version of the program, and where people find it.
struct Release {
    QString version;
    QUrl link;
};

// Reads a feed of releases as docs/updates.md describes it. Nothing, with the reason in words for
// the user, for anything else: whoever can change the feed can make it say what he likes.
[[nodiscard]] std::optional<Release> releaseInFeed(const QByteArray& feed, QString& reason);

// Whether a version comes after another; a text that is no version comes before all.
[[nodiscard]] bool isNewer(const QString& version, const QString& than);

// Whether a feed may be there: on a server, by https, or in a file.
[[nodiscard]] bool isFeedAddress(const QUrl& address);

} // namespace dorvane
