// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMenu>
#include <QString>

namespace dorvane {

// Lets a person find an entry of a long menu by typing how its data, a name, begins. A pause starts
// anew. Belongs to the menu.
class MenuTypeAhead final : public QObject {
public:
    explicit MenuTypeAhead(QMenu& menu);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QMenu& m_menu;
    QString m_typed;
    quint64 m_lastKey = 0; // milliseconds, as the events count them
};

} // namespace dorvane
