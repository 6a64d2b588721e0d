// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace dorvane {

struct AlarmForm;

// Which controls of the editor can be used. Each handler of a control changes its share of this
// and leaves the rest as it was, so that what is enabled depends on what was touched last.
struct FormEnabling {
    bool interval = false;     // inTimeField, inTimeTypePopUp, repeatCheck
    bool atTimePicker = false; //
    bool date = false;         // calendarButton, atDatePicker
    bool weekly = false;       // alarmButton, atAlarmTimePicker, the weekday boxes
    bool foreverCheck = false;
    bool selectSoundButton = false;
    bool playButton = false;        // with the volume of the preview
    bool shouldFadeInCheck = false; // with the other boxes for how the sound plays
    bool voiceNamePopUp = false;

    void alarmTimeRadioChanged(const AlarmForm& form);
    void everyDayCheckChanged(const AlarmForm& form);
    void actDaysCheckBoxSelected(const AlarmForm& form);
    void soundPathChanged(const AlarmForm& form);
    void playSoundCheckChanged(const AlarmForm& form);
    void speakNameCheckChanged(const AlarmForm& form);
};

} // namespace dorvane
