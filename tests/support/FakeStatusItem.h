// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/StatusItem.h"

#include <QImage>
#include <QMenu>

namespace dorvane::testing {

// A place in the status area that remembers what it was given. Its pop-up opens at 100, 100.
class FakeStatusItem final : public StatusItem {
public:
    void setIcon(const DrawIcon& draw, IconSizes sizes) override {
        m_shown = draw(22);
        iconSizes = sizes;
        ++iconsSent;
    }
    void setToolTip(const QString& text) override { toolTips << text; }
    void setNeedsAttention(bool needs) override { needsAttention = needs; }
    void setPanelMenu(std::vector<PanelMenuEntry> entries) override {
        panelMenu = std::move(entries);
    }
    void setPanelMenuWillOpen(std::function<void()> willOpen) override {
        panelMenuWillOpen = std::move(willOpen);
    }
    void setPressed(std::function<void()> pressed) override { m_pressed = std::move(pressed); }
    void popUp(QMenu& menu) override { menu.popup(QPoint(100, 100)); }
    [[nodiscard]] Shown whereShown() const override { return Shown::InPanel; }
    [[nodiscard]] QRect geometry() const override { return {900, 0, 22, 22}; }
    [[nodiscard]] QPoint placeFor(QSize window) const override {
        return {922 - window.width(), 22};
    }

    // What a panel of ordinary density shows.
    [[nodiscard]] QImage shown() const { return m_shown; }
    void press() const { m_pressed(); }

    int iconsSent = 0;
    IconSizes iconSizes = IconSizes::All;
    bool needsAttention = false;
    QStringList toolTips;
    std::vector<PanelMenuEntry> panelMenu;
    std::function<void()> panelMenuWillOpen;

private:
    QImage m_shown;
    std::function<void()> m_pressed;
};

} // namespace dorvane::testing
