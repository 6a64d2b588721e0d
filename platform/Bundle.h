// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>

namespace dorvane {

// The folder that holds the program, its information file and its resources. A plain value; it can
// stand anywhere and be moved as a whole.
class Bundle {
public:
    Bundle(QString path, QVariantMap infoDictionary);

    [[nodiscard]] const QString& bundlePath() const { return m_path; }
    [[nodiscard]] const QVariantMap& infoDictionary() const { return m_infoDictionary; }

    // The string under `key` of the information file, empty when there is none.
    [[nodiscard]] QString infoString(const QString& key) const;

    // The full path of a file or folder below Resources; it need not exist.
    [[nodiscard]] QString resourcePath(const QString& relativePath) const;

    // The full path of a loadable module.
    [[nodiscard]] QString modulePath(const QString& name) const;

private:
    QString m_path;
    QVariantMap m_infoDictionary;
};

} // namespace dorvane
