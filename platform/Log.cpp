// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Log.h"

namespace dorvane {

Q_LOGGING_CATEGORY(logApp, "dorvane.app", QtInfoMsg)
Q_LOGGING_CATEGORY(logCore, "dorvane.core", QtInfoMsg)
Q_LOGGING_CATEGORY(logSounds, "dorvane.sounds", QtInfoMsg)
Q_LOGGING_CATEGORY(logFiring, "dorvane.firing", QtInfoMsg)
Q_LOGGING_CATEGORY(logEditor, "dorvane.editor", QtInfoMsg)
Q_LOGGING_CATEGORY(logBreaks, "dorvane.breaks", QtInfoMsg)
Q_LOGGING_CATEGORY(logMenubar, "dorvane.menubar", QtInfoMsg)
Q_LOGGING_CATEGORY(logPlatform, "dorvane.platform", QtInfoMsg)
Q_LOGGING_CATEGORY(logRelocate, "dorvane.relocate", QtInfoMsg)

} // namespace dorvane
