// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/WrittenAlarm.h"

#include "core/WrittenWeekdays.h"
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

TEST(WrittenAlarmTest, isReadFromOneLine) {
    const QDateTime now = at("2026-11-18 20:05"); // a Wednesday
    const std::pair<const char*, const char*> cases[] = {
        {"25", "25m '25 min'"},
        {"25 tea", "25m 'tea'"},
        {" 1h30  bread and\tbutter", "90m 'bread and butter'"},
        {"2h", "2h '2h'"},
        {"in 30s egg", "1m-30s 'egg'"},
        {"25 7 habits", "25m '7 habits'"},
        {"7:30", "2026-11-19 07:30 '7:30'"},
        {"at 21 news", "2026-11-18 21:00 'news'"},
        {"7 pm dinner", "2026-11-19 19:00 'dinner'"},
        {"tomorrow 7 gym", "2026-11-19 07:00 'gym'"},
        {"24 Dec at 18:00", "2026-12-24 18:00 '24 Dec at 18:00'"},
        {"today 7", "2026-11-18 07:00 'today 7'"},
        {"mon-fri 7:15 work", "mon tue wed thu fri 07:15 'work'"},
        {"weekend 9", "sat sun 09:00 'weekend 9'"},
        {"", "no"},
        {"tea", "no"},
        {"tomorrow gym", "no"},
        {"0 tea", "no"},
    };
    for (const auto& [text, expected] : cases) {
        const auto read = alarmRead(QString::fromUtf8(text), QLocale::c(), now, {u"/Ping"_qs, 7});
        QString shown = u"no"_qs;
        if (read) {
            const AlarmForm& form = read->form;
            EXPECT_TRUE(form.isPlaySound && form.snoozeTime == 7);
            if (form.row == Alarm::Relative) {
                shown = form.interval + (form.isMinuteUnits ? u'm' : u'h');
                if (read->counted.count() > 0)
                    shown += u"-%1s"_qs.arg(read->counted.count());
            } else if (form.row == Alarm::Dated) {
                shown = form.atDatePicker.toString(u"yyyy-MM-dd "_qs) +
                        form.atTimePicker.toString(u"HH:mm"_qs);
            } else {
                EXPECT_TRUE(form.shouldUseForever);
                shown = weekdayKeys(form.weekdays).join(u' ') +
                        form.atAlarmTimePicker.toString(u" HH:mm"_qs);
            }
            shown += u" '"_qs + form.title + u'\'';
        }
        EXPECT_EQ(shown.toStdString(), expected) << text;
    }
}

} // namespace
