// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAction>
#include <QFont>
#include <QString>

#include <functional>

namespace dorvane {

class RunLoop;

// The type of a title in two sizes, in device-independent pixels. For someone whose menus have
// larger letters than the title's all of it grows in proportion.
struct MenuTitleFonts {
    QFont title;           // 14
    QFont subtitle;        // 10, to be slanted when it is drawn
    double widest = 125.0; // of a subtitle
    // From the font of menus.
    [[nodiscard]] static MenuTitleFonts of(const QFont& menuFont);
};

// A subtitle as it stands behind a title: a blank before it, and cut to about `widest`. `width`
// measures a text in the subtitle's font.
[[nodiscard]] QString subtitlePart(const QString& subtitle, double widest,
                                   const std::function<double(const QString&)>& width);

// A menu item with a title in two sizes of type, and a command. Its text(), which screen readers
// and panels use, is the menu's to set.
class MenuItemExtras final : public QAction {
public:
    // The run loop must outlive the item.
    MenuItemExtras(RunLoop& runLoop, QObject* parent);

    // Without a subtitle the title is an ordinary one. Both are shown in one line as they stand: an
    // ampersand is an ampersand.
    void setTitle(const QString& title, const QString& subtitle, const MenuTitleFonts& fonts);
    [[nodiscard]] const QString& title() const { return m_title; }
    // Complete, for who cannot see the menu.
    [[nodiscard]] QString spokenText() const;
    // As cut; begins with a blank, or is empty.
    [[nodiscard]] const QString& subtitlePart() const { return m_subtitlePart; }

    // What the item does, also when it has a submenu; an empty function for nothing. Called from
    // the event loop, so that it may rebuild or delete the menu.
    void setCommand(std::function<void()> command) { m_command = std::move(command); }
    [[nodiscard]] bool hasCommand() const { return m_command != nullptr; }

private:
    std::function<void()> m_command;
    QString m_title;
    QString m_subtitle;
    QString m_subtitlePart;
};

} // namespace dorvane
