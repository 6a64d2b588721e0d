// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QObject>

#include <functional>

namespace dorvane {

// Asks the instance that has the program's name on the bus for something that its main thread has
// to answer, and tells whether it did within two seconds. Nobody is started for it. `answered` is
// called once, while `context` lives; not from inside the call.
void askForLife(const QDBusConnection& session, QObject& context,
                std::function<void(bool isAlive)> answered);

} // namespace dorvane
