// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <functional>
#include <variant>

namespace dorvane {

struct RemoteMethod;

// The program that runs for this user, seen from another process: what RemoteControl offers, by the
// rows of platform/RemoteMethods.h. Waits for each answer.
class RemoteProgram {
public:
    virtual ~RemoteProgram() = default;

    struct Fault {
        enum class Kind {
            Refused,    // it answered that it will not
            Unreachable // it does not run, or does not answer
        };
        Kind kind = Kind::Unreachable;
        QString reason;    // for a person to read
        QString name = {}; // of what was refused, see docs/bus.md
    };

    // What the method returns; a list of dictionaries as a QVariantList of QVariantMap.
    using Answer = std::variant<QVariantList, Fault>;
    [[nodiscard]] virtual Answer call(const RemoteMethod& method,
                                      const QVariantList& arguments = {}) = 0;

    // Every property by its name.
    using Properties = std::variant<QVariantMap, Fault>;
    [[nodiscard]] virtual Properties properties() = 0;

    // Calls `changed` whenever something may have changed, the program's coming and going included,
    // until it returns false or the bus goes; sleeps in between.
    virtual void follow(std::function<bool()> changed) = 0;
};

} // namespace dorvane
