// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

namespace dorvane {

// The moment at which local clocks show this date and time of day.
//
// Where the clocks are set forward and the time is skipped, the moment as late after the last
// valid one as asked for: 02:30 on a night that goes from 02:00 to 03:00 is 03:30. Where they are
// set back and the time comes twice, the first one: an alarm rings rather early than late.
[[nodiscard]] QDateTime localMoment(QDate date, QTime time);

// The same for an alarm that is set at `now`: of a time that comes twice the first moment after
// that, if there is one.
[[nodiscard]] QDateTime localMomentAfter(QDate date, QTime time, const QDateTime& now);

// The next moment after `now` at which local clocks show the time: of today or of tomorrow.
[[nodiscard]] QDateTime nextMomentAt(QTime time, const QDateTime& now);

// The moment at which the face of the clock has gone on by that many hours: 22:00 and ten hours are
// 08:00 on every night. The policy of localMoment(), but that it is always after `moment`: where a
// time comes twice, the first one that is. Hours that do not go forward are taken as they pass.
[[nodiscard]] QDateTime addingHours(const QDateTime& moment, qint64 hours);

} // namespace dorvane
