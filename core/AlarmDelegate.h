// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

namespace dorvane {

class Alarm;

// Who is told when an alarm falls due.
class AlarmDelegate {
public:
    virtual ~AlarmDelegate() = default;

    // The alarm is due and not yet marked as triggered; it reports again every second until it is.
    // Must not add alarms to the clock or take any from it before it returns.
    virtual void alarmTriggered(const std::shared_ptr<Alarm>& alarm) = 0;
};

} // namespace dorvane
