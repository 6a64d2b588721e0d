// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmForm.h"

namespace dorvane {

class UserDefaults;

// What the user wants of rings, for all alarms and for those that are made from now on. What was
// never chosen, or what no choice has led to, is as it always was. Main thread only.
class RingPreferences {
public:
    // Must outlive this.
    explicit RingPreferences(UserDefaults& defaults) : m_defaults(defaults) {}

    // Minutes that new alarms are snoozed for, one of snoozeLengths.
    [[nodiscard]] qint64 snooze() const;
    void setSnooze(qint64 minutes);

    // The sound of new alarms, a full path; empty for Ping.
    [[nodiscard]] QString soundPath() const;
    void setSoundPath(const QString& path);

    // How loud all rings are, in hundredths. Nobody is to miss one: a fifth is the least.
    static constexpr int leastVolume = 20;
    [[nodiscard]] int volume() const;
    void setVolume(int hundredths);

private:
    void set(const QString& key, const QVariant& value);

    UserDefaults& m_defaults;
};

} // namespace dorvane
