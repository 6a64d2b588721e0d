// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLoggingCategory>

namespace dorvane {

// Logging goes to stderr under dorvane.<folder>, which the session's journal keeps.
Q_DECLARE_LOGGING_CATEGORY(logApp)
Q_DECLARE_LOGGING_CATEGORY(logCore)
Q_DECLARE_LOGGING_CATEGORY(logSounds)
Q_DECLARE_LOGGING_CATEGORY(logFiring)
Q_DECLARE_LOGGING_CATEGORY(logEditor)
Q_DECLARE_LOGGING_CATEGORY(logBreaks)
Q_DECLARE_LOGGING_CATEGORY(logMenubar)
Q_DECLARE_LOGGING_CATEGORY(logPlatform)
Q_DECLARE_LOGGING_CATEGORY(logRelocate)

} // namespace dorvane
