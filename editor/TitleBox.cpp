// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/TitleBox.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QWheelEvent>

#include <utility>

namespace dorvane {

TitleBox::TitleBox(QWidget* parent) : QComboBox(parent) {
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(20);
    view()->setTextElideMode(Qt::ElideRight);
    // The field inside is what gets the focus, and what a screen reader asks.
    lineEdit()->setAccessibleName(QStringLiteral("Title"));
    // Without this the box picks the entry that equals the typed text.
    disconnect(lineEdit(), &QLineEdit::editingFinished, this, nullptr);
    connect(lineEdit(), &QLineEdit::textEdited, this, [this] {
        m_selected = -1;
        Q_EMIT titleTyped();
    });
    connect(this, &QComboBox::activated, this, [this](int index) {
        m_selected = index;
        Q_EMIT titlePicked(index);
    });
}

QString TitleBox::title() const {
    return lineEdit()->text();
}

// From its beginning: of a long title the first words tell most.
void TitleBox::setTitle(const QString& title) {
    lineEdit()->setText(title);
    lineEdit()->setCursorPosition(0);
}

void TitleBox::setTitles(const QStringList& titles) {
    m_selected = -1;
    if (view()->isVisible()) {
        m_titlesToCome = titles;
        return;
    }
    // The box would take every change of its model for one of the text.
    const QSignalBlocker quiet(model());
    model()->removeRows(0, model()->rowCount());
    model()->insertRows(0, int(titles.size()));
    for (int row = 0; row < titles.size(); ++row)
        model()->setData(model()->index(row, 0), titles[row]);
    view()->reset();
}

void TitleBox::hidePopup() {
    QComboBox::hidePopup();
    if (m_titlesToCome)
        setTitles(*std::exchange(m_titlesToCome, std::nullopt));
}

bool TitleBox::select(const QString& title) {
    m_selected = findText(title, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (m_selected < 0)
        return false;
    const bool isShown = this->title() == title;
    setCurrentIndex(m_selected);
    if (!isShown)
        setTitle(title);
    return true;
}

// A turn of the wheel while the pointer passes would load another alarm.
void TitleBox::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

} // namespace dorvane
