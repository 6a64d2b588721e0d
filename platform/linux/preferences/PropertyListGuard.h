// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>

namespace dorvane {

// Whether a property list can be given to libplist. A few bytes can describe a tree that is deeper
// than the stack, or that shares its branches so often that it fills the memory when spelt out;
// libplist bounds neither. True only for lists in the binary or the XML format that are whole, do
// not contain themselves, and stay within what any list of ours could need. Any thread.
[[nodiscard]] bool isSafePropertyList(QByteArrayView data);

// Whether the data is marked as the binary format.
[[nodiscard]] bool isBinaryPropertyList(QByteArrayView data);

} // namespace dorvane
