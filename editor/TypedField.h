// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/TypedText.h"

#include <QAbstractSpinBox>

namespace dorvane {

// A field for a value that is typed as people write it, over a part of the shown one or over all of
// it; a click selects a part, and the arrow keys and buttons change the part they are at. What
// cannot be read stays in the field, looks it, and is never taken for another value.
//
// The value can have an earliest one. What is typed below it is brought up to it when the field is
// left, with a remark why, but comes back when the bound goes.
class TypedField : public QAbstractSpinBox {
    Q_OBJECT

public:
    [[nodiscard]] bool isReadable() const { return m_isReadable; }

    // Why the field does not show what was typed, or cannot use it; empty when there is nothing to
    // remark.
    [[nodiscard]] const QString& remark() const { return m_remark; }

    // Whether what was typed has been brought up to the bound since the last call: nothing should
    // be decided on a value that the user may not have seen yet.
    [[nodiscard]] bool takeUnseenJump();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
    [[nodiscard]] QValidator::State validate(QString& text, int& cursor) const override;
    void stepBy(int steps) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    // By the user or by a bound, not by a setter; also when isReadable() changes.
    void chosenChanged();
    void remarkChanged();

protected:
    explicit TypedField(QWidget* parent);

    enum class Reading { Read, Beginning, Unreadable };

    // Takes what was typed for the wanted value, if it can be read.
    virtual Reading read(const QString& text) = 0;
    // Takes the wanted value, brought up to the bound, for the shown one, and returns its text.
    virtual QString show() = 0;
    [[nodiscard]] virtual QString shown() const = 0;
    [[nodiscard]] virtual QString widestText() const = 0;
    // Why another value than the wanted one is shown; empty when it is shown.
    [[nodiscard]] virtual QString jumpRemark() const = 0;
    [[nodiscard]] virtual QString unreadableRemark() const = 0;
    [[nodiscard]] virtual TypedText typed(const TypedText& field, QChar character) const = 0;
    // Changes the wanted value in the part of the shown text.
    virtual void step(int steps, TextPart part) = 0;

    [[nodiscard]] bool isBeingTyped() const { return m_isBeingTyped; }
    // To be called after the wanted value was set by other means than typing.
    void settleOnWanted();
    // To be called after the bound has changed.
    void boundChanged();

    [[nodiscard]] StepEnabled stepEnabled() const override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void type(QChar character);
    void readText();
    void settle();
    void setRemark(const QString& remark);
    void showReadable(bool isReadable);
    void select(qsizetype position);

    bool m_isReadable = true;
    bool m_isBeingTyped = false;
    bool m_hasJumped = false;
    QString m_remark;
    QString m_description; // the accessible one, which a remark takes the place of
};

} // namespace dorvane
