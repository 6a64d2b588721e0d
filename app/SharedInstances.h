// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace dorvane {

class ActiveAlarms;
class SoundRepeat;
class StoredAlarms;
struct Desktop;

// The process-wide instances that are not members of their own class; see SharedInstances.cpp.
// For app/ only: everything else is given what it needs.
[[nodiscard]] Desktop& sharedDesktop();
[[nodiscard]] ActiveAlarms& sharedActiveAlarms();
[[nodiscard]] StoredAlarms& sharedStoredAlarms();
[[nodiscard]] SoundRepeat& sharedSoundRepeat();

} // namespace dorvane
