// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sounds/AudioStorageController.h"

class QLabel;
class QWidget;

namespace dorvane {

// Tells in a line of a window what became of files that were to be added; copying them may take
// longer than the window lives. Main thread only.
[[nodiscard]] AudioStorageController::Report reportIn(QLabel& hint);

// Lets the user pick sound files, in a dialog of the window's, and takes them into the library.
void chooseFilesToAdd(QWidget& window, AudioStorageController& library, QLabel& hint);

} // namespace dorvane
