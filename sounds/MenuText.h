// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// A text of any kind as the text of a menu item, which shows it as it stands: there an ampersand
// would mark a key, and a tab begin the column of shortcuts.
[[nodiscard]] inline QString menuText(QString text) {
    return text.replace(u'&', QStringLiteral("&&")).replace(u'\t', u' ');
}

} // namespace dorvane
