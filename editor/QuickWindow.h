// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/WrittenAlarm.h"

#include <QDialog>

#include <functional>

class QLineEdit;
class QPushButton;

namespace dorvane {

class DescriptionLabel;
class RunLoop;

// Reads a whole alarm from one line, and says below it what was read. Main thread only.
class QuickWindow final : public QDialog {
    Q_OBJECT

public:
    // What it works with; the loop must outlive it.
    struct Surroundings {
        RunLoop& runLoop;
        std::function<RingDefaults()> ringDefaults;
        std::function<void(const AlarmPtr& alarm)> set; // told of the alarm that was set
    };
    explicit QuickWindow(Surroundings surroundings);

    // Shows it in front; what was typed earlier is gone unless it is open still.
    void showForTyping();

    void accept() override;

private:
    [[nodiscard]] AlarmPtr alarm() const;
    void describe();

    const Surroundings m_surroundings;
    QLineEdit* const m_field;
    DescriptionLabel* const m_sentence;
    QPushButton* m_set = nullptr;
};

} // namespace dorvane
