// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Relocator.h"

namespace dorvane {

// Copies a bundle with the rights of root, as Relocator says: beside the destination, checked, then
// renamed; what was at the destination goes last, and comes back when the copy cannot take its
// place. The copy is root's. This process reads the source, and root takes what it hands over.
// Waits for the person whom pkexec, given by its full path, asks, and for the disk. Any thread.
[[nodiscard]] Relocator::Authorised copyAsRoot(const QString& source, const QString& destination,
                                               const QString& pkexec);

} // namespace dorvane
