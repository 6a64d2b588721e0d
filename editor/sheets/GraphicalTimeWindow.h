// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class GraphicalTimeWindow;
}

namespace dorvane {

// A sheet with a clock to choose a time of day on. accepted() tells that one was chosen.
class GraphicalTimeWindow final : public QDialog {
    Q_OBJECT

public:
    explicit GraphicalTimeWindow(QWidget* parent);
    ~GraphicalTimeWindow() override;

    // Opens the sheet over its parent and returns.
    void run(QTime time);

    [[nodiscard]] QTime time() const;

private:
    std::unique_ptr<Ui::GraphicalTimeWindow> m_controls;
};

} // namespace dorvane
