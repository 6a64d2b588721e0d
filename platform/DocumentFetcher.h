// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

class QUrl;

namespace dorvane {

// Fetches small documents, such as a feed, from https: and file: addresses, and from no others.
// Main thread only; nothing here waits.
class DocumentFetcher {
public:
    // The document, or what went wrong in words for the user.
    struct Answer {
        QByteArray document;
        QString error;
    };

    static constexpr qint64 longestDocument = 64 * 1024;

    virtual ~DocumentFetcher() = default;

    // Answers within a minute, unless the object is destroyed before.
    virtual void fetch(const QUrl& url, std::function<void(const Answer&)> answer) = 0;
};

} // namespace dorvane
