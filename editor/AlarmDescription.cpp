// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/AlarmDescription.h"

#include "core/AlarmForm.h"
#include "core/IntervalRule.h"
#include "core/Isolated.h"
#include "sounds/SoundName.h"

#include <QTimeZone>

namespace dorvane {

namespace {

QString intervalPiece(const AlarmForm& form) {
    return (form.shouldRepeat ? QStringLiteral("Every ") : QStringLiteral("In ")) +
           QString::number(intervalValue(form.interval)) +
           (form.isMinuteUnits ? QStringLiteral(" minute(s)") : QStringLiteral(" hour(s)"));
}

QString datedPiece(const AlarmForm& form, QDate today, const QLocale& locale) {
    const bool isFar = form.atDatePicker < today || form.atDatePicker >= today.addYears(1);
    return locale.toString(QDateTime(form.atDatePicker, form.atTimePicker, QTimeZone::utc()),
                           isFar ? QStringLiteral("'On' MMM dd yyyy 'at' HH:mm")
                                 : QStringLiteral("'On' MMM dd 'at' HH:mm"));
}

// "On every Monday Friday " when days are ticked, nothing else.
QString daysPiece(const AlarmForm& form) {
    if (form.weekdays.isEmpty())
        return {};
    QString piece = form.shouldUseForever ? QStringLiteral("On every ") : QStringLiteral("On ");
    for (const Weekday day : everyWeekday)
        if (form.weekdays.contains(day))
            piece += englishName(day) + QLatin1Char(' ');
    return piece;
}

// A twenty-four-hour clock with the AM/PM mark after it; meant, as is the capital "At" after the
// days.
QString weeklyPiece(const AlarmForm& form, const QLocale& locale) {
    return daysPiece(form) + QStringLiteral("At ") +
           locale.toString(form.atAlarmTimePicker, QStringLiteral("HH:mm Ap"));
}

QString whenPiece(const AlarmForm& form, QDate today, const QLocale& locale) {
    switch (form.row) {
    case Alarm::Dated:
        return datedPiece(form, today, locale);
    case Alarm::Weekly:
        return weeklyPiece(form, locale);
    case Alarm::Relative:
        break;
    }
    return intervalPiece(form);
}

QString actionPiece(const AlarmForm& form) {
    const bool sounds = form.isPlaySound && !form.soundPath.isEmpty();
    const bool speaks = form.isSpeakAlarmName && !form.voiceName.isEmpty();
    if (!sounds && !speaks)
        return QStringLiteral("will be activated");
    QString piece;
    if (speaks)
        piece = QStringLiteral("will be spoken by voice '") + form.voiceName + QLatin1Char('\'');
    if (!sounds)
        return piece;
    const QString sound = QLatin1Char('\'') + soundName(form.soundPath) + QLatin1Char('\'');
    piece += speaks ? QStringLiteral(" and sound ") + sound + QStringLiteral(" will be played")
                    : QStringLiteral("will be played with sound ") + sound;
    if (form.shouldFadeIn)
        piece += QStringLiteral(" fading in");
    if (form.startsSoftly)
        piece += QStringLiteral(", softly at first");
    return form.ringsUntilAnswered ? piece + QStringLiteral(", until it is answered") : piece;
}

} // namespace

QString manageDescriptionLabel(const AlarmForm& form, QDate today, const QLocale& locale) {
    return whenPiece(form, today, locale) + QStringLiteral(" alarm '") + isolated(form.title) +
           QStringLiteral("' ") + actionPiece(form) + QLatin1Char('.');
}

} // namespace dorvane
