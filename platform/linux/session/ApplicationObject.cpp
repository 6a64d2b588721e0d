// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/ApplicationObject.h"

#include "platform/linux/session/LaunchRequest.h"

namespace dorvane {

void ApplicationObject::setRequested(std::function<void(const LaunchRequest&)> requested) {
    m_requested = std::move(requested);
}

void ApplicationObject::Activate(const QVariantMap& /*platformData*/) {
    pass({});
}

void ApplicationObject::Open(const QStringList& uris, const QVariantMap& /*platformData*/) {
    pass({QString(), uris});
}

void ApplicationObject::ActivateAction(const QString& name, const QVariantList& /*parameters*/,
                                       const QVariantMap& /*platformData*/) {
    pass({name, {}});
}

void ApplicationObject::pass(const LaunchRequest& request) {
    if (m_requested)
        m_requested(request);
}

} // namespace dorvane
