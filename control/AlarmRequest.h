// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmForm.h"
#include "platform/RemoteControl.h"

#include <optional>
#include <variant>

namespace dorvane {

// An alarm as another program describes it. What the description leaves out is as in the editor's
// form of a new alarm; the sound and the voice are still names that have to be found.
struct AlarmRequest {
    AlarmForm form;
    std::optional<QString> sound;    // a name or a full path; empty for silence, nothing if unsaid
    QString voice;                   // empty for none
    bool isStored = false;           // a copy goes to the library
    std::chrono::seconds counted{0}; // of a relative alarm, how long before it was set
    bool isTimeSaid = false;         // of an edited one: it counts from now, or begins on a date
};

// Reads a description (see docs/bus.md) at the moment `now`: what is unknown, of another type, past
// or too long is refused, and the refusal says which key it is about.
[[nodiscard]] std::variant<AlarmRequest, Refusal> readRequest(const QVariantMap& description,
                                                              const QDateTime& now);

// The same of changes to an alarm that the form was filled from: what they leave out is as it was,
// with no sound or voice to be found. An alarm of one kind becomes one of another by its time.
[[nodiscard]] std::variant<AlarmRequest, Refusal>
readChanges(const QVariantMap& changes, const AlarmForm& form, const QDateTime& now);

} // namespace dorvane
