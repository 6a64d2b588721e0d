// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QComboBox>

namespace dorvane {

// A combo box that says when it is about to show its list, so that the list can be read afresh.
class ReminderComboBox final : public QComboBox {
    Q_OBJECT

public:
    using QComboBox::QComboBox;

    void showPopup() override {
        Q_EMIT comboBoxWillPopUp();
        QComboBox::showPopup();
    }

Q_SIGNALS:
    void comboBoxWillPopUp();
};

} // namespace dorvane
