// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "journal/MissedAlarm.h"

#include <QDialog>

#include <functional>
#include <memory>
#include <vector>

namespace Ui {
class MissedAlarmsWindow;
}

namespace dorvane {

class RunLoop;

// The window at the start that offers what was running and is not any more, and tells of a crash.
// Whichever way it is closed, it has been answered. Main thread only.
class MissedAlarmsWindow final : public QDialog {
    Q_OBJECT

public:
    // The run loop must outlive the window. `answered` is called once for each showing, with the
    // alarms that are to be started again.
    using Answered = std::function<void(const std::vector<MissedAlarm>& again)>;
    MissedAlarmsWindow(const RunLoop& runLoop, Answered answered);
    ~MissedAlarmsWindow() override;

    // Has a link in the text opened.
    void setOpenLink(std::function<void(const QString& path)> open);

    // What the window holds from now on; opens it, without taking the keyboard from what is being
    // typed elsewhere. `crash` is the path of a crash's report, or empty. With nothing to tell the
    // window closes, and nobody is told.
    void tell(const std::vector<MissedAlarm>& missed, const QString& crash);

protected:
    void done(int result) override;
    bool event(QEvent* event) override;

private:
    void fillList();
    void writeTimes();
    void tellOfCrash(const QString& report);
    void arrange();

    const RunLoop& m_runLoop;
    Answered m_answered;
    std::vector<MissedAlarm> m_missed;
    std::unique_ptr<Ui::MissedAlarmsWindow> m_form;
};

} // namespace dorvane
