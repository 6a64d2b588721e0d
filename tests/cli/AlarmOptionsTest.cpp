// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/AlarmOptions.h"

#include "tests/support/Testing.h"

#include <QCommandLineParser>
#include <QJsonDocument>
#include <QJsonObject>

using namespace dorvane::testing;

namespace {

std::string json(const QVariantMap& alarm) {
    const QJsonDocument document(QJsonObject::fromVariantMap(alarm));
    return document.toJson(QJsonDocument::Compact).replace('"', "").toStdString();
}

// On a Wednesday evening in Germany.
std::string read(const char* typed) {
    std::string said;
    const Command command{
        .name = "add",
        .example = "",
        .help = "",
        .description = "",
        .options = alarmOptions({}),
        .run = [&said](const QCommandLineParser& parser) {
            const auto alarm = readAlarmOptions(parser, QLocale(QLocale::German, QLocale::Germany),
                                                at("2026-11-18 20:05"));
            const QString* const fault = std::get_if<QString>(&alarm);
            said = fault ? fault->toStdString() : json(std::get<QVariantMap>(alarm));
            return ExitStatus::Done;
        }};
    EXPECT_EQ(runCommand(command, QString::fromLatin1(typed).split(u' ', Qt::SkipEmptyParts)),
              ExitStatus::Done);
    return said;
}

TEST(AlarmOptionsTest, areReadAsPeopleTypeThemOrSayWhatIsWrong) {
    const std::pair<const char*, const char*> cases[] = {
        {"--in 5", "{minutes:5}"},
        {"--in 1h30 --repeat", "{minutes:90,repeat:true}"},
        {"--in 2h", "{hours:2}"},
        {"--in 30s --sound none", "{seconds:30,sound:}"},
        {"--at 7", "{time:07:00}"},
        {"--at 7:30pm --date tomorrow", "{date:2026-11-19,time:19:30}"},
        {"--at 21 --date 24.12.", "{date:2026-12-24,time:21:00}"},
        {"--at 21 --date mi", "{date:2026-11-18,time:21:00}"},
        {"--at 730 --on mon-wed --every-week --store",
         "{every-week:true,store:true,time:07:30,weekdays:[mon,tue,wed]}"},
        {"--at 7 --snooze 9", "{snooze:9,time:07:00}"},

        {"", "when? Such as --in 25, or --at 7:30"},
        {"--in 5 --at 7", "it is either --in or --at: --in 25, or --at 7:30"},
        {"--at 7 --date -1", "--date takes a date such as 2026-12-24, 24 Dec, tomorrow or fri, not "
                             "\"-1\""},
        {"--in 5 --date fri", "--date does not go with --in"},
        {"--at 7 --every-week", "--every-week needs days, such as --on mon,thu"},
        {"--in soon", "--in takes a length of time such as 25, 90m, 2h, 1h30 or 30s, a year at "
                      "most, not \"soon\""},
        {"--in 90s --store", "--store needs whole minutes, such as --in 2m"},
        {"--at 25", "--at takes a time of day such as 7, 07:30 or 7:30pm, not \"25\""},
        {"--at 7 --date 31.2.2027",
         "--date takes a date such as 2026-12-24, 24 Dec, tomorrow or fri, not \"31.2.2027\""},
        {"--at 7 --on noon",
         "--on takes days such as mon,thu, mon-fri, weekdays or weekend, not \"noon\""},
        {"--in 5 --snooze 4", "--snooze takes minutes, one of 1, 2, 3, 5, 7, 9, 10, 15, 20, 30, "
                              "45 or 60, not \"4\""},
    };
    for (const auto& [typed, expected] : cases)
        EXPECT_EQ(read(typed), expected) << typed;
}

} // namespace
