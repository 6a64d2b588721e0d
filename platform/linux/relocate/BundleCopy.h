// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace dorvane {

// Copies of whole folders. Each answers what went wrong, in words for the log. Any thread; they
// wait for the disk.

// Where a copy grows until it is whole: beside the destination, so that it can be renamed, and
// always under the same name, so that what a power cut has left of one goes with the next.
[[nodiscard]] QString copyInProgress(const QString& destination);

// Copies folders, files and symbolic links, compares the copy, and has it on the disk when this
// returns without an error; otherwise nothing is left of it. The copy can be changed by its owner
// and read by everybody, whatever the source allows. `copy` is removed first when it is there.
[[nodiscard]] std::optional<QString> copyFolder(const QString& source, const QString& copy);

// Gives a copy its name, which must be free, for good.
[[nodiscard]] std::optional<QString> renameFolder(const QString& path, const QString& newPath);

// Removes what both hold alike from the source, and the folders that are empty then.
[[nodiscard]] std::optional<QString> removeWhatIsIn(const QString& copy, const QString& source);

} // namespace dorvane
