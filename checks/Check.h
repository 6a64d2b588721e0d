// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/DesktopProbe.h"
#include "platform/Sound.h"
#include "platform/SoundOutput.h"
#include "platform/StatusItem.h"
#include "platform/WakeAlarm.h"

#include <QString>

#include <optional>
#include <vector>

namespace dorvane {

enum class CheckStatus { Fine, Warning, Failure };

// One answer to "will it ring?".
struct Check {
    QString name; // for programs: letters and dashes, never translated
    CheckStatus status = CheckStatus::Fine;
    QString line;   // for a person
    QString advice; // what to do; empty where there is nothing to do
    friend bool operator==(const Check&, const Check&) = default;
};

// "fine", "warning", "failure".
[[nodiscard]] QString nameOf(CheckStatus status);

// The worst of them; fine for none.
[[nodiscard]] CheckStatus worstOf(const std::vector<Check>& checks);

// What was found out of a running alarm.
struct AlarmFacts {
    QString title;
    QString soundPath; // empty where it plays none
    SoundFault sound = SoundFault::None;
    bool isReadInTime = true;
    bool isSilent = false;
    QString voice; // empty where it speaks none
    bool hasVoice = true;
};

// What the checks go by.
struct RingingFacts {
    // Where the icon is; nothing when no instance of the program runs.
    std::optional<StatusItem::Shown> icon;

    // Nothing when that was not told in time.
    std::optional<SoundOutputState> output;
    std::vector<AlarmFacts> alarms;
    bool startsAtLogin = false;
    std::optional<DesktopAbilities> desktop;
    WakeAlarm::Ability wakes = WakeAlarm::Ability::NoClock;
    bool isToWake = false;
    std::optional<SoundProof> proof; // where it was asked for
};

// All checks, in the order in which a person wants to know.
[[nodiscard]] std::vector<Check> checksOf(const RingingFacts& facts);

} // namespace dorvane
