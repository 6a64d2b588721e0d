// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QVariantMap>

#include <functional>

namespace dorvane {

struct LaunchRequest;

// What other programs call on the session bus: the interface that desktop files with
// DBusActivatable=true promise, by the names of its definition.
class ApplicationObject final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    void setRequested(std::function<void(const LaunchRequest&)> requested);

public Q_SLOTS:
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);
    void ActivateAction(const QString& name, const QVariantList& parameters,
                        const QVariantMap& platformData);

private:
    void pass(const LaunchRequest& request);

    std::function<void(const LaunchRequest&)> m_requested;
};

} // namespace dorvane
