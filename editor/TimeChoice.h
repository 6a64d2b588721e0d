// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Alarm.h"

#include <QDateTime>
#include <QObject>

#include <optional>

namespace Ui {
class AlarmSetController;
}

namespace dorvane {

struct AlarmForm;
class GraphicalDateWindow;
class GraphicalTimeWindow;

// The dates and times of day of the alarm editor: their fields, the sheets in which they can be
// chosen too, and what keeps an alarm from being set to the past. Belongs to the editor's window.
class TimeChoice final : public QObject {
    Q_OBJECT

public:
    // The controls must be those of the window; the run loop must outlive it.
    TimeChoice(const RunLoop& runLoop, Ui::AlarmSetController& controls, QWidget* window);

    // Whose form is shown. Of a new alarm nothing may be chosen that lies in the past: neither a
    // date nor the time of today. A stored one that was picked keeps its time of day and is moved
    // on to a day on which that is ahead. One that is edited may lie in the past.
    enum class Origin { New, Picked, Edited };

    // To be called before a form is shown in the controls.
    void fit(AlarmForm& form, Origin origin, const QDateTime& now);
    // To be called then, and when every day or a weekday was ticked: with every day any time comes,
    // and with a weekday too.
    void ticksChanged(const AlarmForm& form, const QDateTime& now);

    // Whether the time and the date that the kind of alarm uses can be read.
    [[nodiscard]] bool isReadable(Alarm::Kind row) const;
    // Whether what was typed for it was past and has become another one, unseen as yet.
    [[nodiscard]] bool takeUnseenJump(Alarm::Kind row);
    // To be called before an alarm is set that has to be ahead: holds what is chosen against the
    // present, which moves on while the window is open. Whether that has changed it.
    [[nodiscard]] bool renewBounds(Alarm::Kind row, const QDateTime& now);

    // Says beside the fields what is to be said of them.
    void showRemarks();

Q_SIGNALS:
    // By the user or by a bound.
    void changed();

private:
    void wireSheets();
    void boundDate(const QDateTime& now);
    void boundTime();
    [[nodiscard]] QDateTime chosen(Alarm::Kind row, const QDateTime& now) const;
    void calendarButtonPushed();
    void graphicalDateSelected();
    void alarmButtonPushed();
    void graphicalTimeSelected();

    const RunLoop& m_runLoop;
    Ui::AlarmSetController& m_controls;
    bool m_isDateBounded = false;
    bool m_isWeeklyBounded = false;
    bool m_isEveryDay = false;
    bool m_hasDays = false;
    std::optional<QDateTime> m_datedEarliest; // for a time on the chosen date
    GraphicalDateWindow* m_graphicalDateWindow;
    GraphicalTimeWindow* m_graphicalTimeWindow;
};

} // namespace dorvane
