// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/TypedField.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QStyleOptionSpinBox>

#include <utility>

namespace dorvane {

namespace {

// Stands out from the field's own text on light and dark ground.
QColor warningColor(const QPalette& palette) {
    return palette.color(QPalette::Base).lightnessF() > 0.5F ? QColor(0xb0, 0x00, 0x20)
                                                             : QColor(0xff, 0x8a, 0x80);
}

} // namespace

TypedField::TypedField(QWidget* parent) : QAbstractSpinBox(parent) {
    setKeyboardTracking(false);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    lineEdit()->installEventFilter(this);
    connect(lineEdit(), &QLineEdit::textEdited, this, &TypedField::readText);
    connect(this, &QAbstractSpinBox::editingFinished, this, &TypedField::settle);
}

bool TypedField::takeUnseenJump() {
    settle();
    return std::exchange(m_hasJumped, false);
}

QSize TypedField::sizeHint() const {
    ensurePolished();
    const QString widest = widestText() + QLatin1Char(' ');
    const QSize text(fontMetrics().horizontalAdvance(widest) + 2, lineEdit()->sizeHint().height());
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    return style()->sizeFromContents(QStyle::CT_SpinBox, &option, text, this);
}

QValidator::State TypedField::validate(QString&, int&) const {
    return QValidator::Acceptable;
}

QAbstractSpinBox::StepEnabled TypedField::stepEnabled() const {
    return StepUpEnabled | StepDownEnabled;
}

void TypedField::stepBy(int steps) {
    const QLineEdit& edit = *lineEdit();
    const qsizetype position =
        edit.hasSelectedText() ? edit.selectionStart() : edit.cursorPosition();
    const QString before = shown();
    const TextPart part = partAt(before, position);
    step(steps, part);
    select(edit.text().size() - (before.size() - part.start)); // what is before may grow or shrink
    Q_EMIT chosenChanged();
}

// A click that selects nothing itself selects the part that it points at.
bool TypedField::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease && !m_isBeingTyped &&
        !lineEdit()->hasSelectedText())
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (!m_isBeingTyped && !lineEdit()->hasSelectedText())
                    select(lineEdit()->cursorPosition());
            },
            Qt::QueuedConnection);
    return QAbstractSpinBox::eventFilter(watched, event);
}

void TypedField::keyPressEvent(QKeyEvent* event) {
    const QString text = event->text();
    constexpr Qt::KeyboardModifiers commands =
        Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (text.size() == 1 && text[0].isPrint() && !(event->modifiers() & commands))
        return type(text[0]);
    QAbstractSpinBox::keyPressEvent(event);
}

// A turn of the wheel while the pointer passes is meant for the window.
void TypedField::wheelEvent(QWheelEvent* event) {
    if (hasFocus())
        QAbstractSpinBox::wheelEvent(event);
    else
        event->ignore();
}

void TypedField::type(QChar character) {
    QLineEdit& edit = *lineEdit();
    TextPart selection{.start = edit.cursorPosition()};
    if (edit.hasSelectedText())
        selection = {.start = edit.selectionStart(), .length = edit.selectionLength()};
    const TypedText result = typed({edit.text(), selection}, character);
    edit.selectAll();
    edit.insert(result.text); // so that it can be undone
    edit.setSelection(int(result.selection.start), int(result.selection.length));
    if (result.selection.length == 0)
        edit.setCursorPosition(int(result.selection.start));
}

void TypedField::readText() {
    const Reading reading = read(lineEdit()->text());
    m_isBeingTyped = true;
    m_hasJumped = false;
    m_isReadable = reading == Reading::Read;
    const bool isHopeless = reading == Reading::Unreadable;
    showReadable(!isHopeless);
    setRemark(isHopeless ? unreadableRemark() : QString());
    Q_EMIT chosenChanged();
}

void TypedField::settleOnWanted() {
    m_isReadable = true;
    m_isBeingTyped = m_hasJumped = false;
    settle();
}

void TypedField::boundChanged() {
    if (!m_isBeingTyped)
        settle();
    Q_EMIT chosenChanged();
}

// Shows the value that counts; the wanted one is kept.
void TypedField::settle() {
    showReadable(m_isReadable);
    if (!m_isReadable)
        return setRemark(unreadableRemark());
    if (const QString text = show(); text != lineEdit()->text())
        lineEdit()->setText(text);
    const QString remark = jumpRemark();
    m_hasJumped = !remark.isEmpty() && (m_hasJumped || m_isBeingTyped);
    m_isBeingTyped = false;
    setRemark(remark);
}

void TypedField::setRemark(const QString& remark) {
    if (m_remark == remark)
        return;
    if (m_remark.isEmpty())
        m_description = accessibleDescription();
    m_remark = remark;
    setAccessibleDescription(remark.isEmpty() ? m_description : remark);
    Q_EMIT remarkChanged();
}

void TypedField::showReadable(bool isReadable) {
    QPalette colors; // those of the form
    if (!isReadable)
        colors.setColor(QPalette::Text, warningColor(palette()));
    lineEdit()->setPalette(colors);
}

void TypedField::select(qsizetype position) {
    const TextPart part = partAt(lineEdit()->text(), position);
    lineEdit()->setSelection(int(part.start), int(part.length));
}

} // namespace dorvane
