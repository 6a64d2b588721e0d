// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include <optional>

namespace dorvane {

class Bundle;

// The schemes of the program's own addresses, as its information file lists them.
[[nodiscard]] QStringList ownSchemes(const Bundle& bundle);

// What an own address asks for: "create-alarm" of "dorvane:create-alarm", in small letters, however
// many slashes stand around it. Nothing for a foreign address and for a text that is none.
[[nodiscard]] std::optional<QString> verbOf(const QString& address, const QStringList& schemes);

} // namespace dorvane
