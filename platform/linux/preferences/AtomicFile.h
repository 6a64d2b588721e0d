// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QDateTime>
#include <QString>

#include <optional>

namespace dorvane {

// Replaces the contents of a file at once: whoever reads it, or finds it after a crash or a power
// cut, sees the old contents or the new ones whole. When this returns without an error the new
// contents are on the disk. An existing file keeps its permissions, a new one belongs to the user
// alone (0600). Where `path` is a symbolic link, the file behind it is replaced and the link stays.
// The folder must exist. Answers what went wrong, for the log; the file is then as it was, but for
// an error of the very last step, after which the new contents are in place and may not last.
// Waits for the disk. Any thread.
[[nodiscard]] std::optional<QString> writeFileAtomically(const QString& path,
                                                         QByteArrayView contents);

// Removes what writes that a power cut ended have left beside the file. What at `now` is younger
// than an hour stays, because another process may be writing it. Any thread.
void removeUnfinishedWrites(const QString& path, const QDateTime& now);

// The path behind symbolic links, which need not exist; `path` itself where it is no link.
[[nodiscard]] QString pathBehindLinks(const QString& path);

} // namespace dorvane
