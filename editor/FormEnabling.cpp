// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/FormEnabling.h"

#include "core/AlarmForm.h"

namespace dorvane {

void FormEnabling::alarmTimeRadioChanged(const AlarmForm& form) {
    interval = form.row == Alarm::Relative;
    atTimePicker = date = form.row == Alarm::Dated;
    weekly = form.row == Alarm::Weekly;
    foreverCheck = weekly && !form.weekdays.isEmpty();
}

// Does not tell a weekday alarm from a dated one, so that the date can be used there although it
// decides nothing. That is meant.
void FormEnabling::everyDayCheckChanged(const AlarmForm& form) {
    date = !form.shouldUseEveryDay && form.row != Alarm::Relative;
}

void FormEnabling::actDaysCheckBoxSelected(const AlarmForm& form) {
    foreverCheck = !form.weekdays.isEmpty();
}

void FormEnabling::soundPathChanged(const AlarmForm& form) {
    playButton = !form.soundPath.isEmpty();
}

void FormEnabling::playSoundCheckChanged(const AlarmForm& form) {
    selectSoundButton = shouldFadeInCheck = form.isPlaySound;
    playButton = form.isPlaySound && !form.soundPath.isEmpty();
}

void FormEnabling::speakNameCheckChanged(const AlarmForm& form) {
    voiceNamePopUp = form.isSpeakAlarmName;
}

} // namespace dorvane
