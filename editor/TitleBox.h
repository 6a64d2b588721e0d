// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QComboBox>

#include <optional>

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

    // Replaces the list, or will when it is closed: it must not move under the pointer. The text in
    // the field stays as it is, with its cursor, its selection and what can be undone; nothing is
    // selected.
    void setTitles(const QStringList& titles);

    void hidePopup() override;

    // The stored title that was picked and not typed over since; -1 for none.
    [[nodiscard]] int selectedIndex() const { return m_selected; }
    // Selects the entry of a title, whose text replaces that in the field; false, and none is
    // selected, where the title is not in the list.
    bool select(const QString& title);
    void selectNone() { m_selected = -1; }

Q_SIGNALS:
    void titlePicked(int index);
    void titleTyped();

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    int m_selected = -1;
    std::optional<QStringList> m_titlesToCome;
};

} // namespace dorvane
