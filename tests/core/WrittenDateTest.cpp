// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/WrittenDate.h"

#include "core/WrittenInterval.h"
#include "core/WrittenWeekdays.h"
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

const QLocale german(QLocale::German, QLocale::Germany);
const QLocale british(QLocale::English, QLocale::UnitedKingdom);
const QLocale american(QLocale::English, QLocale::UnitedStates);
const QLocale swedish(QLocale::Swedish, QLocale::Sweden);
const QLocale french(QLocale::French, QLocale::France);

// A Wednesday, for an alarm at nine in the evening.
const QDateTime now = at("2026-11-18 20:05");

std::string read(const char* text, const QLocale& territory, QTime time = QTime(21, 0)) {
    const DateReading reading = dateRead(QString::fromUtf8(text), territory, now, time);
    if (reading.date)
        return reading.date->toString(Qt::ISODate).toStdString();
    return reading.canBecomeDate ? "..." : "no";
}

TEST(WrittenDateTest, isReadAsItsTerritoryAndISOWriteIt) {
    const struct {
        const char* text;
        // In Germany, Britain, the United States, Sweden and France.
        std::vector<std::string> dates;
    } cases[] = {
        {"31.12.2026", {"2026-12-31", "2026-12-31", "no", "no", "2026-12-31"}},
        {"12/31/2026", {"no", "no", "2026-12-31", "no", "no"}},
        {"29.2.2028", {"2028-02-29", "2028-02-29", "no", "no", "2028-02-29"}},
        {"05/12/26", {"2026-12-05", "2026-12-05", "2026-05-12", "...", "2026-12-05"}},
        {"26-12-05", {"...", "...", "...", "2026-12-05", "..."}},
        {"5/12", {"2026-12-05", "2026-12-05", "2027-05-12", "2027-05-12", "2026-12-05"}},
        {"24 d\xc3\xa9"
         "c.",
         {"no", "no", "no", "no", "2026-12-24"}},
        {"3 Mai", {"2027-05-03", "no", "no", "no", "2027-05-03"}},
        {"Mi", {"2026-11-18", "no", "no", "no", "no"}},
        {"mar", {"...", "...", "...", "...", "2026-11-24"}}, // mardi
        {"jui 3", {"no", "no", "no", "no", "..."}},          // juin or juillet,
    };
    for (const auto& c : cases)
        EXPECT_THAT((std::vector<std::string>{read(c.text, german), read(c.text, british),
                                              read(c.text, american), read(c.text, swedish),
                                              read(c.text, french)}),
                    ElementsAreArray(c.dates))
            << c.text;
}

TEST(WrittenDateTest, isReadAlikeEverywhere) {
    const std::pair<const char*, const char*> cases[] = {
        {"2026-12-24", "2026-12-24"},
        {"2026/2/3", "2026-02-03"},
        {"24 Dec", "2026-12-24"},
        {"Dec 24", "2026-12-24"},
        {"sept 1", "2027-09-01"},
        {"Thu, 24 Dec", "2026-12-24"},
        {"Fri, 24 Dec", "..."},   // is none
        {"18 Nov", "2026-11-18"}, // today, as the time is ahead
        {"29 Feb", "2028-02-29"},
        {"today", "2026-11-18"},
        {"Tomorrow", "2026-11-19"},
        {"tomo", "..."},
        {"fri", "2026-11-20"},
        {"tue", "2026-11-24"},
        {"2076-12-31", "2076-12-31"},
        {"2077-01-01", "no"}, // mistyped
        {"1999-12-31", "no"},
        {"2026-02-29", "no"},
        {"31.2.", "..."},
        {"24", "2026-11-24"},
        {"32", "..."},
        {"Dec 2026", "..."},
        {"", "..."},
        {"noon", "no"},
        {"-1", "no"},
        {"\xd9\xa3.1", "no"}, // three, in Arabic digits
    };
    for (const auto& [text, date] : cases)
        for (const QLocale& territory : {german, american, swedish})
            EXPECT_EQ(read(text, territory), std::string(date))
                << text << territory.name().toStdString();
}

TEST(WrittenDateTest, isTheNextOneAtWhichTheTimeIsAhead) {
    for (const auto& [text, date] : {std::pair("wed", "2026-11-25"),
                                     {"18 Nov", "2027-11-18"},
                                     {"today", "2026-11-18"},
                                     {"18.11.2026", "2026-11-18"}})
        EXPECT_EQ(read(text, german, QTime(7, 0)), date) << text;
}

TEST(WrittenWeekdaysTest, areReadAsPeopleWriteThem) {
    const std::pair<const char*, const char*> cases[] = {
        {"mon,thu", "mon thu"},
        {"Mon, Wed and Fri", "mon wed fri"},
        {"mon-fri", "mon tue wed thu fri"},
        {"fri \xe2\x80\x93 mon", "mon fri sat sun"},
        {"weekdays", "mon tue wed thu fri"},
        {"Weekend", "sat sun"},
        {"daily", "mon tue wed thu fri sat sun"},
        {"Mo-Mi,so", "mon tue wed sun"},
        {"", ""},
        {"mon-", ""},
        {"mon-wed-fri", ""},
        {"tomorrow", ""},
        {"m", ""},
    };
    for (const auto& [text, days] : cases) {
        const auto read = weekdaysRead(QString::fromUtf8(text), german);
        EXPECT_EQ(weekdayKeys(read.value_or(WeekdaySet())).join(u' ').toStdString(), days) << text;
    }
}

TEST(WrittenIntervalTest, isReadAsPeopleWriteIt) {
    constexpr int no = 0;
    const std::pair<const char*, int> cases[] = {
        {"25", 1500},        {"5m", 300},        {" 90 min ", 5400},
        {"2h", 7200},        {"1h30", 5400},     {"1 h 30 minutes", 5400},
        {"30s", 30},         {"1m30s", 90},      {"1h 5s", 3605},
        {"8760H", 31536000}, {"0", no},          {"", no},
        {"8761h", no},       {"999999999h", no}, {"-5", no},
        {"5 30s", no},       {"1.5h", no},       {"soon", no},
        {"5mm", no},
    };
    for (const auto& [text, seconds] : cases) {
        const auto read = intervalRead(QString::fromLatin1(text)).value_or(WrittenInterval());
        EXPECT_EQ(read.length.count(), seconds) << text;
        EXPECT_EQ(read.isInHours, seconds % 3600 == 0 && seconds > 0) << text;
    }
}

TEST(WrittenDateTest, isReadAsItIsShownAnywhere) {
    for (const QLocale& territory :
         QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory))
        for (const QDate date : {QDate(2026, 12, 5), QDate(2031, 3, 24)})
            EXPECT_EQ(dateRead(dateShown(date, territory), territory, now, {}).date, date)
                << qPrintable(territory.name() + u' ' + dateShown(date, territory));
}

} // namespace
