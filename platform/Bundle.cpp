// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Bundle.h"

namespace dorvane {

Bundle::Bundle(QString path, QVariantMap infoDictionary)
    : m_path(std::move(path)), m_infoDictionary(std::move(infoDictionary)) {}

QString Bundle::infoString(const QString& key) const {
    return m_infoDictionary.value(key).toString();
}

QString Bundle::resourcePath(const QString& relativePath) const {
    return m_path + QStringLiteral("/Resources/") + relativePath;
}

QString Bundle::modulePath(const QString& name) const {
    return m_path + QStringLiteral("/modules/") + name;
}

} // namespace dorvane
