// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QDialog>

#include <memory>

class QPushButton;

namespace Ui {
class GraphicalDateWindow;
}

namespace dorvane {

// A sheet with a calendar and a clock to choose a moment on. accepted() tells that one was chosen.
class GraphicalDateWindow final : public QDialog {
    Q_OBJECT

public:
    explicit GraphicalDateWindow(QWidget* parent);
    ~GraphicalDateWindow() override;

    // Opens the sheet over its parent and returns. Nothing before `earliest` can be chosen.
    void run(const QDateTime& moment, const QDateTime& earliest);

    [[nodiscard]] QDate date() const;
    [[nodiscard]] QTime time() const;

private:
    void boundTime();
    void showMoment();

    std::unique_ptr<Ui::GraphicalDateWindow> m_controls;
    QPushButton* m_setButton;
    QDateTime m_earliest;
};

} // namespace dorvane
