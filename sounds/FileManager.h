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

// What became of a file that was to be kept in a folder.
struct KeptFile {
    QString path;    // where its contents are now
    QString problem; // why they are not, in words for the user; empty when they are
};

// Copies a file into a folder as copyItem() does, under its own name without the dots that would
// hide it. Where a file of that name holds the same, that one is the answer; where it holds
// something else, the copy gets a number.
[[nodiscard]] KeptFile keepCopy(const QString& source, const QString& folder,
                                const std::stop_token& stop = {});

// The same, but where the file system can do that the file itself gets the further name.
[[nodiscard]] KeptFile keepFile(const QString& source, const QString& folder,
                                const std::stop_token& stop = {});

// Has the names in a folder last through a power cut. A failure is logged.
void syncFolder(const QString& folder);

// Whether both files can be read and hold the same bytes.
[[nodiscard]] bool contentsEqual(const QString& path, const QString& otherPath);

} // namespace dorvane
