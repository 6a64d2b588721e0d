// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMetaType>
#include <QVariant>

namespace dorvane {

// An object of a keyed archive as it stands for itself, outside of the archive's table: a value
// whose references are such objects again.
struct ArchivedObject {
    QVariant value;
    friend bool operator==(const ArchivedObject&, const ArchivedObject&) = default;
};

} // namespace dorvane

Q_DECLARE_METATYPE(dorvane::ArchivedObject)
