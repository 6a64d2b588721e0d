// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RemoteProgram.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

namespace dorvane {

// The running program by its interface on the session bus. Where no bus knows how to start it, it
// is started from where this process came from.
class BusProgram final : public QObject, public RemoteProgram {
    Q_OBJECT

public:
    explicit BusProgram(QDBusConnection bus);

    [[nodiscard]] Answer call(const RemoteMethod& method, const QVariantList& arguments) override;
    [[nodiscard]] Properties properties() override;
    void follow(std::function<bool()> changed) override;

private Q_SLOTS:
    void somethingChanged();
    void look();
    void busWentAway();

private:
    [[nodiscard]] QDBusMessage ask(const QDBusMessage& message) const;
    [[nodiscard]] bool startProgram() const;

    QDBusConnection m_bus;
    std::function<bool()> m_changed;
    bool m_isToLook = false;
};

} // namespace dorvane
