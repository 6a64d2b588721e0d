// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QComboBox>
#include <QLineEdit>

namespace dorvane {

// A combo box in which an entry can be chosen by typing its name, and that says when it is about to
// show its list, so that the list can be read afresh. What typing chooses is up to the list.
class ReminderComboBox final : public QComboBox {
    Q_OBJECT

public:
    explicit ReminderComboBox(QWidget* parent = nullptr) : QComboBox(parent) {
        setEditable(true);
        setInsertPolicy(QComboBox::NoInsert);
        setCompleter(nullptr);
        lineEdit()->setPlaceholderText(QStringLiteral("Choose a recording"));
    }

    void showPopup() override {
        Q_EMIT comboBoxWillPopUp();
        QComboBox::showPopup();
    }

Q_SIGNALS:
    void comboBoxWillPopUp();
};

} // namespace dorvane
