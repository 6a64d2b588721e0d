// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

namespace dorvane {

class Alarm;

// Who is told when an alarm falls due.
class AlarmDelegate {
public:
    virtual ~AlarmDelegate() = default;

    // The alarm falls due within the next eleven seconds or is overdue, and nothing has been told
    // of this due time yet: what its ring needs can be made ready. It may still be changed, put off
    // or removed. May be called right before alarmTriggered(), and has the same restriction.
    virtual void alarmIsNear(const std::shared_ptr<Alarm>& alarm) { static_cast<void>(alarm); }

    // The alarm is due and not yet marked as triggered; it reports again every second until it is.
    // Must not add alarms to the clock or take any from it before it returns.
    virtual void alarmTriggered(const std::shared_ptr<Alarm>& alarm) = 0;
};

} // namespace dorvane
