// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/IntervalField.h"

#include "core/IntervalRule.h"

#include <QFocusEvent>
#include <QValidator>

namespace dorvane {

namespace {

class IntervalValidator final : public QValidator {
public:
    using QValidator::QValidator;

    State validate(QString& text, int& /*cursor*/) const override {
        if (isValidInterval(text))
            return Acceptable;
        return canBecomeInterval(text) ? Intermediate : Invalid;
    }
};

bool isLeftByUser(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::MouseFocusReason || reason == Qt::ShortcutFocusReason;
}

} // namespace

IntervalField::IntervalField(QWidget* parent) : QLineEdit(parent) {
    setValidator(new IntervalValidator(this));
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize IntervalField::sizeHint() const {
    constexpr int digits = 9;
    return {fontMetrics().horizontalAdvance(QString(digits, QLatin1Char('0'))),
            QLineEdit::sizeHint().height()};
}

// The focus is taken back in the next turn of the loop, when whatever was clicked has had its
// click: choosing another kind of alarm disables the field and ends the matter.
void IntervalField::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (hasAcceptableInput() || !isLeftByUser(event->reason()))
        return;
    const auto stay = [this] {
        if (isEnabled() && isVisible() && !hasAcceptableInput()) {
            setFocus(Qt::OtherFocusReason);
            selectAll();
        }
    };
    QMetaObject::invokeMethod(this, stay, Qt::QueuedConnection);
}

} // namespace dorvane
