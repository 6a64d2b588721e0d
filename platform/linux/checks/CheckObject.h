// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/checks/CheckRow.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>

#include <functional>

namespace dorvane {

// The checks of the running instance on the session bus: the object /com/brackenfold/Dorvane/Checks
// with the interface com.brackenfold.Dorvane1.Checks. Main thread only.
class CheckObject final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.brackenfold.Dorvane1.Checks")
    Q_CLASSINFO("D-Bus Introspection", "<interface name=\"com.brackenfold.Dorvane1.Checks\">"
                                       "<method name=\"Run\">"
                                       "<arg name=\"playTestSound\" type=\"b\" direction=\"in\"/>"
                                       "<arg name=\"checks\" type=\"a(ssss)\" direction=\"out\"/>"
                                       "</method></interface>")

public:
    // `run` answers once, later.
    using Runner = std::function<void(bool playTestSound, std::function<void(CheckRows)> done)>;

    CheckObject(QDBusConnection bus, Runner run);

public Q_SLOTS:
    dorvane::CheckRows Run(bool playTestSound);

private:
    const Runner m_run;
};

// What somebody who asks gets.
struct CheckAnswer {
    enum class From { Instance, Nobody, Silence };
    From from = From::Nobody; // nobody runs, or somebody who does not answer
    CheckRows rows;
    QString error; // of silence
};

// Waits for the answer of the running instance, for half a minute at most.
[[nodiscard]] CheckAnswer askInstance(const QDBusConnection& bus, bool playTestSound);

} // namespace dorvane
