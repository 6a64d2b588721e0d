// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QComboBox>

namespace dorvane {

// The field for an alarm's title with the stored titles to pick from. Picking is done in the list
// or with the arrow keys, never by typing: a typed title that happens to be stored must not load
// the stored alarm over what the form says.
class TitleBox final : public QComboBox {
    Q_OBJECT

public:
    explicit TitleBox(QWidget* parent = nullptr);

    [[nodiscard]] QString title() const;
    void setTitle(const QString& title);

    // Replaces the list; the text in the field stays and nothing is selected.
    void setTitles(const QStringList& titles);

    // The stored title that was picked and not typed over since; -1 for none.
    [[nodiscard]] int selectedIndex() const { return m_selected; }
    // Selects an entry of the list, -1 for none. Its title replaces the text; none leaves it.
    void select(int index);

Q_SIGNALS:
    void titlePicked(int index);
    void titleTyped();

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    int m_selected = -1;
};

} // namespace dorvane
