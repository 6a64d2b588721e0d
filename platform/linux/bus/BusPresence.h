// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/bus/ServedBus.h"
#include "platform/RunLoop.h"

#include <QByteArray>

#include <functional>

namespace dorvane {

// Asks the bus whether somebody is still on it under this unique name: who gave up waiting for an
// answer has mostly gone. Calls back later and once, from the event loop, with what was so within
// the second before; or never, when the connection is destroyed meanwhile. Without a bus, or
// without an answer of it, nobody is there. Bus and loop must outlive the question. Main thread
// only.
void askWhetherOnBus(ServedBus& bus, RunLoop& runLoop, const QByteArray& name,
                     std::function<void(bool isThere)> then);

} // namespace dorvane
