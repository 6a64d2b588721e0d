// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SleepInhibitor.h"

#include <QDBusUnixFileDescriptor>
#include <QObject>

namespace dorvane {

// An inhibitor of idle sleep, held at logind on the system bus. It ends with the process at the
// latest: it is an open file.
class LogindSleepInhibitor final : public QObject, public SleepInhibitor {
    Q_OBJECT

public:
    void setHeld(bool isHeld) override;

private:
    void take();
    void complain(const QString& reason);

    bool m_isWanted = false;
    bool m_isAsking = false; // one call at a time
    bool m_hasComplained = false;
    QDBusUnixFileDescriptor m_held;
};

} // namespace dorvane
