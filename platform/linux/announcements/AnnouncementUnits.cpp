// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/announcements/AnnouncementUnits.h"

#include <QStringList>

#include <array>
#include <utility>

namespace dorvane {

namespace {

const QString calendarFormat = QStringLiteral("yyyy-MM-dd HH:mm:ss");

struct TextField {
    const char* key;
    QString UserNotification::*member;
};
// The manager leaves sections alone whose names begin with X-.
constexpr std::array textFields{TextField{"Title", &UserNotification::title},
                                TextField{"Subtitle", &UserNotification::subtitle},
                                TextField{"Text", &UserNotification::informativeText}};

// The manager fills in specifiers that begin with a percent sign.
QString withoutSpecifiers(QString path) {
    return path.replace(QLatin1Char('%'), QStringLiteral("%%"));
}

// One word of a command line.
QString quoted(QString path) {
    path.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    path.replace(QLatin1Char('"'), QStringLiteral("\\\""));
    path.replace(QLatin1Char('$'), QStringLiteral("$$"));
    return QLatin1Char('"') + withoutSpecifiers(std::move(path)) + QLatin1Char('"');
}

} // namespace

QString announcementTimer(const QString& id) {
    return QStringLiteral("dorvane-%1.timer").arg(id);
}

QByteArray timerUnit(const QString& id, const UserNotification& notification) {
    QByteArray unit =
        QStringLiteral("[Unit]\n"
                       "Description=Announcement of an alarm\n"
                       "PartOf=%1\n"
                       "\n"
                       "[Timer]\n"
                       "OnCalendar=%2 UTC\n"
                       "AccuracySec=1s\n"
                       "Persistent=true\n"
                       "Unit=dorvane-announce@%3.service\n"
                       "\n"
                       "[X-Dorvane]\n")
            .arg(announcementTarget, notification.deliveryDate.toUTC().toString(calendarFormat), id)
            .toUtf8();
    for (const TextField& field : textFields)
        unit += QByteArray(field.key) + '=' +
                (notification.*field.member).toUtf8().toPercentEncoding() + '\n';
    return unit;
}

QByteArray serviceUnit(const QString& program) {
    return QStringLiteral("[Unit]\n"
                          "Description=Announcement of an alarm\n"
                          "ConditionFileIsExecutable=%1\n"
                          "CollectMode=inactive-or-failed\n"
                          "\n"
                          "[Service]\n"
                          "Type=oneshot\n"
                          "ExecStart=%2 --announce %i\n")
        .arg(withoutSpecifiers(program), quoted(program))
        .toUtf8();
}

QByteArray targetUnit(const QStringList& timers) {
    return QStringLiteral("[Unit]\n"
                          "Description=Announcements of alarms while Dorvane does not run\n"
                          "Wants=%1\n")
        .arg(timers.join(QLatin1Char(' ')))
        .toUtf8();
}

std::optional<UserNotification> notificationIn(const QByteArray& timerUnit) {
    UserNotification notification;
    std::size_t found = 0;
    const QByteArray calendar = "OnCalendar=";
    for (const QByteArray& line : timerUnit.split('\n')) {
        for (const TextField& field : textFields) {
            const QByteArray key = QByteArray(field.key) + '=';
            if (!line.startsWith(key))
                continue;
            notification.*field.member =
                QString::fromUtf8(QByteArray::fromPercentEncoding(line.mid(key.size())));
            ++found;
        }
        if (line.startsWith(calendar)) {
            const QString date = QString::fromLatin1(line.mid(calendar.size()).left(19));
            notification.deliveryDate = QDateTime::fromString(date, calendarFormat);
            notification.deliveryDate.setTimeSpec(Qt::UTC);
        }
    }
    if (found != textFields.size() || !notification.deliveryDate.isValid())
        return std::nullopt;
    return notification;
}

} // namespace dorvane
