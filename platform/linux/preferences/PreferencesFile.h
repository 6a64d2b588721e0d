// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/preferences/PlainFile.h"
#include "platform/PropertyList.h"
#include "platform/UserDefaults.h"

#include <QDateTime>
#include <QMap>

namespace dorvane {

// The property-list file of one domain, which other programs may change or bring back meanwhile.
// Nothing that it holds is replaced unread: a damaged file is put aside under a new name beside it,
// one that cannot be read is left alone, and where a value that was never read here has to give
// way, the file is copied beside itself first. Every member waits for the disk; any thread, one at
// a time.
class PreferencesFile {
public:
    // `path` is the full path of the file, which need not exist, nor its folder. The format must
    // outlive the object.
    PreferencesFile(QString path, const PropertyListFormat& format);

    using Changes = QMap<QString, QVariant>; // an invalid value is a removed key
    using Joins = QMap<QString, UserDefaults::Join>;

    // What the file holds, or held when it was last seen whole.
    [[nodiscard]] const QVariantMap& contents() const { return m_known; }

    // Reads the file for the first time; `now`, here and below, dates the names of files that are
    // put aside. Answers, in words, why it must not be written over.
    [[nodiscard]] std::optional<QString> begin(const QDateTime& now);

    // Looks at the file again, joins what it holds by now with the changes, and replaces it where
    // that makes a difference. Answers what kept the changes from the disk; they may be tried again
    // then, on the contents() from before.
    [[nodiscard]] std::optional<QString> change(const Changes& changes, const Joins& joins,
                                                const QDateTime& now);

private:
    struct Joined {
        QVariantMap values;
        bool replacesUnread = false; // a value that this process never read
    };

    [[nodiscard]] QString path() const;
    [[nodiscard]] std::optional<QString> read(const QDateTime& now);
    [[nodiscard]] Joined joined(const Changes& changes, const Joins& joins) const;
    [[nodiscard]] std::optional<QString> putAside(const QDateTime& now);
    [[nodiscard]] std::optional<QString> copyUnread(const QDateTime& now) const;
    [[nodiscard]] std::optional<QString> write(const QVariantMap& values);

    const QString m_path;
    const PropertyListFormat& m_format;
    QVariantMap m_known;                     // to whoever makes the changes
    QVariantMap m_contents;                  // newer ones, while they could not be joined
    std::optional<PlainFile::Stamp> m_stamp; // of the file that m_contents was read from
};

} // namespace dorvane
