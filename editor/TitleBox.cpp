// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/TitleBox.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QWheelEvent>

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
    const QString kept = title();
    clear();
    addItems(titles);
    setCurrentIndex(-1);
    m_selected = -1;
    setTitle(kept);
}

void TitleBox::select(int index) {
    const QString kept = title();
    setCurrentIndex(index);
    m_selected = index;
    setTitle(index < 0 ? kept : itemText(index));
}

// A turn of the wheel while the pointer passes would load another alarm.
void TitleBox::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

} // namespace dorvane
