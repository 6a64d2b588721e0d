// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Bundle.h"

namespace dorvane {

class PropertyListFormat;

// The bundle of the running program: the folder that its file lies in. Any thread.
[[nodiscard]] Bundle mainBundle(const PropertyListFormat& format);

// The bundle at `path`. Where its information file is missing or damaged the dictionary is empty,
// and the log says so: the program does without it. Any thread.
[[nodiscard]] Bundle bundleWithPath(const QString& path, const PropertyListFormat& format);

} // namespace dorvane
