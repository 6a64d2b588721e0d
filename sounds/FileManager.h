// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>

#include <optional>
#include <stop_token>

namespace dorvane {

// File operations of the sound library. Any thread; they wait for the disk.

// Copies one file. The copy appears under its name whole or not at all, and never replaces a file,
// except an empty one: that is what a power cut can leave of a copy. Answers, in words for the
// user, why it was not made: the name is taken, the source is empty or cannot be read, the disk is
// full, or `stop` was requested; this is logged, too. Empty when it was.
QString copyItem(const QString& source, const QString& destination,
                 const std::stop_token& stop = {});

// Whether both files can be read and hold the same bytes.
[[nodiscard]] bool contentsEqual(const QString& path, const QString& otherPath);

} // namespace dorvane
