// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/bus/BusMessage.h"
#include "platform/RemoteControl.h"

#include <QVariantMap>

#include <variant>

namespace dorvane {

// What calls say of alarms, and what is said of them: the arguments of docs/bus.md as values. Calls
// come from anybody: what is longer than any alarm is refused before a copy of it is made.

// The next argument, an s. The message's signature has been checked.
[[nodiscard]] std::variant<QString, Refusal> readText(sd_bus_message* call);

// The next argument, a u.
[[nodiscard]] std::variant<quint32, Refusal> readCount(sd_bus_message* call);
[[nodiscard]] std::variant<qint64, Refusal> readMoment(sd_bus_message* call);

// The next argument, an a{sv}. A value of a type that no key has is null.
[[nodiscard]] std::variant<QVariantMap, Refusal> readDescription(sd_bus_message* call);

// Writes a{sv}; of the types that reports have.
void writeReport(BusWriter& message, const QVariantMap& report);

} // namespace dorvane
