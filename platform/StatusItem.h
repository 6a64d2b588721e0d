// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PanelMenuEntry.h"

#include <QPoint>
#include <QRect>

#include <functional>
#include <vector>

class QImage;
class QMenu;
class QString;

namespace dorvane {

// Our place in the status area: an icon in the panel, or a small floating clock where there is no
// panel. It looks after late, vanishing and restarting panels by itself. Main thread only.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    // Draws the icon as a square of so many pixels a side; must do so until another one is set.
    using DrawIcon = std::function<QImage(int pixels)>;
    // A panel takes of several sizes the one that its own is nearest to. Of an icon that changes
    // all the time it is sent few.
    enum class IconSizes { All, Few };
    // It is told only when the pixels differ from what it shows.
    virtual void setIcon(const DrawIcon& draw, IconSizes sizes) = 0;
    virtual void setToolTip(const QString& text) = 0;
    // Whether the panel is to show the icon even if it hides others.
    virtual void setNeedsAttention(bool needsAttention) = 0;

    // The menu that a panel draws by itself, on its own click or gesture. The panel is told only
    // what differs from the menu before.
    virtual void setPanelMenu(std::vector<PanelMenuEntry> entries) = 0;
    // Called right before a panel opens that menu: the moment to bring its texts up to date.
    virtual void setPanelMenuWillOpen(std::function<void()> willOpen) = 0;

    // Called on a press for which a pop-up of our own is to be opened.
    virtual void setPressed(std::function<void()> pressed) = 0;

    // Opens our own pop-up at the item. Returns at once.
    virtual void popUp(QMenu& menu) = 0;

    enum class Shown { Nowhere, InPanel, Floating };
    [[nodiscard]] virtual Shown whereShown() const = 0;

    // Where the icon is on the screen, in device-independent pixels; empty where the panel does
    // not tell and nobody has clicked yet.
    [[nodiscard]] virtual QRect geometry() const = 0;

    // Where a window of this size belongs: hanging from the icon, or in the corner beside the
    // panel where the icon's place is not known.
    [[nodiscard]] virtual QPoint placeFor(QSize window) const = 0;
};

} // namespace dorvane
