// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVariantMap>

#include <optional>

class QUrl;

namespace dorvane {

class PropertyListFormat;

// Reads the property list at a file: or data: address whose root is a dictionary; nothing is
// decompressed, whatever the name says. Nothing when it is no such list, when the contents cannot
// be read, which is logged, and for every other kind of address: this waits for the disk, and must
// not wait for a network. Any thread.
[[nodiscard]] std::optional<QVariantMap>
dictionaryWithContentsOfURLUnzipped(const QUrl& url, const PropertyListFormat& format);

} // namespace dorvane
