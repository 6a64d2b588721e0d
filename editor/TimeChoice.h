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
// chosen too, and what keeps a new alarm from being set to the past. Belongs to the editor's
// window.
class TimeChoice final : public QObject {
    Q_OBJECT

public:
    // The controls must be those of the window; the run loop must outlive it.
    TimeChoice(const RunLoop& runLoop, Ui::AlarmSetController& controls, QWidget* window);

    // Nothing before this moment can be chosen from now on: for a date, and for today's time when
    // no weekday is ticked. An alarm that is there already may lie in the past.
    void setEarliest(const std::optional<QDateTime>& earliest);

    // To be called before a form is shown: brings its dates into the bounds, and the bounds to the
    // form.
    void fit(AlarmForm& form, const QDateTime& now);

    // The date that belongs to the time of a dated alarm, see AlarmForm.
    [[nodiscard]] QDate atTimePickerDate() const { return m_atTimePickerDate; }

    // With no day ticked the alarm rings today, and so must not be set to a time that is past.
    void daysTicked(bool anyDay, const QDateTime& now);

    // Whether the time that the kind of alarm uses can be read.
    [[nodiscard]] bool isReadable(Alarm::Kind row) const;
    // Whether what was typed for it was past and has become another one, unseen as yet.
    [[nodiscard]] bool takeUnseenJump(Alarm::Kind row);

Q_SIGNALS:
    // By the user or by a bound.
    void changed();

private:
    void wireSheets();
    void showRemarks();
    void calendarButtonPushed();
    void graphicalDateSelected();
    void alarmButtonPushed();
    void graphicalTimeSelected();

    const RunLoop& m_runLoop;
    Ui::AlarmSetController& m_controls;
    std::optional<QDateTime> m_datedEarliest;
    std::optional<QDateTime> m_weeklyEarliest;
    QDate m_atTimePickerDate;
    GraphicalDateWindow* m_graphicalDateWindow;
    GraphicalTimeWindow* m_graphicalTimeWindow;
};

} // namespace dorvane
