// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// What the sound of a file is called wherever it is shown: the file's name without extension, and
// for a recording the text of its reminder, in one line.
[[nodiscard]] QString soundName(const QString& path);

// The name for use within a sentence: the middle of a long one is left out.
[[nodiscard]] QString shortened(const QString& name);

} // namespace dorvane
