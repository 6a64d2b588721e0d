// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/LocalTime.h"

namespace dorvane {

namespace {

using std::chrono::hours;
using std::chrono::milliseconds;

QDateTime withOffset(const QDateTime& wallAsUtc, int offsetSeconds) {
    return QDateTime::fromMSecsSinceEpoch(wallAsUtc.toMSecsSinceEpoch() -
                                          qint64(offsetSeconds) * 1000);
}

int localOffsetAt(const QDateTime& wallAsUtc, milliseconds shift) {
    return QDateTime::fromMSecsSinceEpoch(wallAsUtc.toMSecsSinceEpoch() + shift.count())
        .offsetFromUtc();
}

} // namespace

QDateTime localMoment(QDate date, QTime time) {
    const QDateTime wallAsUtc(date, time, Qt::UTC);
    if (!wallAsUtc.isValid())
        return {};
    // Local clocks are between 12 hours behind and 14 hours ahead of UTC, so these two moments lie
    // safely before and after every reading of the wall time.
    const QDateTime earlier = withOffset(wallAsUtc, localOffsetAt(wallAsUtc, -hours(15)));
    const QDateTime later = withOffset(wallAsUtc, localOffsetAt(wallAsUtc, hours(13)));
    const auto showsTheTime = [&](const QDateTime& moment) {
        return moment.date() == date && moment.time() == time;
    };
    return !showsTheTime(earlier) && showsTheTime(later) ? later : earlier;
}

QDateTime addingDays(const QDateTime& moment, int days) {
    return localMoment(moment.date().addDays(days), moment.time());
}

} // namespace dorvane
