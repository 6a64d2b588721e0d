// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QComboBox>

#include <functional>

class QMenu;

namespace dorvane {

// A pop-up button that shows the current choice and pulls down a menu to change it. The menu's
// first item stands for the face: it carries the choice as its text, comes first through every
// rebuild of the menu, and is not shown in it.
class PullDownPopUp final : public QComboBox {
    Q_OBJECT

public:
    explicit PullDownPopUp(QWidget* parent = nullptr);

    [[nodiscard]] QMenu& menu() { return *m_menu; }

    // For a menu whose entries are not at hand: brings it up to date and then calls `filled`, at
    // once or later. The menu opens only then, so that it has the height and the place of all that
    // is in it.
    void setFill(std::function<void(std::function<void()> filled)> fill);

    // Shows the text; `isMissing` greys it for something that cannot be found any more.
    void setFace(const QString& text, bool isMissing = false);

    void showPopup() override;

Q_SIGNALS:
    // Right before the menu opens: the time to rebuild it.
    void menuWillOpen();

private:
    void openMenu();

    QMenu* m_menu;
    std::function<void(std::function<void()> filled)> m_fill;
    bool m_isFilling = false;
};

} // namespace dorvane
