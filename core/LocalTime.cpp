// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/LocalTime.h"

#include <QTimeZone>

#include <utility>

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

// The first and the last moment at which local clocks show the time; the same one twice where they
// show it once, or where they skip it.
std::pair<QDateTime, QDateTime> readingsOf(QDate date, QTime time) {
    const QDateTime wallAsUtc(date, time, QTimeZone::utc());
    if (!wallAsUtc.isValid())
        return {};
    // Local clocks are between 12 hours behind and 14 hours ahead of UTC, so these two moments lie
    // safely before and after every reading of the wall time.
    const QDateTime earlier = withOffset(wallAsUtc, localOffsetAt(wallAsUtc, -hours(15)));
    const QDateTime later = withOffset(wallAsUtc, localOffsetAt(wallAsUtc, hours(13)));
    const auto showsTheTime = [&](const QDateTime& moment) {
        return moment.date() == date && moment.time() == time;
    };
    return {!showsTheTime(earlier) && showsTheTime(later) ? later : earlier,
            showsTheTime(later) ? later : earlier};
}

} // namespace

QDateTime localMoment(QDate date, QTime time) {
    return readingsOf(date, time).first;
}

QDateTime localMomentAfter(QDate date, QTime time, const QDateTime& now) {
    const auto [first, last] = readingsOf(date, time);
    return first > now ? first : last;
}

QDateTime nextMomentAt(QTime time, const QDateTime& now) {
    const QDateTime today = localMomentAfter(now.date(), time, now);
    return today > now ? today : localMoment(now.date().addDays(1), time);
}

QDateTime addingHours(const QDateTime& moment, qint64 hours) {
    constexpr qint64 secondsOfAnHour = 3600;
    if (hours <= 0)
        return moment.addSecs(hours * secondsOfAnHour);
    const QDateTime face =
        QDateTime(moment.date(), moment.time(), QTimeZone::utc()).addSecs(hours * secondsOfAnHour);
    return localMomentAfter(face.date(), face.time(), moment);
}

} // namespace dorvane
