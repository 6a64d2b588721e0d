// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// Makes a folder that only its user may look into, 0700, whoever asks first; one that is there
// already, and that others could look into, is closed to them. If that fails, what is then written
// says why. Any thread.
void makeOwnFolder(const QString& path);

} // namespace dorvane
